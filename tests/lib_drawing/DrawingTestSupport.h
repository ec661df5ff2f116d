#pragma once
// Helpers of the drawing tests: owned bitmaps, colour comparison, and a scene both back ends draw.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"

namespace DrawingTest {

using namespace Vinta;

struct Forget {
    void operator()(CBaseObject* object) const { object->forget(); }
};
using BitmapPtr = std::unique_ptr<CBitmap, Forget>;

inline BitmapPtr makeBitmap(double width, double height) { return BitmapPtr(new CBitmap(width, height)); }

inline ::testing::AssertionResult near(const CColor& actual, const CColor& expected, int tolerance) {
    const uint8_t *a = &actual.red, *e = &expected.red;
    for (int i = 0; i < 4; ++i)
        if (std::abs(a[i] - e[i]) > tolerance)
            return ::testing::AssertionFailure() << "channel " << i << " is " << int(a[i]) << ", expected "
                                                 << int(e[i]) << " within " << tolerance;
    return ::testing::AssertionSuccess();
}

// A 3-frame filmstrip, 10 wide and 10 high per frame: red, green, blue; each frame's right half
// is transparent.
inline BitmapPtr makeFilmstrip() {
    BitmapPtr strip = makeBitmap(10, 30);
    CDrawContext* context = strip->getDrawContext();
    const CColor colours[] = {kRedCColor, kGreenCColor, kBlueCColor};
    for (int frame = 0; frame < 3; ++frame) {
        context->setFillColor(colours[frame]);
        context->drawRect(CRect(0, frame * 10, 5, frame * 10 + 10), 1);
    }
    return strip;
}

// The scene both back ends draw for the comparison and the recorded checksum: plain fills, a
// stroke, an ellipse, gradients, a filmstrip frame with alpha and a line of text.
inline void drawScene(CDrawContext& context, CBitmap& filmstrip) {
    context.clearWithColor(CColor{20, 24, 28, 255});
    context.setFillColor(CColor{200, 40, 40, 255});
    context.drawRect(CRect(10, 10, 90, 60), 1);
    context.setFrameColor(CColor{240, 240, 240, 255});
    context.setLineWidth(3);
    context.drawRoundRect(CRect(110, 10, 240, 60), 8, 0);
    context.setFillColor(CColor{40, 160, 60, 255});
    context.drawEllipse(CRect(10, 80, 110, 150), 1);
    context.setLinearGradient(CRect(130, 80, 240, 150), CColor{0, 0, 255, 255}, CColor{255, 255, 0, 255});
    context.drawRect(CRect(130, 80, 240, 150), 1);
    context.setRadialGradient(CPoint(60, 200), 40, kWhiteCColor, CColor{0, 0, 0, 0});
    context.drawRect(CRect(10, 160, 110, 240), 1);
    filmstrip.draw(&context, CRect(130, 170, 140, 180), CPoint(0, 10));
    filmstrip.drawAlpha(&context, CRect(150, 170, 160, 180), CPoint(0, 20), 128);
    context.setFont(kSystemFont, 16, 0);
    context.setFontColor(kWhiteCColor);
    context.drawString("Zonfra 42", CRect(130, 200, 250, 240), 0, 0);
}

}  // namespace DrawingTest
