#include "effect/CGainRamp.h"

#include <algorithm>
#include <cmath>

void CGainRamp::apply(float* left, float* right, int samples) {
    const float goal = target;
    if (std::fabs((goal - 1e-19f) - current) < 0.0001f) {
        for (int i = 0; i < samples; ++i) {
            left[i] *= goal;
            right[i] *= goal;
            minL = std::min(minL, left[i]);
            maxL = std::max(maxL, left[i]);
            minR = std::min(minR, right[i]);
            maxR = std::max(maxR, right[i]);
        }
        return;
    }
    for (int i = 0; i < samples; ++i) {
        current += (goal - current) * 0.005f;
        left[i] *= current;
        right[i] *= current;
        minL = std::min(minL, left[i]);
        maxL = std::max(maxL, left[i]);
        minR = std::min(minR, right[i]);
        maxR = std::max(maxR, right[i]);
    }
}

void CGainRamp::snap() {
    current = target;
    clearPeaks();
}

void CGainRamp::clearPeaks() { minL = maxL = minR = maxR = 0; }
