#include "tools/artwork/Bitmaps.h"

#include <algorithm>
#include <cmath>

#include "tools/artwork/Layout.h"
#include "tools/artwork/Palette.h"

namespace Artwork {

using namespace Layout;
using namespace Palette;

const std::vector<BitmapRecipe>& bitmapRecipes() {
    static const std::vector<BitmapRecipe> recipes = {
        {"ArrowDownBig.png", kArrowWidth, kArrowRow, 2, drawArrowDown},
        {"ArrowLeftBig.png", kArrowWidth, kArrowRow, 2, drawArrowLeft},
        {"ArrowRightBig.png", kArrowWidth, kArrowRow, 2, drawArrowRight},
        {"Background.png", kPanelWidth, kPanelHeight, 1, drawBackground},
        {"dial54px_small.png", kSmallDial, kSmallDial, kKnobFrames, drawSmallDial},
        {"dial87px.png", kBigDial, kBigDial, kKnobFrames, drawBigDial},
        {"HorizontalDip.png", kDipWidth, kDipRow, 2, drawModeSwitch},
        {"ledOff.png", kLed, kLed, 1, drawLedOff},
        {"ledOn.png", kLed, kLed, 1, drawLedOn},
        {"linkBtn.png", kLinkWidth, kLinkRow, 2, drawLinkButton},
        {"MixDialFilmstrip.png", kMixDial, kMixDial, kKnobFrames, drawMixDial},
    };
    return recipes;
}

namespace {

// Knobs turn through 270 degrees, from lower left (value 0) clockwise to lower right (value 1).
constexpr double kStartDegrees = 135.0;
constexpr double kSweepDegrees = 270.0;

double valueOf(int frame, int frames) { return frames > 1 ? static_cast<double>(frame) / (frames - 1) : 0.0; }

struct KnobShape {
    double size;
    double trackRadius, trackWidth;
    double capRadius;
    double pointerInner, pointerWidth;
    int ticks;  // zero draws no scale
};

// A dark cap in a recessed track; the value lights the track in amber from the start, and a light
// pointer marks it on the cap's edge, leaving the cap's middle free for the read-out.
void drawKnob(Painter& p, const KnobShape& k, double value) {
    const CPoint c(k.size * 0.5, k.size * 0.5);
    const double end = kStartDegrees + kSweepDegrees * value;

    p.shadow(CRect(c.x - k.capRadius, c.y - k.capRadius + 1.5, c.x + k.capRadius, c.y + k.capRadius + 1.5),
             k.capRadius, CRect(0, 0, k.size, k.size), kShadow, std::max(1.0, k.capRadius * 0.12));
    if (k.ticks > 0) {
        const double outer = k.size * 0.5 - 0.5, inner = k.trackRadius + k.trackWidth * 0.5 + 1.5;
        for (int i = 0; i < k.ticks; ++i) {
            const double degrees = kStartDegrees + kSweepDegrees * i / (k.ticks - 1);
            const bool major = i == 0 || i == k.ticks - 1 || i == (k.ticks - 1) / 2;
            const double at = static_cast<double>(i) / (k.ticks - 1);
            const CColor colour = at <= value + 1e-9 ? withAlpha(kAccent, 230) : kTick;
            p.line(polar(c, major ? inner - 0.5 : inner + 0.8, degrees), polar(c, outer, degrees), colour, major ? 1.4 : 1.0);
        }
    }
    p.arc(c, k.trackRadius, kStartDegrees, kSweepDegrees, kTrack, k.trackWidth + 1.0);
    p.arc(c, k.trackRadius, kStartDegrees, kSweepDegrees, withAlpha(kKnobLight, 70), k.trackWidth * 0.35);
    if (value > 0.0) {
        p.arc(c, k.trackRadius, kStartDegrees, kSweepDegrees * value, withAlpha(kAccent, 60), k.trackWidth * 1.9);
        p.arc(c, k.trackRadius, kStartDegrees, kSweepDegrees * value, kAccentDeep, k.trackWidth);
        p.arc(c, k.trackRadius, kStartDegrees, kSweepDegrees * value, kAccent, k.trackWidth * 0.55);
    }
    p.fillCircleRadial(c, k.capRadius, CPoint(c.x - k.capRadius * 0.3, c.y - k.capRadius * 0.55), kKnobLight, kKnobDark);
    p.fillCircleGradient(c, k.capRadius - std::max(1.2, k.capRadius * 0.1), mix(kKnobDark, kKnobLight, 0.25),
                         mix(kKnobDark, kWell, 0.5));
    p.strokeCircle(c, k.capRadius - 0.4, kKnobRim, 0.8);
    p.line(polar(c, k.pointerInner, end), polar(c, k.capRadius - 1.6, end), kPointer, k.pointerWidth);
}

// A two-row image: `lit` false on the lower (resting) row, true on the upper one.
bool upperRow(int frame) { return frame == 0; }

void drawLed(Painter& p, bool lit) {
    const CPoint c(kLed * 0.5, kLed * 0.5);
    p.fillCircleGradient(c, 5.6, CColor{10, 11, 14, 255}, CColor{70, 76, 92, 255});
    if (lit) {
        p.fillCircle(c, 6.8, withAlpha(kAccent, 45));
        p.fillCircleRadial(c, 4.3, CPoint(c.x - 1.2, c.y - 1.6), CColor{255, 244, 200, 255}, kAccentDeep);
    } else {
        p.fillCircleRadial(c, 4.3, CPoint(c.x - 1.2, c.y - 1.6), CColor{86, 74, 48, 255}, CColor{34, 30, 24, 255});
    }
    p.fillCircle(CPoint(c.x - 1.3, c.y - 1.6), 1.1, CColor{255, 255, 255, static_cast<uint8_t>(lit ? 170 : 50)});
}

void drawArrow(Painter& p, int frame, const CPoint* shape) {
    const bool pressed = upperRow(frame);
    p.fillRoundRectGradient(CRect(0.5, 0.5, kArrowWidth - 0.5, kArrowRow - 0.5), 2.5,
                            pressed ? CColor{22, 25, 32, 255} : CColor{62, 68, 83, 255},
                            pressed ? CColor{34, 38, 47, 255} : CColor{40, 44, 55, 255});
    p.strokeRoundRect(CRect(0.5, 0.5, kArrowWidth - 0.5, kArrowRow - 0.5), 2.5, CColor{0, 0, 0, 140}, 1.0);
    p.fillPolygon(shape, 3, pressed ? kAccent : kLabel);
}

}  // namespace

void drawBigDial(Painter& p, int frame, int frames) {
    drawKnob(p, KnobShape{kBigDial, 36.0, 4.0, 30.5, 23.5, 2.2, 11}, valueOf(frame, frames));
}

void drawSmallDial(Painter& p, int frame, int frames) {
    drawKnob(p, KnobShape{kSmallDial, 23.5, 3.0, 19.5, 14.0, 1.8, 0}, valueOf(frame, frames));
}

void drawMixDial(Painter& p, int frame, int frames) {
    drawKnob(p, KnobShape{kMixDial, 10.3, 2.2, 8.0, 2.5, 1.6, 0}, valueOf(frame, frames));
}

void drawLedOn(Painter& p, int, int) { drawLed(p, true); }
void drawLedOff(Painter& p, int, int) { drawLed(p, false); }

void drawLinkButton(Painter& p, int frame, int) {
    const bool lit = upperRow(frame);
    const CRect pill(kLinkPill.left - kLinkButton.x, kLinkPill.top - kLinkButton.y, kLinkPill.right - kLinkButton.x,
                     kLinkPill.bottom - kLinkButton.y);
    const double radius = pill.getHeight() * 0.5;
    p.shadow(CRect(pill.left, pill.top + 1.5, pill.right, pill.bottom + 1.5), radius,
             CRect(pill.left - 6, pill.top - 6, pill.right + 6, pill.bottom + 8), kShadow, 3);
    if (lit)
        p.strokeRoundRect(pill, radius, withAlpha(kAccent, 60), 3.5);
    p.fillRoundRectGradient(pill, radius, lit ? CColor{74, 66, 44, 255} : CColor{66, 72, 87, 255},
                            lit ? CColor{40, 35, 24, 255} : CColor{35, 38, 48, 255});
    p.strokeRoundRect(pill, radius, lit ? kAccent : CColor{0, 0, 0, 170}, 1.0);
    p.strokeRoundRect(CRect(pill.left + 1, pill.top + 1, pill.right - 1, pill.bottom - 1), radius - 1, kHighlight, 0.8);
    // Two chain links, then the word.
    const CColor ink = lit ? kAccent : kDimLabel;
    const double cy = pill.getCenter().y, x0 = pill.left + 12;
    p.strokeRoundRect(CRect(x0 - 5, cy - 3.2, x0 + 3, cy + 3.2), 3.2, ink, 1.6);
    p.strokeRoundRect(CRect(x0 + 1, cy - 3.2, x0 + 9, cy + 3.2), 3.2, ink, 1.6);
    p.text("LINK", CRect(x0 + 13, pill.top, pill.right - 6, pill.bottom), Font{Vinta::kNormalFont, 11, true}, ink,
           Vinta::kAlignLeft);
}

void drawModeSwitch(Painter& p, int frame, int) {
    const bool parallel = upperRow(frame);
    const CRect slot(1, 3, kDipWidth - 1, kDipRow - 3);
    p.fillRoundRectGradient(slot, 3, CColor{6, 7, 10, 255}, CColor{26, 29, 36, 255});
    p.strokeRoundRect(slot, 3, CColor{255, 255, 255, 26}, 0.8);
    const double half = (slot.getWidth() - 2) * 0.5;
    const double left = parallel ? slot.left + 1 + half : slot.left + 1;
    const CRect lever(left, slot.top + 1, left + half, slot.bottom - 1);
    p.fillRoundRectGradient(lever, 2, CColor{120, 127, 146, 255}, CColor{58, 63, 77, 255});
    p.strokeRoundRect(lever, 2, CColor{0, 0, 0, 150}, 0.8);
    const CColor mark = parallel ? kAccent : kDimLabel;
    p.line(CPoint(lever.getCenter().x, lever.top + 3), CPoint(lever.getCenter().x, lever.bottom - 3), mark, 1.6);
}

void drawArrowLeft(Painter& p, int frame, int) {
    const CPoint shape[] = {{3.5, 7}, {8, 3.5}, {8, 10.5}};
    drawArrow(p, frame, shape);
}

void drawArrowRight(Painter& p, int frame, int) {
    const CPoint shape[] = {{8.5, 7}, {4, 3.5}, {4, 10.5}};
    drawArrow(p, frame, shape);
}

void drawArrowDown(Painter& p, int frame, int) {
    const CPoint shape[] = {{6, 9.5}, {2.5, 5}, {9.5, 5}};
    drawArrow(p, frame, shape);
}

}  // namespace Artwork
