#include <gtest/gtest.h>

#include "EffectHarness.h"
#include "support/Samples.h"
#include "effect/LatencyDelay.h"

using TestSupport::allFinite;

// The rate goes up and back down again: chunk size, latency and delay follow the rate, not the one before.
TEST(SignalChain, ImpulseLatencyIsTheReportedOneOnEveryPathAtEveryRate) {
    for (int limiterCase = 0; limiterCase < 3; ++limiterCase) {  // on, off, off and the global switch off
        for (float mix : {0.0f, 0.4f, 1.0f}) {
            EffectHarness harness;
            harness.set(kLimiterBypass, limiterCase == 1 ? 0.0f : 1.0f);
            if (limiterCase == 2) harness.effect->getGlobalLimiterParameter().setValue(0);
            harness.set(kDryWetMix, mix);
            harness.set(kLowPassFreq, 22050);
            for (auto [rate, chunk, latency] :
                 {std::tuple{44100.0f, 88, 221}, {48000.0f, 96, 240}, {96000.0f, 192, 481}, {44100.0f, 88, 221}}) {
                harness.effect->setSampleRate(rate);
                EXPECT_EQ(harness.effect->getControlChunkSize(), chunk) << rate;
                EXPECT_EQ(harness.callback.reportedLatency, latency) << rate;
                EXPECT_EQ(harness.effect->getInitialDelay(), latency) << rate;
                harness.effect->reset();  // the mix snaps to its target
                std::vector<float> l(4096, 0.0f), r(4096, 0.0f);
                l[1000] = r[1000] = 0.5f;
                harness.run(l, r, 512);
                // Above 44.1 kHz the open low-pass (22 kHz at most) still has a sample or two of group delay.
                EXPECT_NEAR(static_cast<double>(TestSupport::peakIndex(l)), 1000.0 + latency, rate > 45000 ? 2.0 : 0.0)
                    << rate << " limiter case " << limiterCase << " mix " << mix;
                for (int i = 0; i < 1000 + latency - 3; ++i) ASSERT_NEAR(l[static_cast<size_t>(i)], 0.0f, 1e-12) << i;
            }
        }
    }
}

TEST(SignalChain, NoNaNOrInfinityForAnyFiniteInputAtTheStartSettingsAndTheExtremes) {
    const float inputs[] = {1e30f, -1e30f, 1e-40f, -1e-42f, 0.0f, 1.0f, -1.0f, 3e-39f};
    for (int settings : {0, 1, 2}) {
        EffectHarness harness;
        for (int id = 0; id < kZonfraParameterCount && settings > 0; ++id) {
            Ondra::IPluginParameter* p = harness.effect->getParameter(id);
            if (id != kBypass) p->setValue(settings == 2 ? p->getMaximum() : p->getMinimum());
        }
        std::vector<float> l(8192), r(8192);
        for (size_t i = 0; i < l.size(); ++i) {
            l[i] = inputs[i % 8];
            r[i] = inputs[(i + 3) % 8];
        }
        harness.run(l, r, 300);
        EXPECT_TRUE(allFinite(l) && allFinite(r)) << "settings " << settings;
    }
}

// A ramp through the delay in chunks of the given sizes, every sample against a plain reference delay. Chunks
// longer than the delay come only below 500 Hz, where a control chunk is the whole host block.
TEST(LatencyDelay, ShortAndLongChunksKeepTheDelayExact) {
    for (const auto& [length, chunks] : {std::pair{221, std::vector<int>{1, 1, 5000, 88, 1, 220, 221, 222, 5000}},
                                         {481, std::vector<int>{96, 5000, 1, 480, 481, 482}}}) {
        Ondra::CNChannelBuffer ring, scratch;
        ring.resize(length, 2);
        scratch.resize(6000, 1);
        std::vector<float> left, right;
        for (int c : chunks)
            for (int i = 0; i < c; ++i) {
                left.push_back(static_cast<float>(left.size() + 1));
                right.push_back(-static_cast<float>(right.size() + 1));
            }
        size_t at = 0;
        for (int c : chunks) {
            delayInPlace(ring, scratch, left.data() + at, right.data() + at, c);
            at += static_cast<size_t>(c);
        }
        for (size_t i = 0; i < left.size(); ++i) {
            const float expected = i < static_cast<size_t>(length) ? 0.0f : static_cast<float>(i + 1 - length);
            ASSERT_EQ(left[i], expected) << "sample " << i;
            ASSERT_EQ(right[i], -expected) << "sample " << i;
        }
    }
}
