#include "lib/platform-x11/CMessageBox.h"
#include "lib_drawing/DrawingTestSupport.h"

using namespace DrawingTest;

namespace {

// Columns holding any lit pixel of a white-on-black drawing, as [first, last].
std::pair<int, int> inkColumns(const CBitmap& canvas) {
    int first = -1, last = -1;
    for (uint32_t x = 0; x < canvas.getPixelWidth(); ++x)
        for (uint32_t y = 0; y < canvas.getPixelHeight(); ++y)
            if (canvas.getPixel(x, y).red > 40) {
                if (first < 0) first = static_cast<int>(x);
                last = static_cast<int>(x);
                break;
            }
    return {first, last};
}

}  // namespace

// Widths as nanovg measures them (the GL test checks that both back ends agree): the face scaled
// so its ascent and descent span 1.2 times the size, advances rounded to whole pixels. The string
// starts at the left, centre or right of its box; any other alignment starts it at the centre. A font
// whose archive or file is missing measures and draws nothing.
TEST(Text, StringWidthFollowsFontAndSizeAndTheAlignmentPlacesIt) {
    CFontDesc* missing = new CFontDesc("no-such-archive", "x.ttf", "y.ttf", 1);
    CFontDesc* unknownFile = new CFontDesc("fonts-arial", "nope.ttf", "nope-bold.ttf", 1);
    const struct { CFontDesc* font; double size; int32_t style; const char* text; double width; int32_t align; }
        cases[] = {
        {kSystemFont, 12, 0, "Zonfra", 37, kAlignLeft},
        {kSystemFont, 24, 0, "Zonfra", 74, kAlignCenter},
        {kSystemFont, 12, 1, "Zonfra", 40, kAlignRight},
        {kNormalFont, 12, 0, "Cutoff 1.2 kHz", 78, 3},
        {kNormalFont, 9, 1, "AVATAR", 36, kAlignLeft},
        {kBoldFont, 16, 0, "", 0, kAlignLeft},
        {missing, 12, 0, "Zonfra", 0, kAlignLeft},
        {unknownFile, 12, 0, "Zonfra", 0, kAlignLeft},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.text);
        BitmapPtr canvas = makeBitmap(300, 60);
        CDrawContext& context = *canvas->getDrawContext();
        context.setFont(test.font, test.size, test.style);
        EXPECT_EQ(context.getStringWidth(test.text), test.width) << test.size << " " << test.style;
        context.clearWithColor(kBlackCColor);
        context.setFontColor(kWhiteCColor);
        EXPECT_EQ(context.drawString(test.text, CRect(10, 0, 290, 60), 0, test.align), test.width);
        const auto [first, last] = inkColumns(*canvas);
        if (test.width == 0) {
            EXPECT_EQ(first, -1);
            continue;
        }
        const double starts[] = {10, 150 - test.width / 2, 290 - test.width, 150};
        const double start = starts[test.align];
        EXPECT_GE(first, start - 1) << "align " << test.align;
        EXPECT_LE(first, start + 3);
        EXPECT_LE(last, start + test.width + 1);
        EXPECT_GE(last, start + test.width - 4);
    }
    for (CFontDesc* font : {missing, unknownFile}) {
        EXPECT_FALSE(font->hasData());
        font->forget();
    }
}

TEST(Text, NullFontIsTheSystemFontAndNullTextDrawsNothing) {
    BitmapPtr canvas = makeBitmap(100, 40);
    CDrawContext& context = *canvas->getDrawContext();
    context.setFont(kNormalFont, 30, 0);
    context.setFont(nullptr, 0, 0);  // the system font at its own size
    EXPECT_EQ(context.getFont(), kSystemFont);
    EXPECT_EQ(context.getFontHeight(), 12);
    EXPECT_EQ(context.drawString(nullptr, CRect(0, 0, 100, 40), 0, 0), 0);
    context.drawStringMultiline(nullptr, CRect(0, 0, 100, 40), 0, 0);
}

TEST(Text, MultilineDropsWhatDoesNotFit) {
    for (const auto& test : {std::pair{60.0, 3}, {26.0, 2}, {10.0, 0}}) {
        BitmapPtr canvas = makeBitmap(100, 60);
        CDrawContext& context = *canvas->getDrawContext();
        context.clearWithColor(kBlackCColor);
        context.setFont(kSystemFont, 12, 0);
        context.drawStringMultiline("one\ntwo\nthree", CRect(0, 0, 100, test.first), 0, 0);
        int bands = 0;
        for (uint32_t y = 0, inBand = 0; y < 60; ++y) {
            uint32_t lit = 0;
            for (uint32_t x = 0; x < 100; ++x) lit |= canvas->getPixel(x, y).red > 40;
            bands += lit && !inBand;
            inBand = lit;
        }
        EXPECT_EQ(bands, test.second) << "height " << test.first;
    }
}

// A message box's text (a long folder path in an error) is broken to the box's width, and only
// where it needs to be: nothing is lost and the lines it had stay.
TEST(Text, MessageBoxTextWrapsToTheBoxWidth) {
    BitmapPtr canvas = makeBitmap(4, 4);
    CDrawContext& c = *canvas->getDrawContext();
    c.setFont(kSystemFont, 12.0, 0);
    const std::string text = "The preset folder could not be opened:\n/home/someone/.local/share/Morvandel/zonfra QT/"
                             "Presets/Ambient Pads/\u00e9t\u00e9 Nouveaux Sons Tr\u00e8s Longs Ici/x";
    const std::string lines = CMessageBox::wrapText(&c, text, 200.0);
    std::string joined;
    size_t at = 0;
    for (size_t end; at <= lines.size(); at = end + 1) {
        end = std::min(lines.find('\n', at), lines.size());
        const std::string line = lines.substr(at, end - at);
        EXPECT_LE(c.getStringWidth(line.c_str()), 200.0) << line;
        joined += line + (end < lines.size() && text[joined.size() + line.size()] == '\n' ? "\n" : "");
    }
    EXPECT_EQ(joined, text);
    EXPECT_EQ(CMessageBox::wrapText(&c, "Short\nlines", 200.0), "Short\nlines");
}
