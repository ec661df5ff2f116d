#include "editor/KnobFilmstrip.h"

#include <cmath>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"

namespace ZonfraEditor {

using namespace Vinta;

CBitmap* drawKnobFilmstrip() {
    auto* strip = new CBitmap(kKnobSize, kKnobSize * kKnobFrames);
    CDrawContext* context = strip->getDrawContext();
    if (!context) return strip;
    const double pi = std::acos(-1.0);
    for (int index = 0; index < kKnobFrames; ++index) {
        const double top = index * kKnobSize;
        const double value = static_cast<double>(index) / (kKnobFrames - 1);
        const CRect body(6.0, top + 6.0, kKnobSize - 6.0, top + kKnobSize - 6.0);
        context->setFillColor(CColor{58, 60, 66, 255});
        context->setFrameColor(CColor{20, 20, 22, 255});
        context->setLineWidth(2.0f);
        context->drawEllipse(body, kDrawFilledAndStroked);
        // The value arc runs clockwise from the lower left; the drawing's angles count from 3 o'clock.
        context->setFrameColor(CColor{250, 200, 60, 255});
        context->setLineWidth(4.0f);
        const CRect ring(3.0, top + 3.0, kKnobSize - 3.0, top + kKnobSize - 3.0);
        if (value > 0.0) context->drawArc(ring, 135.0, 270.0 * value, kDrawStroked);
        const double angle = (135.0 + 270.0 * value) * pi / 180.0;
        const double centreX = kKnobSize / 2.0, centreY = top + kKnobSize / 2.0, reach = kKnobSize / 2.0 - 10.0;
        context->setFrameColor(CColor{235, 235, 235, 255});
        context->setLineWidth(3.0f);
        context->drawLine(centreX, centreY, centreX + reach * std::cos(angle), centreY + reach * std::sin(angle));
    }
    return strip;
}

}  // namespace ZonfraEditor
