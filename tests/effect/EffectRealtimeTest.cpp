#include <gtest/gtest.h>

#include <vector>

#include "EffectHarness.h"
#include "support/AllocationCounter.h"

TEST(EffectRealtime, TheFirstBlockOfAFreshInstanceAllocatesNothing) {
    EffectHarness harness(48000, 256);
    std::vector<float> left = sine(256, 300, 48000), right = left;
    TestSupport::AllocationScope scope;
    harness.runBlock(left.data(), right.data(), 256);
    EXPECT_EQ(scope.allocations(), 0u);
}

TEST(EffectRealtime, ProcessAllocatesNothingUpToTheMaximalBlock) {
    EffectHarness harness(44100, 512);
    std::vector<float> left = sine(512, 300, 44100), right = sine(512, 500, 44100);
    harness.set(kDryWetMix, 0.5f);
    harness.set(kInputGain, 1.5f);
    harness.set(kDistPrePost, 0);
    harness.set(kRatePrePost, 0);
    harness.set(kFilterMode, 1);
    harness.set(kLimiterBypass, 1);
    std::vector<float> warmL = left, warmR = right;
    harness.run(warmL, warmR, 512);  // structural changes land on the first block

    TestSupport::AllocationScope scope;
    for (int block : {1, 7, 64, 88, 100, 511, 512}) {
        std::vector<float>& l = left;
        std::vector<float>& r = right;
        harness.runBlock(l.data(), r.data(), block);
    }
    harness.effect->getParameter(kLowPassFreq)->setValue(800);
    harness.effect->getParameter(kBypass)->setValue(1);
    for (int i = 0; i < 20; ++i) harness.runBlock(left.data(), right.data(), 512);
    harness.effect->getParameter(kBypass)->setValue(0);
    for (int i = 0; i < 20; ++i) harness.runBlock(left.data(), right.data(), 512);
    EXPECT_EQ(scope.allocations(), 0u);
}
