#include <gtest/gtest.h>
#include <cmath>
#include <memory>
#include <vector>

#include "dsp/delays/CSimpleMonoDelay.h"
#include "dsp/effects/CFXRingMod.h"
#include "dsp/effects/CVibrato.h"
#include "dsp/generators/CSineOSC.h"
#include "dsp/memory/CFloatBuffer.h"
#include "dsp/effects/CFXLimiter.h"
#include "support/AllocationCounter.h"

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

// The gain curve and its mix shape every reference output; what the effect never asks for is checked here.
TEST(RingMod, StereoFormsClampANegativeMixToNothing) {
    FX::CFXRingMod ring;
    ring.setSampleRate(44100);
    ring.setParam(0, 1000);
    ring.setParam(1, -1);
    std::vector<float> a(44100, 1.0f), b(44100, 1.0f);
    float* io[2] = {a.data(), b.data()};
    ring.processInPlace(io, 44100);
    EXPECT_NEAR(a.back(), 1.0f, 1e-4);
}

TEST(RingMod, LowestFrequencyFadesTheEffectOut) {
    FX::CFXRingMod ring;
    ring.setParam(1, 1);
    ring.setParam(0, 0.0f);  // clamped to 0.01: the gate closes
    EXPECT_FLOAT_EQ(ring.getFrequency(), 0.01f);
    std::vector<float> l(200000, 1.0f), r(200000, 1.0f);
    float* io[2] = {l.data(), r.data()};
    ring.processInPlace(io, 200000);
    EXPECT_NEAR(l.back(), 1.0f, 1e-3);
}

TEST(MonoDelay, ExactDelayAndRateChangesThatTruncate) {
    DELAY::CSimpleMonoDelay delay;
    delay.setDelaySamples(221);
    for (int i = 0; i < 600; ++i) {
        const float y = delay.tick(static_cast<float>(i + 1));
        ASSERT_EQ(y, i < 221 ? 0.0f : static_cast<float>(i + 1 - 221)) << i;
    }
    delay.setSampleRate(96000);
    EXPECT_EQ(delay.getDelaySamples(), 481);
    DELAY::CSimpleMonoDelay other;
    other.setDelaySamples(221);
    other.setSampleRate(48000);
    EXPECT_EQ(other.getDelaySamples(), 240);
    other.setSampleRate(44100);
    EXPECT_EQ(other.getDelaySamples(), 221);  // scaled from the length as set, not from the last rate
    EXPECT_EQ(other.getCapacity(), 240);  // shrinking keeps the buffer
    other.setDelayMs(5);
    EXPECT_EQ(other.getDelaySamples(), 221);
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

TEST(FloatBuffer, ReferenceCountedAndAligned) {
    auto* buffer = new MEMORY::CFloatBuffer;
    buffer->allocate(0);
    EXPECT_EQ(buffer->get(), nullptr);
    buffer->allocate(37);
    ASSERT_NE(buffer->get(), nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(buffer->get()) % 16, 0u);
    EXPECT_EQ(buffer->get()[36], 0.0f);
    buffer->addRef();
    EXPECT_EQ(buffer->references(), 2);
    buffer->release();
    buffer->release();  // deletes; ASan sees any leak or double free
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

TEST_F(Limiter, SilenceAndAllocation) {
    std::vector<float> l(512, 0.0f), r(512, 0.0f);
    TestSupport::AllocationScope scope;
    for (int i = 0; i < 10; ++i) limiter.process(l.data(), r.data(), 512);
    EXPECT_EQ(scope.allocations(), 0u);
    EXPECT_EQ(l[100], 0.0f);
}
