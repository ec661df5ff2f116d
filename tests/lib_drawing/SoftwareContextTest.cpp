#include <functional>
#include <vector>

#include "lib_drawing/DrawingTestSupport.h"

using namespace DrawingTest;

namespace {

constexpr CColor kFill = kRedCColor;
constexpr CColor kFrame = kGreenCColor;
constexpr CColor kBack = kBlackCColor;

struct Probe { CPoint at; CColor colour; int tolerance = 0; };
struct ShapeCase { const char* name; std::function<void(CDrawContext&)> draw; std::vector<Probe> probes; };

const CPoint kTriangle[] = {{10, 10}, {50, 10}, {10, 50}};
const CRect kAll(0, 0, 64, 64);

const ShapeCase kShapes[] = {
    {"filled rect covers [left, right)", [](CDrawContext& c) { c.drawRect(CRect(10, 10, 30, 30), 1); },
     {{{10, 10}, kFill}, {{29, 29}, kFill}, {{30, 30}, kBack}, {{9, 9}, kBack}}},
    {"reversed rect is normalised", [](CDrawContext& c) { c.drawRect(CRect(30, 30, 10, 10), 1); },
     {{{10, 10}, kFill}, {{29, 29}, kFill}, {{30, 30}, kBack}}},
    {"stroke straddles the edge",
     [](CDrawContext& c) { c.setLineWidth(2); c.drawRect(CRect(10, 10, 30, 30), 0); },
     {{{9, 20}, kFrame}, {{10, 20}, kFrame}, {{11, 20}, kBack}, {{20, 20}, kBack}}},
    {"fill then stroke", [](CDrawContext& c) { c.setLineWidth(2); c.drawRect(CRect(10, 10, 30, 30), 3); },
     {{{10, 20}, kFrame}, {{20, 20}, kFill}}},
    {"style outside 0..3 draws nothing",
     [](CDrawContext& c) { c.drawRect(CRect(10, 10, 30, 30), 4); c.drawEllipse(CRect(10, 10, 30, 30), -1);
                           c.drawPolygon(kTriangle, 3, 5, true); },
     {{{20, 20}, kBack}, {{15, 15}, kBack}}},
    {"polyline below one point draws nothing", [](CDrawContext& c) { c.drawPolyline(kTriangle, 0); },
     {{{10, 10}, kBack}}},
    {"ellipse", [](CDrawContext& c) { c.drawEllipse(CRect(10, 10, 50, 50), 1); },
     {{{30, 30}, kFill}, {{30, 11}, kFill}, {{12, 12}, kBack}}},
    {"round rect leaves its corners", [](CDrawContext& c) { c.drawRoundRect(CRect(10, 10, 50, 50), 10, 1); },
     {{{10, 10}, kBack}, {{49, 49}, kBack}, {{30, 10}, kFill}, {{11, 30}, kFill}}},
    {"closed triangle", [](CDrawContext& c) { c.drawPolygon(kTriangle, 3, 1, true); },
     {{{15, 15}, kFill}, {{45, 45}, kBack}}},
    {"clip bounds the fill",
     [](CDrawContext& c) { c.setClipRect(CRect(0, 0, 20, 64)); c.drawRect(kAll, 1); },
     {{{10, 10}, kFill}, {{19, 40}, kFill}, {{20, 10}, kBack}}},
    {"offset moves drawing and clip",
     [](CDrawContext& c) { c.setOffset(CPoint(10, 10)); c.setClipRect(CRect(0, 0, 20, 20));
                           c.drawRect(CRect(-10, -10, 40, 40), 1); },
     {{{10, 10}, kFill}, {{29, 29}, kFill}, {{9, 9}, kBack}, {{30, 30}, kBack}}},
    {"global alpha scales fills",
     [](CDrawContext& c) { c.setGlobalAlpha(0.5f); c.setFillColor(kWhiteCColor); c.drawRect(kAll, 1); },
     {{{20, 20}, CColor{128, 128, 128, 255}, 1}}},
    {"linear gradient runs top to bottom",
     [](CDrawContext& c) { c.setLinearGradient(kAll, kBlackCColor, kWhiteCColor); c.drawRect(kAll, 1); },
     {{{32, 0}, kBack, 4}, {{32, 32}, CColor{128, 128, 128, 255}, 4}, {{32, 63}, kWhiteCColor, 4}}},
    {"radial gradient",
     [](CDrawContext& c) { c.setRadialGradient(CPoint(32, 32), 30, kWhiteCColor, kBlackCColor); c.drawRect(kAll, 1); },
     {{{32, 32}, kWhiteCColor, 10}, {{32, 17}, CColor{128, 128, 128, 255}, 10}, {{2, 2}, kBack, 1}}},
    {"a fill colour ends the gradient",
     [](CDrawContext& c) { c.setLinearGradient(kAll, kBlackCColor, kWhiteCColor); c.setFillColor(kFill);
                           c.drawRect(kAll, 1); },
     {{{32, 63}, kFill}}},
    {"line", [](CDrawContext& c) { c.setLineWidth(2); c.drawLine(0, 20, 64, 20); },
     {{{2, 20}, kFrame}, {{8, 20}, kFrame}, {{32, 30}, kBack}}},
    {"clear fills everything", [](CDrawContext& c) { c.clearWithColor(kBlueCColor); },
     {{{0, 0}, kBlueCColor}, {{63, 63}, kBlueCColor}}},
};

BitmapPtr render(const std::function<void(CDrawContext&)>& draw) {
    BitmapPtr canvas = makeBitmap(64, 64);
    CDrawContext& context = *canvas->getDrawContext();
    context.clearWithColor(kBack);
    context.setFillColor(kFill);
    context.setFrameColor(kFrame);
    draw(context);
    return canvas;
}

}  // namespace

TEST(SoftwareContext, DrawsShapesWhereExpected) {
    for (const ShapeCase& shape : kShapes) {
        SCOPED_TRACE(shape.name);
        BitmapPtr canvas = render(shape.draw);
        for (const Probe& probe : shape.probes)
            EXPECT_TRUE(near(canvas->getPixel(uint32_t(probe.at.x), uint32_t(probe.at.y)), probe.colour, probe.tolerance))
                << "at " << probe.at.x << ", " << probe.at.y;
    }
}

TEST(SoftwareContext, CopyModeDrawsHardEdges) {
    for (int mode : {kCopyMode, kAntiAliasMode}) {
        BitmapPtr canvas = render([mode](CDrawContext& c) { c.setDrawMode(mode); c.drawEllipse(CRect(3, 3, 60, 50), 1); });
        int blended = 0;
        for (uint32_t y = 0; y < 64; ++y)
            for (uint32_t x = 0; x < 64; ++x)
                blended += canvas->getPixel(x, y) != kFill && canvas->getPixel(x, y) != kBack;
        EXPECT_EQ(blended == 0, mode == kCopyMode) << "mode " << mode;
    }
}

TEST(SoftwareContext, BlurSoftensEdgesWithinTheRectangle) {
    for (int type : {0, 1, 2}) {
        BitmapPtr canvas = render([type](CDrawContext& c) {
            c.drawRect(CRect(0, 0, 32, 64), 1);
            c.blurRect(CRect(16, 0, 48, 32), 4, 4, type);
        });
        const CColor edge = canvas->getPixel(32, 16), untouched = canvas->getPixel(32, 48);
        EXPECT_EQ(untouched, kBack);
        EXPECT_EQ(edge.red > 0 && edge.red < 255, type != 2) << "type " << type;
    }
}

// The scene of DrawingTestSupport.h drawn at 256 x 256. AGG and FreeType rasterise with integer
// arithmetic, so the pixels are the same on every run with the same libraries and fonts (recorded
// with Debian 12's libagg 2.6.1-r134, FreeType 2.12.1 and fonts-liberation 1.07.4). A change means
// the software rendering changed: look at the image (ZONFRA_DRAW_DUMP=path writes it) and record the
// new value if it is right.
TEST(SoftwareContext, SceneMatchesRecordedChecksum) {
    BitmapPtr strip = makeFilmstrip(), canvas = makeBitmap(256, 256);
    drawScene(*canvas->getDrawContext(), *strip);
    uint64_t hash = 14695981039346656037ull;
    for (uint32_t y = 0; y < canvas->getPixelHeight(); ++y) {
        const uint8_t* row = canvas->getPixels() + y * canvas->getStride();
        for (uint32_t i = 0; i < canvas->getPixelWidth() * 4; ++i)
            hash = (hash ^ row[i]) * 1099511628211ull;
    }
    if (const char* dump = std::getenv("ZONFRA_DRAW_DUMP")) canvas->savePNG(dump);
    EXPECT_EQ(hash, 14902543276078241578ull);
}
