#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "tools/artwork/Bitmaps.h"
#include "tools/artwork/Layout.h"
#include "tools/artwork/Palette.h"

namespace Artwork {

using namespace Layout;
using namespace Palette;

namespace {

const Font kCaption{Vinta::kNormalFont, 9, true};
const Font kSmall{Vinta::kNormalFont, 8, false};
const Font kTitle{Vinta::kNormalFont, 10, true};


// A dark recess under a knob, so the knob's ring sits in the panel rather than on it.
void drawWell(Painter& p, const CPoint& corner, double size) {
    const CPoint c(corner.x + size * 0.5, corner.y + size * 0.5);
    const double r = size * 0.5 + 1.5;
    p.fillCircleGradient(c, r + 1.0, CColor{0, 0, 0, 60}, CColor{255, 255, 255, 22});
    p.fillCircleGradient(c, r, CColor{12, 14, 19, 255}, CColor{26, 29, 37, 255});
}

// A label centred under a control.
void drawCaption(Painter& p, const char* text, const CPoint& corner, double width, double top) {
    p.text(text, CRect(corner.x - 10, top, corner.x + width + 10, top + 11), kCaption, kLabel);
}

void drawSection(Painter& p, const CRect& r) {
    p.shadow(CRect(r.left, r.top + 1, r.right, r.bottom + 1), 6, CRect(r.left - 5, r.top - 5, r.right + 5, r.bottom + 6),
             CColor{0, 0, 0, 90}, 3);
    p.fillRoundRectGradient(r, 6, CColor{58, 64, 78, 255}, CColor{40, 44, 55, 255});
    p.strokeRoundRect(r, 6, kSectionEdge, 0.8);
}

void drawSlopeColumn(Painter& p, const CPoint& leds, const char* title) {
    p.text(title, CRect(leds.x - 14, 216, leds.x + 58, 229), kTitle, kAccent, Vinta::kAlignLeft);
    static const char* const kSlopes[] = {"12 dB", "24 dB", "48 dB", "96 dB"};
    for (int i = 0; i < 4; ++i) {
        const double y = leds.y + i * kLedStep;
        p.text(kSlopes[i], CRect(leds.x + kLed + 4, y, leds.x + kLed + 44, y + kLed), kSmall, kLabel, Vinta::kAlignLeft);
    }
    p.text("SLOPE / OCT", CRect(leds.x - 14, leds.y + 4 * kLedStep + 1, leds.x + 70, leds.y + 4 * kLedStep + 11),
           kSmall, kDimLabel, Vinta::kAlignLeft);
}

// A low-pass and a high-pass curve crossing: the mark of the filter column.
void drawFilterEmblem(Painter& p, const CRect& r) {
    p.line(CPoint(r.left, r.bottom - 0.5), CPoint(r.right, r.bottom - 0.5), CColor{255, 255, 255, 30}, 1.0);
    // Each curve is flat in its pass band, with a small resonance bump before it falls away.
    const double top = r.top + 12, depth = r.bottom - 1 - top;
    auto shape = [&](double d) { return d < 0 ? -0.25 * std::exp(-d * d * 6.0) : std::min(1.0, d * d * 0.35) - 0.25 * std::exp(-d * d * 6.0); };
    std::vector<CPoint> low, high;
    for (int i = 0; i <= 60; ++i) {
        const double x = r.left + r.getWidth() * i / 60.0;
        low.push_back(CPoint(x, top + depth * shape((x - (r.getCenter().x + 8)) / 7.0)));
        high.push_back(CPoint(x, top + depth * shape(((r.getCenter().x - 8) - x) / 7.0)));
    }
    p.polyline(low, withAlpha(kLabel, 170), 1.4);
    p.polyline(high, withAlpha(kAccent, 220), 1.4);
}

void drawTopBar(Painter& p) {
    p.fillRoundRectGradient(CRect(0, 0, kPanelWidth, 46), 0, kBarTop, kBarBottom);
    p.line(CPoint(0, 46.5), CPoint(kPanelWidth, 46.5), kGroove, 1.0);
    p.line(CPoint(0, 47.5), CPoint(kPanelWidth, 47.5), kHighlight, 1.0);

    // Preset name field with the browser's arrows at its right end.
    p.text("PRESET", CRect(20, kPresetBox.top, kPresetBox.left - 6, kPresetBox.bottom), kSmall, kDimLabel,
           Vinta::kAlignRight);
    const CRect field(kPresetBox.left - 2, kPresetBox.top, kPresetBox.right, kPresetBox.bottom);
    p.fillRoundRectGradient(field, 4, CColor{8, 9, 12, 255}, CColor{20, 23, 29, 255});
    p.strokeRoundRect(field, 4, CColor{255, 255, 255, 28}, 0.8);
    p.line(CPoint(kArrows.x - 1.5, field.top + 3), CPoint(kArrows.x - 1.5, field.bottom - 3), CColor{255, 255, 255, 24}, 1);

    drawWell(p, kMixKnob, kMixDial);
    p.text("MIX", CRect(kMixKnob.x - 20, 37, kMixKnob.x + kMixDial + 20, 46), Font{Vinta::kNormalFont, 7.5, true},
           kDimLabel);

    // The maker's mark and the product's name.
    const Font brand{Vinta::kNormalFont, 20, true};
    const double qtWidth = p.textWidth("QT", brand);
    p.text("QT", CRect(kDisplay.right - qtWidth, 8, kDisplay.right, 34), brand, kAccent, Vinta::kAlignRight);
    p.text("ZONFRA", CRect(360, 8, kDisplay.right - qtWidth - 5, 34), brand, kLabel, Vinta::kAlignRight);
    p.text("MMK  \xC2\xB7  STEREO FILTER", CRect(360, 32, kDisplay.right, 43), Font{Vinta::kNormalFont, 8, false},
           kDimLabel, Vinta::kAlignRight);
}

void drawScreen(Painter& p) {
    const CRect bezel(kDisplay.left - 3, kDisplay.top - 3, kDisplay.right + 3, kDisplay.bottom + 3);
    p.fillRoundRectGradient(bezel, 6, CColor{0, 0, 0, 150}, CColor{255, 255, 255, 30});
    p.fillRoundRectGradient(kDisplay, 4, kScreenTop, kScreenBottom);
    p.strokeRoundRect(kDisplay, 4, CColor{0, 0, 0, 200}, 1.0);
    // A faint sheen along the top of the glass.
    p.fillRoundRectGradient(CRect(kDisplay.left + 1, kDisplay.top + 1, kDisplay.right - 1, kDisplay.top + 30), 3,
                            CColor{161, 163, 193, 14}, CColor{161, 163, 193, 0});
}

void drawFooter(Painter& p) {
    p.line(CPoint(8, 448.5), CPoint(kPanelWidth - 8, 448.5), kGroove, 1.0);
    p.line(CPoint(8, 449.5), CPoint(kPanelWidth - 8, 449.5), kHighlight, 1.0);
    p.text("MMK ZONFRA QT", CRect(16, 462, 200, 474), kSmall, kDimLabel, Vinta::kAlignLeft);
    p.text("STEREO FILTER EFFECT", CRect(330, 462, kPanelWidth - 16, 474), kSmall,
           kDimLabel, Vinta::kAlignRight);
}

}  // namespace

void drawBackground(Painter& p, int, int) {
    p.fillRoundRectGradient(CRect(0, 0, kPanelWidth, kPanelHeight), 0, kPanelTop, kPanelBottom);
    drawTopBar(p);
    drawScreen(p);

    // The low-pass side with the input, the high-pass side with the output; link and mode between.
    drawSection(p, CRect(8, 214, 216, 442));
    drawSection(p, CRect(318, 214, 526, 442));
    drawSection(p, CRect(222, 214, 312, 442));

    for (const CPoint& knob : {kInputKnob, kOutputKnob, kLowCutoffKnob, kLowWidthKnob, kHighWidthKnob, kHighCutoffKnob})
        drawWell(p, knob, kBigDial);

    drawCaption(p, "INPUT", kInputKnob, kBigDial, 310);
    drawCaption(p, "OUTPUT", kOutputKnob, kBigDial, 310);
    drawCaption(p, "CUTOFF", kLowCutoffKnob, kBigDial, 426);
    drawCaption(p, "RESO  \xC2\xB7  WIDTH", kLowWidthKnob, kBigDial, 426);
    drawCaption(p, "RESO  \xC2\xB7  WIDTH", kHighWidthKnob, kBigDial, 426);
    drawCaption(p, "CUTOFF", kHighCutoffKnob, kBigDial, 426);
    drawSlopeColumn(p, kLowSlopeLeds, "LOW PASS");
    drawSlopeColumn(p, kHighSlopeLeds, "HIGH PASS");

    // Middle column: link and the series / parallel switch.
    drawFilterEmblem(p, CRect(236, 232, 298, 280));
    p.text("FILTERS", CRect(222, 288, 312, 299), kCaption, kLabel);
    const Font side{Vinta::kNormalFont, 8, true};
    const CRect row(222, kModeSwitch.y, 312, kModeSwitch.y + kDipRow);
    p.text("SER", CRect(row.left, row.top, kModeSwitch.x - 3, row.bottom), side, kDimLabel, Vinta::kAlignRight);
    p.text("PAR", CRect(kModeSwitch.x + kDipWidth + 3, row.top, row.right + 4, row.bottom), side, kDimLabel,
           Vinta::kAlignLeft);
    p.text("MODE", CRect(222, row.bottom + 3, 312, row.bottom + 14), kCaption, kLabel);

    drawFooter(p);
}

}  // namespace Artwork
