#include "effect/CGainRamp.h"

#include <cmath>

#include "dsp/memory/BlockScan.h"

void CGainRamp::apply(float* left, float* right, int samples) {
    const float goal = target;
    if (std::fabs((goal - 1e-19f) - current) < 0.0001f) {
        DSP::Block::scaleMinMax(left, samples, goal, minL, maxL);
        DSP::Block::scaleMinMax(right, samples, goal, minR, maxR);
        return;
    }
    for (int i = 0; i < samples; ++i) {
        current += (goal - current) * 0.005f;
        left[i] *= current;
        right[i] *= current;
    }
    DSP::Block::minMax(left, samples, minL, maxL);
    DSP::Block::minMax(right, samples, minR, maxR);
}

void CGainRamp::snap() {
    current = target;
    clearPeaks();
}

void CGainRamp::clearPeaks() { minL = maxL = minR = maxR = 0; }
