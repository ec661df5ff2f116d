#include <gtest/gtest.h>

#include <xmmintrin.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "EffectHarness.h"

namespace {
int fadeLength(float rate) { return static_cast<int>(std::ceil(15.0f * rate * 0.001f)); }
}  // namespace

TEST(EffectAudio, ControlChunkSizeIsFiveHundredPerSecond) {
    EffectHarness harness;
    EXPECT_EQ(harness.effect->getControlChunkSize(), 88);
    harness.effect->setSampleRate(48000);
    EXPECT_EQ(harness.effect->getControlChunkSize(), 96);
    harness.effect->setSampleRate(96000);
    EXPECT_EQ(harness.effect->getControlChunkSize(), 192);
}

TEST(EffectAudio, LatencyFollowsTheSampleRateAndIsReported) {
    EffectHarness harness;
    EXPECT_EQ(harness.effect->getLatencySamples(), 221);
    EXPECT_EQ(harness.effect->getInitialDelay(), 221);
    EXPECT_EQ(harness.callback.reportedLatency, 221);
    harness.effect->setSampleRate(48000);
    EXPECT_EQ(harness.callback.reportedLatency, 240);
    harness.effect->setSampleRate(44100);  // the way back ends where it began
    EXPECT_EQ(harness.callback.reportedLatency, 221);
    EffectHarness high(96000);
    EXPECT_EQ(high.callback.reportedLatency, 481);
    EXPECT_EQ(high.effect->getInitialDelay(), 481);
}

TEST(EffectAudio, SettledBypassIsTheInputDelayedBitForBit) {
    for (int hostBlock : {1, 64, 512, 3000}) {
        EffectHarness harness;
        harness.set(kLowPassFreq, 300);
        harness.set(kInputGain, 1.7f);
        harness.set(kBypass, 1);
        std::vector<float> warmL(4000, 0.25f), warmR(4000, -0.25f);
        harness.run(warmL, warmR, hostBlock);
        ASSERT_TRUE(harness.effect->isBypassSettled());
        std::vector<float> left = sine(5000, 441, 44100), right = sine(5000, 1000, 44100);
        const std::vector<float> inL = left, inR = right;
        harness.run(left, right, hostBlock);
        for (size_t i = 0; i < 221; ++i) {
            ASSERT_EQ(left[i], 0.25f) << i;
            ASSERT_EQ(right[i], -0.25f) << i;
        }
        for (size_t i = 221; i < left.size(); ++i) {
            ASSERT_EQ(left[i], inL[i - 221]) << "block " << hostBlock << " sample " << i;
            ASSERT_EQ(right[i], inR[i - 221]) << "block " << hostBlock << " sample " << i;
        }
    }
}

TEST(EffectAudio, BypassFadeLastsFifteenMillisecondsAtAnyBlockSize) {
    for (float rate : {44100.0f, 96000.0f}) {
        for (int hostBlock : {1, 32, 500, 4096}) {
            EffectHarness harness(rate, 512);
            std::vector<float> left(8192, 0.5f), right(8192, 0.5f);
            harness.run(left, right, 256);
            harness.set(kBypass, 1);
            EXPECT_FALSE(harness.effect->isBypassSettled());
            int processed = 0;
            while (!harness.effect->isBypassSettled() && processed < 20000) {
                std::vector<float> l(1, 0.5f), r(1, 0.5f);
                harness.run(l, r, 1);
                ++processed;
            }
            EXPECT_NEAR(processed, fadeLength(rate), 1) << rate << " " << hostBlock;
        }
    }
}

TEST(EffectAudio, BypassFadeIsIndependentOfTheHostBlock) {
    // The fade runs per sample, so any block size settles on the same sample.
    for (int hostBlock : {7, 128, 2048}) {
        EffectHarness harness;
        harness.set(kBypass, 1);
        std::vector<float> left(4096, 0.5f), right(4096, 0.5f);
        int settledAt = -1;
        for (int at = 0; at < 4096; at += hostBlock) {
            std::vector<float> l(left.begin() + at, left.begin() + std::min(at + hostBlock, 4096));
            std::vector<float> r = l;
            harness.run(l, r, hostBlock);
            if (settledAt < 0 && harness.effect->isBypassSettled()) settledAt = at;
        }
        ASSERT_GE(settledAt, 0);
        EXPECT_LE(settledAt, fadeLength(44100));
        EXPECT_GT(settledAt + hostBlock, fadeLength(44100) - 1);
    }
}

TEST(EffectAudio, SetBypassWithTheSameStateStartsNoFade) {
    EffectHarness harness;
    harness.effect->setBypass(false);
    EXPECT_TRUE(harness.effect->isBypassSettled());
    harness.effect->setBypass(true);
    EXPECT_FALSE(harness.effect->isBypassSettled());
    EXPECT_FLOAT_EQ(harness.effect->getBypassFade(), 1.0f);
    std::vector<float> left(2000, 0.1f), right(2000, 0.1f);
    harness.run(left, right, 512);
    ASSERT_TRUE(harness.effect->isBypassSettled());
    harness.effect->setBypass(true);
    EXPECT_TRUE(harness.effect->isBypassSettled());
}

TEST(EffectAudio, ZeroSampleBlockLeavesStateAlone) {
    EffectHarness harness;
    harness.set(kDryWetMix, 0.3f);
    harness.set(kBypass, 1);
    const float fade = harness.effect->getBypassFade();
    const float mix = harness.effect->getMixCurrent();
    float left = 0, right = 0;
    harness.runBlock(&left, &right, 0);
    EXPECT_EQ(harness.effect->getBypassFade(), fade);
    EXPECT_EQ(harness.effect->getMixCurrent(), mix);
    EXPECT_FALSE(harness.effect->isBypassSettled());
}

TEST(EffectAudio, GainRampSmoothsPerSampleAndSnapsWhenClose) {
    CGainRamp ramp;
    float left[2] = {0.5f, 0.5f}, right[2] = {-0.5f, -0.5f};
    ramp.setGain(0.5f);
    ramp.apply(left, right, 2);
    EXPECT_FLOAT_EQ(left[0], 0.5f * (1.0f - 0.5f * 0.005f));
    EXPECT_FLOAT_EQ(left[1], 0.5f * (1.0f - 0.5f * (1 - 0.995f * 0.995f)));
    EXPECT_FLOAT_EQ(ramp.minR, right[0]);
    EXPECT_FLOAT_EQ(ramp.maxL, left[0]);
    std::vector<float> l(5000, 1.0f), r(5000, 1.0f);
    ramp.apply(l.data(), r.data(), 5000);
    // Close enough: the gain is the target exactly, as a constant.
    float a = 1.0f, b = 1.0f;
    ramp.apply(&a, &b, 1);
    EXPECT_EQ(a, 0.5f);
    ramp.setGain(2.0f);
    ramp.snap();
    EXPECT_EQ(ramp.getCurrent(), 2.0f);
    EXPECT_EQ(ramp.maxL, 0.0f);
}

TEST(EffectAudio, DryWetMovesSmoothlyToItsTarget) {
    EffectHarness harness;
    harness.set(kDryWetMix, 0.0f);
    std::vector<float> l = sine(2, 1000, 44100), r = l;
    harness.run(l, r, 2);
    EXPECT_NEAR(harness.effect->getMixCurrent(), 1.0f - 2 * 0.005f, 1e-4);
    std::vector<float> more = sine(44100, 1000, 44100), moreR = more;
    harness.run(more, moreR, 512);
    EXPECT_NEAR(harness.effect->getMixCurrent(), 0.0f, 1e-5);
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

TEST(EffectAudio, ExtremeInputStaysFinite) {
    EffectHarness harness;
    std::vector<float> left(4096), right(4096);
    for (size_t i = 0; i < left.size(); ++i) {
        left[i] = (i % 3 == 0) ? 1e30f : (i % 3 == 1 ? -1e30f : 1e-40f);
        right[i] = (i % 2) ? 1e-42f : -3.0f;
    }
    harness.run(left, right, 512);
    for (size_t i = 0; i < left.size(); ++i) {
        ASSERT_TRUE(std::isfinite(left[i])) << i;
        ASSERT_TRUE(std::isfinite(right[i])) << i;
    }
}
