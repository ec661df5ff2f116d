#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "EffectHarness.h"

namespace {
size_t peakIndex(const std::vector<float>& x) {
    size_t peak = 0;
    for (size_t i = 0; i < x.size(); ++i)
        if (std::fabs(x[i]) > std::fabs(x[peak])) peak = i;
    return peak;
}

void settingExtremes(EffectHarness& h, bool high) {
    for (int id = 0; id < kZonfraParameterCount; ++id) {
        if (id == kBypass) continue;
        Ondra::IPluginParameter* p = h.effect->getParameter(id);
        p->setValue(high ? p->getMaximum() : p->getMinimum());
    }
}
}  // namespace

TEST(SignalChain, ImpulseLatencyIsTheReportedOneOnEveryPath) {
    for (float rate : {44100.0f, 48000.0f, 96000.0f}) {
        for (int limiterCase = 0; limiterCase < 3; ++limiterCase) {
            for (float mix : {0.0f, 0.4f, 1.0f}) {
                EffectHarness harness(rate);
                harness.set(kLimiterBypass, limiterCase == 0 ? 1.0f : 0.0f);
                if (limiterCase == 2) {
                    harness.set(kLimiterBypass, 1);
                    harness.effect->getGlobalLimiterParameter().setValue(0);
                }
                harness.set(kDryWetMix, mix);
                harness.set(kLowPassFreq, 22050);
                harness.effect->reset();
                const int expected = rate == 44100.0f ? 221 : (rate == 48000.0f ? 240 : 481);
                EXPECT_EQ(harness.callback.reportedLatency, expected);
                std::vector<float> l(4096, 0.0f), r(4096, 0.0f);
                l[1000] = r[1000] = 0.5f;
                harness.run(l, r, 512);
                // Above 44.1 kHz the open low-pass (22 kHz at most) still has a sample or two of group delay.
                EXPECT_NEAR(static_cast<double>(peakIndex(l)), 1000.0 + expected, rate > 45000 ? 2.0 : 0.0)
                    << rate << " limiter case " << limiterCase << " mix " << mix;
                for (int i = 0; i < 1000 + expected - 3; ++i) ASSERT_NEAR(l[static_cast<size_t>(i)], 0.0f, 1e-12) << i;
            }
        }
    }
}

TEST(SignalChain, NoNaNOrInfinityForAnyFiniteInputAtTheStartSettingsAndTheExtremes) {
    const float inputs[] = {1e30f, -1e30f, 1e-40f, -1e-42f, 0.0f, 1.0f, -1.0f, 3e-39f};
    for (int settings : {0, 1, 2}) {
        EffectHarness harness;
        if (settings > 0) settingExtremes(harness, settings == 2);
        std::vector<float> l(8192), r(8192);
        for (size_t i = 0; i < l.size(); ++i) {
            l[i] = inputs[i % 8];
            r[i] = inputs[(i + 3) % 8];
        }
        harness.run(l, r, 300);
        for (size_t i = 0; i < l.size(); ++i)
            ASSERT_TRUE(std::isfinite(l[i]) && std::isfinite(r[i])) << "settings " << settings << " at " << i;
    }
}

TEST(SignalChain, NaNInputThenResetSoundsNormalAgain) {
    EffectHarness harness;
    harness.set(kLimiterBypass, 1);
    harness.set(kLowPassFreq, 2000);
    harness.set(kRingModStrength, 0.3f);
    harness.set(kFreqModStrength, 0.3f);
    std::vector<float> poison(1024, std::numeric_limits<float>::quiet_NaN()), poisonR = poison;
    harness.run(poison, poisonR, 512);
    harness.effect->reset();
    std::vector<float> l = sine(8192, 300, 44100), r = l;
    harness.run(l, r, 512);
    for (size_t i = 0; i < l.size(); ++i) ASSERT_TRUE(std::isfinite(l[i])) << i;
    EXPECT_GT(std::fabs(l[6000]) + std::fabs(l[6050]) + std::fabs(l[6100]), 0.01f);
}
