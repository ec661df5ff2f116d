#pragma once
#include <utility>

#include "effect/CZonfra.h"

namespace TestSupport {

// Everything on at once: the steepest slopes in series, both cutoffs moved by envelope and LFO,
// both modulators, distortion before and rate reduction after the filters, the limiter with
// automatic release, resonance on both filters, and a dry/wet below 1. The benchmarks and the
// reference output test share it.
inline void applyHeaviestSettings(CZonfra& effect) {
    const std::pair<int, float> settings[] = {
        {kLowPassSlope, 4},        {kHighPassSlope, 4},       {kLowPassFreq, 2500},    {kHighPassFreq, 300},
        {kLowPassQ, 0.6f},         {kHighPassQ, 0.4f},        {kLpStrength, 0.7f},     {kHpStrength, -0.5f},
        {kLpStrengthLfo, 1.5f},    {kHpStrengthLfo, -1.0f},   {kLfoSync, 0},           {kLfoRate, 2.0f},
        {kMeasurePoint, 2000},     {kRingModStrength, 0.5f},  {kRingModFreq, 800},     {kFreqModStrength, 0.5f},
        {kFreqModFreq, 5},         {kDistLevel, 0.6f},        {kDistPrePost, 0},       {kRateReduceLevel, 0.6f},
        {kRatePrePost, 1},         {kLimiterBypass, 1},       {kLimitRelease, 1},      {kDryWetMix, 0.8f}};
    for (auto [id, value] : settings) effect.getParameter(id)->setValue(value);
}

}  // namespace TestSupport
