#pragma once
#include "effect/CZonfra.h"

namespace TestSupport {

// Everything on at once: the steepest slopes in series, both cutoffs moved by envelope and LFO,
// both modulators, distortion before and rate reduction after the filters, the limiter with
// automatic release, resonance on both filters, and a dry/wet below 1. The benchmarks and the
// reference output test share it.
inline void applyHeaviestSettings(CZonfra& effect) {
    auto set = [&effect](int id, float value) { effect.getParameter(id)->setValue(value); };
    set(kLowPassSlope, 4);
    set(kHighPassSlope, 4);
    set(kLowPassFreq, 2500);
    set(kHighPassFreq, 300);
    set(kLowPassQ, 0.6f);
    set(kHighPassQ, 0.4f);
    set(kLpStrength, 0.7f);
    set(kHpStrength, -0.5f);
    set(kLpStrengthLfo, 1.5f);
    set(kHpStrengthLfo, -1.0f);
    set(kLfoSync, 0);
    set(kLfoRate, 2.0f);
    set(kMeasurePoint, 2000);
    set(kRingModStrength, 0.5f);
    set(kRingModFreq, 800);
    set(kFreqModStrength, 0.5f);
    set(kFreqModFreq, 5);
    set(kDistLevel, 0.6f);
    set(kDistPrePost, 0);
    set(kRateReduceLevel, 0.6f);
    set(kRatePrePost, 1);
    set(kLimiterBypass, 1);
    set(kLimitRelease, 1);
    set(kDryWetMix, 0.8f);
}

}  // namespace TestSupport
