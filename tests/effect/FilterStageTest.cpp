#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "EffectHarness.h"

namespace {
double magnitudeAt(const std::vector<float>& impulseResponse, double hertz, double rate) {
    std::complex<double> sum = 0;
    for (size_t n = 0; n < impulseResponse.size(); ++n)
        sum += static_cast<double>(impulseResponse[n]) * std::polar(1.0, -2.0 * M_PI * hertz * static_cast<double>(n) / rate);
    return std::abs(sum);
}

double rmsDb(const std::vector<float>& x, size_t from) {
    double sum = 0;
    for (size_t i = from; i < x.size(); ++i) sum += static_cast<double>(x[i]) * x[i];
    return 10.0 * std::log10(sum / static_cast<double>(x.size() - from) + 1e-300);
}

// Level in dB of a sine at `hertz` after the effect, once it has settled.
double sineThrough(EffectHarness& harness, double hertz) {
    std::vector<float> l = sine(44100, hertz, 44100), r = l;
    harness.effect->reset();
    harness.run(l, r, 512);
    return rmsDb(l, 22050);
}
}  // namespace

TEST(FilterStage, DryPathIsTheInputThroughAllPassesOnly) {
    EffectHarness harness;
    harness.set(kDryWetMix, 0);
    harness.set(kInputGain, 0.5f);
    harness.set(kDistPrePost, 1);  // no stage before the filters: the dry path carries the input gain
    harness.set(kLowPassSlope, 4);
    harness.set(kHighPassSlope, 3);
    harness.effect->reset();  // the mix snaps to its target
    std::vector<float> l(65536, 0.0f), r(65536, 0.0f);
    l[0] = r[0] = 1.0f;
    harness.run(l, r, 512);
    for (size_t i = 0; i < 200; ++i) ASSERT_EQ(l[i], 0.0f) << "nothing before the latency";
    const std::vector<float> response(l.begin() + 221, l.end());
    // Below 40 Hz the float rounding behind each section of the 10 Hz all-pass costs about 0.015 dB.
    for (double f = 40; f < 20000; f *= 1.25) {
        const double db = 20.0 * std::log10(magnitudeAt(response, f, 44100) / 0.5);
        EXPECT_NEAR(db, 0.0, 0.01) << f << " Hz";
    }
}

TEST(FilterStage, WithAStageBeforeTheFiltersTheDryPathIsTheRawInput) {
    EffectHarness harness;
    harness.set(kDryWetMix, 0);
    harness.set(kInputGain, 0.5f);
    harness.set(kDistPrePost, 0);
    harness.effect->reset();
    std::vector<float> l(8192, 0.0f), r(8192, 0.0f);
    l[0] = r[0] = 1.0f;
    harness.run(l, r, 512);
    const std::vector<float> response(l.begin() + 221, l.end());
    EXPECT_NEAR(magnitudeAt(response, 1000, 44100), 1.0, 0.002);
}

// The series path is the squared Butterworth of order n = slope / 12: -6 dB at the cutoff and
// 20 log10(1 + 4^n) dB down an octave above it.
TEST(FilterStage, EverySlopeRowOnAudio) {
    for (int slopeRow = 1; slopeRow <= 4; ++slopeRow) {
        EffectHarness harness;
        harness.set(kLowPassSlope, static_cast<float>(slopeRow));
        harness.set(kLowPassFreq, 1000);
        const double pass = sineThrough(harness, 100);
        const double order = slopeRow == 1 ? 1 : 1 << (slopeRow - 1);
        EXPECT_NEAR(sineThrough(harness, 1000) - pass, -6.02, 0.15) << "slope row " << slopeRow;
        EXPECT_NEAR(sineThrough(harness, 2000) - pass, -20.0 * std::log10(1.0 + std::pow(4.0, order)), 1.5)
            << "slope row " << slopeRow;
    }
}

TEST(FilterStage, ParallelHighPassTakesTheRawInput) {
    EffectHarness harness;
    harness.set(kFilterMode, 1);
    harness.set(kInputGain, 0);
    harness.set(kHighPassFreq, 100);
    harness.set(kLowPassFreq, 100);
    std::vector<float> l = sine(8192, 3000, 44100), r = l;
    harness.run(l, r, 512);
    EXPECT_GT(rmsDb(l, 4096), -10.0);  // the high-pass branch still sounds without input gain
}
