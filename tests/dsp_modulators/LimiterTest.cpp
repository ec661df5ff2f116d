#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "dsp/effects/CFXLimiter.h"
#include "support/AllocationCounter.h"

using DSP::FX::CFXLimiter;

// Its gain curve, attack, release and make-up shape every reference output of the effect.
class Limiter : public ::testing::Test {
protected:
    void SetUp() override {
        limiter.setBlockSize(512);
        limiter.setLookahead(5.0f);
        limiter.setSampleRate(44100);
        limiter.reset();
    }
    // Both channels alike, in blocks of `block`; the left output.
    std::vector<float> run(std::vector<float> left, int block = 64) {
        std::vector<float> right = left;
        for (size_t at = 0; at < left.size(); at += static_cast<size_t>(block)) {
            const unsigned n = static_cast<unsigned>(std::min<size_t>(static_cast<size_t>(block), left.size() - at));
            limiter.process(left.data() + at, right.data() + at, n);
        }
        EXPECT_EQ(left, right);
        return left;
    }
    CFXLimiter limiter;
};

TEST_F(Limiter, LoudProgrammeNeverPassesTheCeilingForLong) {
    limiter.setParam(3, 1.0f);  // automatic release
    EXPECT_TRUE(limiter.isAutomaticRelease());
    std::vector<float> in(44100);
    for (size_t i = 0; i < in.size(); ++i) in[i] = 3.0f * std::sin(static_cast<float>(i) * 0.02f);
    const std::vector<float> out = run(in, 88);
    EXPECT_EQ(std::count_if(out.begin() + 2000, out.end(), [](float x) { return std::fabs(x) > 1.001f; }), 0);
    EXPECT_LT(limiter.getMeterGain(), 0.5f);
    limiter.setParam(3, 1.01f);
    EXPECT_FALSE(limiter.isAutomaticRelease());
}

TEST_F(Limiter, BypassKeepsTheDelayAndARateChangeMovesTheDelayNotTheRing) {
    limiter.setParam(5, 1);
    std::vector<float> in(1000, 0.0f);
    in[10] = 4.0f;
    EXPECT_EQ(run(in)[231], 4.0f);
    EXPECT_EQ(limiter.getDelaySamples(), 221);
    limiter.setSampleRate(96000);
    EXPECT_EQ(limiter.getDelaySamples(), 481);
    EXPECT_EQ(limiter.getPeakRingLength(), 221);
}

TEST_F(Limiter, SilenceAndAllocation) {
    std::vector<float> l(512, 0.0f), r(512, 0.0f);
    TestSupport::AllocationScope scope;
    for (int i = 0; i < 10; ++i) limiter.process(l.data(), r.data(), 512);
    EXPECT_EQ(scope.allocations(), 0u);
    EXPECT_EQ(l[100], 0.0f);
}
