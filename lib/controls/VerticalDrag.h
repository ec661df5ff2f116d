#pragma once
// The vertical value drag of the editors' knobs and read-outs: `sensitivity` pixels for the whole
// range, `zoomFactor` times finer under shift or the right button, with an optional flat spot of
// twice `snapBand` around `snapCentre` that still lets the drag reach both ends.
#include "lib/views/VintaEvents.h"
#include "lib/views/VintaTypes.h"

namespace Vinta {

struct VerticalDrag {
    // Remembers where and from which value the drag starts.
    void begin(float value, float span, CButtonState buttons);
    // The value for `delta` pixels upward from the start, clamped to 0..1. A change of buttons
    // within the drag changes the step without making the value jump.
    double valueAt(double delta, CButtonState buttons);
    float rangeFor(CButtonState buttons) const;

    float sensitivity = 200.0f;
    float zoomFactor = 10.0f;
    bool snapEnabled = false;
    float snapCentre = 0.5f;
    float snapBand = 0.02f;

    float startValue = 0.0f;
    float span = 1.0f;
    float range = 200.0f;
    float coef = 0.0f;
    CButtonState buttons = 0;
};

} // namespace Vinta
