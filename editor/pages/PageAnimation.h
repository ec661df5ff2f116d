#pragma once
// The slide of a page: each step moves every edge the same fraction of its way to the target, the
// fraction growing with the time since the last step, so the speed does not depend on the frame rate.
#include <cstdint>

#include "lib/views/VintaTypes.h"

namespace ZonfraPages {

class Vinta_Animation {
public:
    // The fraction of the way for the time since the last step, in units of `seconds` of ticks
    // divided by 60 (the toolkit's animation time), clamped to 0..1; remembers the tick.
    double stepFraction(double seconds);
    double stepDelta();
    void restart();
    static void moveRect(Vinta::CRect& current, const Vinta::CRect& target, double fraction);

private:
    uint32_t lastTick = 0;
};

}  // namespace ZonfraPages
