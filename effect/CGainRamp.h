#pragma once
#include "framework/plugin/Relaxed.h"

// A smoothed stereo gain that also collects the block's peaks for the meters.
class CGainRamp {
public:
    void setGain(float gain) { target = gain; }
    float getTarget() const { return target; }
    float getCurrent() const { return current; }
    // Per-sample smoothing with a fixed coefficient; jumps to the target once close enough.
    void apply(float* left, float* right, int samples);
    // current = target, peaks cleared.
    void snap();
    void clearPeaks();

    float minL = 0, maxL = 0, minR = 0, maxR = 0;

private:
    Ondra::Relaxed<float> target{1.0f};
    float current = 1.0f;
};
