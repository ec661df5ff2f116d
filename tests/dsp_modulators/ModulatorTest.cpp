#include <gtest/gtest.h>
#include <cmath>
#include <memory>
#include <vector>

#include "dsp/effects/CVibrato.h"
#include "dsp/generators/CSineOSC.h"
#include "dsp/effects/CFXLimiter.h"

using namespace DSP;
using DSP::FX::CFXLimiter;

TEST(SineOSC, StartsRisingAndStopsShortOfNyquist) {
    Generators::CSineOSC osc;
    osc.setSampleRate(44100);
    osc.setFrequency(441);
    const float w = static_cast<float>(2.0 * M_PI * 441.0 / 44100.0);
    EXPECT_FLOAT_EQ(osc.nextFloat(), std::sin(w));
    osc.setFrequency(30000);
    EXPECT_DOUBLE_EQ(osc.getFrequency(), 44100.0 / 2 - 10);
    osc.reset();
    double peak = 0;
    for (int i = 0; i < 44100; ++i) peak = std::max(peak, std::fabs(static_cast<double>(osc.nextFloat())));
    EXPECT_NEAR(peak, 1.0, 1e-3);
}

TEST(Vibrato, DepthZeroIsAOneSampleDelay) {
    auto vibrato = std::make_unique<FX::CVibrato>();
    vibrato->setParam(3, 0);
    float previous = 0;
    for (int i = 0; i < 200000; ++i) {  // across the 65535 seam more than once
        const float x = std::sin(static_cast<float>(i) * 0.01f);
        float l, r;
        vibrato->process(x, -x, &l, &r);
        ASSERT_EQ(l, previous) << i;
        ASSERT_EQ(r, -previous) << i;
        previous = x;
    }
    EXPECT_FALSE(vibrato->isActive());
}

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
