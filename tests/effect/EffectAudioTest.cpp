#include <gtest/gtest.h>

#include <xmmintrin.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "EffectHarness.h"

TEST(EffectAudio, ChunkSizeAndLatencyFollowTheSampleRateBothWays) {
    EffectHarness harness;
    const struct {
        float rate;
        int chunk, latency;
    } rows[] = {{44100, 88, 221}, {48000, 96, 240}, {96000, 192, 481}, {44100, 88, 221}};
    for (const auto& row : rows) {
        harness.effect->setSampleRate(row.rate);
        EXPECT_EQ(harness.effect->getControlChunkSize(), row.chunk) << row.rate;
        EXPECT_EQ(harness.callback.reportedLatency, row.latency) << row.rate;
        EXPECT_EQ(harness.effect->getInitialDelay(), row.latency) << row.rate;
    }
}

TEST(EffectAudio, SetBypassWithTheSameStateStartsNoFadeAndEmptyBlocksChangeNothing) {
    EffectHarness harness;
    harness.effect->setBypass(false);
    EXPECT_TRUE(harness.effect->signalChain().isBypassSettled());
    harness.set(kDryWetMix, 0.3f);
    harness.effect->setBypass(true);
    EXPECT_FALSE(harness.effect->signalChain().isBypassSettled());
    EXPECT_FLOAT_EQ(harness.effect->signalChain().bypassFadeGain(), 1.0f);
    const float mix = harness.effect->signalChain().mixInForce();
    float left = 0, right = 0;
    harness.runBlock(&left, &right, 0);
    EXPECT_EQ(harness.effect->signalChain().bypassFadeGain(), 1.0f);
    EXPECT_EQ(harness.effect->signalChain().mixInForce(), mix);
    EXPECT_FALSE(harness.effect->signalChain().isBypassSettled());
    std::vector<float> l(2000, 0.1f), r(2000, 0.1f);
    harness.run(l, r, 512);
    ASSERT_TRUE(harness.effect->signalChain().isBypassSettled());
    harness.effect->setBypass(true);
    EXPECT_TRUE(harness.effect->signalChain().isBypassSettled());
}

TEST(EffectAudio, GainRampSnapTakesTheTargetAndClearsThePeaks) {
    CGainRamp ramp;
    float left = 1.0f, right = -1.0f;
    ramp.setGain(2.0f);
    ramp.apply(&left, &right, 1);
    ramp.snap();
    EXPECT_EQ(ramp.getCurrent(), 2.0f);
    EXPECT_TRUE(ramp.maxL == 0.0f && ramp.minR == 0.0f);
}

TEST(EffectAudio, EntryOperationsRestoreTheHostsFloatingPointMode) {
    EffectHarness harness;
    const unsigned host = _mm_getcsr();
    _mm_setcsr(host | 0x8040);  // flush-to-zero and denormals-are-zero, as some hosts run
    std::vector<float> left(256, 0.5f), right(256, 0.5f);
    harness.run(left, right, 256);
    harness.set(kLowPassFreq, 1000);
    void* data = nullptr;
    harness.effect->getChunk(&data);
    EXPECT_EQ(_mm_getcsr() & 0xFFC0u, (host | 0x8040) & 0xFFC0u);
    _mm_setcsr(host);
}
