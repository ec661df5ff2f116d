#pragma once
// The slide of a page: each step moves every edge the same fraction of its way to the target, the
// fraction growing with the time since the last step, so the speed does not depend on the frame rate.
// Besides, a time line of its own for pulses and fades: `start` it, and `value` runs from 0 to 1 in
// `durationMs` milliseconds, round and round when looping.
#include <cstdint>

#include "lib/views/VintaTypes.h"

namespace ZonfraPages {

class Vinta_Animation {
public:
    explicit Vinta_Animation(int32_t durationMilliseconds = 100, bool loop = false)
        : looping(loop), durationMs(durationMilliseconds) {}

    // The fraction of the way for the time since the last step, in units of `seconds` of ticks
    // divided by 60 (the toolkit's animation time), clamped to 0..1; remembers the tick.
    double stepFraction(double seconds);
    double stepDelta();
    void restart();
    static void moveRect(Vinta::CRect& current, const Vinta::CRect& target, double fraction);

    void start();
    float value();
    // Never while looping; otherwise whether more than the duration lay between `start` and the
    // last `value`.
    bool finished() const;

private:
    bool looping = false;
    int32_t durationMs = 100;
    uint32_t lastTick = 0;
    uint32_t startTick = 0;
};

}  // namespace ZonfraPages
