#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "dsp/analysis/CFFTRenderer.h"
#include "support/AllocationCounter.h"
#include "support/Samples.h"

using DSP::CFFTRenderer;

namespace {

constexpr int N = CFFTRenderer::kFftSize;

// A full-scale sine.
std::vector<float> sine(double hertz, double rate, int length) {
    return TestSupport::sine(static_cast<size_t>(length), hertz, rate, 1.0f);
}

int peakBin(const CFFTRenderer& r) {
    const float* db = r.spectrumDb();
    return static_cast<int>(std::max_element(db + 1, db + CFFTRenderer::kBinCount) - db);
}

// The frequency of the curve's highest pixel over a plot of `width` pixels.
float curvePeakHz(const CFFTRenderer& r, int width) {
    std::vector<float> db(static_cast<size_t>(width));
    r.curve(db.data(), width);
    const auto at = std::max_element(db.begin(), db.end()) - db.begin();
    return r.frequencyAt(static_cast<float>(at), static_cast<float>(width));
}

}  // namespace

TEST(Spectrum, SteadySinePeaksWithinOneBinAtEveryRate) {
    for (float rate : {44100.0f, 48000.0f, 96000.0f}) {
        CFFTRenderer r(22, 22050);
        r.setSampleRate(rate);
        const std::vector<float> x = sine(1000.0, rate, 3 * N);
        r.push(x.data(), x.data(), 3 * N);
        ASSERT_TRUE(r.updateSpectrum());
        r.smooth();
        const float binHz = rate / N;
        EXPECT_NEAR(peakBin(r) * binHz, 1000.0f, binHz) << rate;
        EXPECT_NEAR(curvePeakHz(r, 440), 1000.0f, binHz) << rate;
    }
}

TEST(Spectrum, FullScaleSineAtABinCentreReadsTheScaledLevel) {
    CFFTRenderer r(22, 22050);
    const std::vector<float> x = sine(100.0 * 44100.0 / N, 44100.0, N);
    r.push(x.data(), nullptr, N);
    ASSERT_TRUE(r.updateSpectrum());
    EXPECT_EQ(peakBin(r), 100);
    EXPECT_NEAR(r.spectrumDb()[100], 8.685889638065037 * std::log(0.21) + 40.0, 0.3);
}

TEST(Spectrum, WhiteNoiseIsFlatOverTheBand) {
    CFFTRenderer r(22, 22050);
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    std::vector<double> power(CFFTRenderer::kBinCount, 0.0);
    std::vector<float> x(N);
    for (int frame = 0; frame < 64; ++frame) {
        for (float& v : x) v = noise(random);
        r.push(x.data(), nullptr, N);
        ASSERT_TRUE(r.updateSpectrum());
        for (int i = 0; i < CFFTRenderer::kBinCount; ++i) power[i] += std::pow(10.0, r.spectrumDb()[i] / 10.0);
    }
    std::vector<double> octaves;  // mean power per octave from 86 Hz to 22 kHz, in dB
    for (int low = 4; low < CFFTRenderer::kBinCount; low *= 2) {
        double sum = 0.0;
        for (int i = low; i < 2 * low; ++i) sum += power[i];
        octaves.push_back(10.0 * std::log10(sum / low));
    }
    const auto [lo, hi] = std::minmax_element(octaves.begin(), octaves.end());
    EXPECT_LT(*hi - *lo, 2.0);
}

TEST(Spectrum, NonFiniteAudioAndSilenceDrawOnlyFiniteLevels) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    struct Case { const char* name; std::vector<float> left, right; };
    std::vector<float> spiked = sine(1000.0, 44100.0, N);
    spiked[10] = nan, spiked[500] = inf, spiked[900] = -inf;
    const Case cases[] = {
        {"silence", std::vector<float>(N, 0.0f), std::vector<float>(N, 0.0f)},
        {"all NaN", std::vector<float>(N, nan), std::vector<float>(N, nan)},
        {"inf minus inf", std::vector<float>(N, inf), std::vector<float>(N, -inf)},
        {"spikes in a sine", spiked, spiked},
        {"huge", std::vector<float>(N, 3e38f), std::vector<float>(N, 3e38f)},
    };
    for (const Case& c : cases) {
        CFFTRenderer r(22, 22050);
        r.push(c.left.data(), c.right.data(), N);
        ASSERT_TRUE(r.updateSpectrum()) << c.name;
        r.smooth();
        std::vector<float> db(300);
        r.curve(db.data(), 300);
        for (float v : db) {
            ASSERT_TRUE(std::isfinite(v)) << c.name;
            ASSERT_GE(v, -CFFTRenderer::kRangeDb) << c.name;
            ASSERT_LE(v, CFFTRenderer::kTopDb) << c.name;
        }
        if (&c == &cases[0]) {
            EXPECT_EQ(*std::max_element(db.begin(), db.end()), -CFFTRenderer::kRangeDb);
        }
    }
}

TEST(Spectrum, PushingAllocatesNothing) {
    CFFTRenderer r(22, 22050);
    const std::vector<float> x = sine(440.0, 44100.0, 3 * N + 5);
    TestSupport::AllocationScope scope;
    for (int count : {1, 64, 512, 511, N, 3 * N + 5}) {
        r.push(x.data(), x.data(), count);
        r.push(x.data(), nullptr, count);
    }
    EXPECT_EQ(scope.allocations(), 0u);
}

TEST(Spectrum, SampleRateChangeWhileRunningKeepsTheCurveOnItsFrequency) {
    CFFTRenderer r(22, 22050);
    std::vector<float> x = sine(1000.0, 44100.0, N);
    r.push(x.data(), nullptr, N);
    r.paint();
    for (float bad : {0.0f, -48000.0f, 1e9f, std::numeric_limits<float>::quiet_NaN()}) r.setSampleRate(bad);
    EXPECT_EQ(r.getSampleRate(), 44100.0f);

    r.setSampleRate(96000.0f);
    x = sine(1000.0, 96000.0, N + 100);
    r.push(x.data(), nullptr, N / 2);  // a frame straddles the change
    r.push(x.data() + N / 2, nullptr, N / 2 + 100);
    for (int paint = 0; paint < 60; ++paint) r.paint();
    EXPECT_NEAR(curvePeakHz(r, 440), 1000.0f, 96000.0f / N);
}

TEST(Spectrum, ClearDropsTheFrameInFlightAndTheLevels) {
    CFFTRenderer r(22, 22050);
    const std::vector<float> x = sine(1000.0, 44100.0, 2 * N);
    r.push(x.data(), nullptr, N + N / 2);
    r.paint();
    r.clear();
    r.push(x.data(), nullptr, N / 2);  // would complete the half frame from before the clear
    EXPECT_FALSE(r.updateSpectrum());
    r.smooth();
    EXPECT_EQ(*std::max_element(r.smoothedDb(), r.smoothedDb() + N), -CFFTRenderer::kRangeDb);
}
