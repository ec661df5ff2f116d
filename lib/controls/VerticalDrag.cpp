#include "lib/controls/VerticalDrag.h"

#include <algorithm>
#include <cmath>

namespace Vinta {

float VerticalDrag::rangeFor(CButtonState held) const {
    const float base = sensitivity != 0.0f ? sensitivity : 200.0f;
    return (held & kFineModifiers) ? base * zoomFactor : base;
}

void VerticalDrag::begin(float value, float valueSpan, CButtonState held) {
    span = valueSpan;
    startValue = value;
    // Start outside the flat spot's distortion, so that the first pixel does not jump.
    if (snapEnabled && std::fabs(value - snapCentre) >= 1e-5f) startValue += snapCentre > value ? -snapBand : snapBand;
    range = sensitivity != 0.0f ? sensitivity : 200.0f;
    if (held & kDragButtons) range = rangeFor(held);
    coef = span / range;
    buttons = held;
}

double VerticalDrag::valueAt(double delta, CButtonState held) {
    if (held != buttons) {
        range = rangeFor(held);
        const float newCoef = span / range;
        startValue += static_cast<float>((coef - newCoef) * delta);
        coef = newCoef;
        buttons = held;
    }
    double next = startValue + delta * coef;
    if (snapEnabled) {
        if (next >= snapCentre - snapBand && next <= snapCentre + snapBand)
            next = snapCentre;
        else
            next += snapCentre > next ? snapBand : -snapBand;
    }
    return std::clamp(next, 0.0, 1.0);
}

} // namespace Vinta
