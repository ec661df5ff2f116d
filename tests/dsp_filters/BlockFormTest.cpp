// The two-lane stage and the block scans give, to the bit, what the scalar filter code gives.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "dsp/filters/StereoStage.h"
#include "dsp/memory/BlockScan.h"

using namespace DSP;

namespace {
template <typename T>
bool same(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

float input(int i) { return static_cast<float>(std::sin(0.37 * i) * (i % 50 < 25 ? 0.8 : 1e-41)); }

void designLowPass(CBiquadCascade& c, double hertz) {
    CSlopeFilter f(8);
    f.setSlope(96);
    f.setCutoff(hertz);
    c.copyCoefficients(f.lowPathA());
}
}  // namespace

TEST(FilterBlockForms, StereoStageIsTheCascadeStageInBothLanes) {
    for (bool rounded : {false, true}) {
        CBiquadCascade left(4), right(4), scalarL(4), scalarR(4);
        designLowPass(left, 900);
        designLowPass(right, 2500);
        scalarL.copyCoefficients(left);
        scalarR.copyCoefficients(right);
        std::vector<StereoStage> lanes(4);
        for (int k = 0; k < 4; ++k) lanes[static_cast<size_t>(k)].load(left, right, k);
        for (int m = 0; m < 300; ++m) {
            __m128d x = Lanes::fromFloats(input(m), -input(m + 7));
            for (StereoStage& s : lanes) x = rounded ? s.rounded(x, m & 1) : s.cascade(x, m & 1);
            const double l = rounded ? scalarL.tickRounded(input(m)) : scalarL.tick(input(m));
            const double r = rounded ? scalarR.tickRounded(-input(m + 7)) : scalarR.tick(-input(m + 7));
            ASSERT_TRUE(same(Lanes::left(x), l)) << m;
            ASSERT_TRUE(same(Lanes::right(x), r)) << m;
        }
        for (int k = 0; k < 4; ++k) lanes[static_cast<size_t>(k)].save(left, right, k, 299);
        for (int k = 0; k < 4; ++k) {
            EXPECT_TRUE(same(left.x1[k], scalarL.x1[k]) && same(left.x2[k], scalarL.x2[k]));
            EXPECT_TRUE(same(right.y1[k], scalarR.y1[k]) && same(right.y2[k], scalarR.y2[k]));
        }
    }
}

TEST(FilterBlockForms, StereoStageIsThePeakSection) {
    CPeakBiquad peak, scalar;
    peak.set(6, 1200, 0.8f, 9, true);
    scalar.set(6, 1200, 0.8f, 9, true);
    StereoStage lanes;
    lanes.load(peak);
    for (int m = 0; m < 200; ++m) {
        const __m128d y = lanes.peak(Lanes::fromFloats(input(m), input(m + 3)), m & 1);
        float l = input(m), r = input(m + 3);
        scalar.tick(l, r);
        ASSERT_EQ(static_cast<float>(Lanes::left(y)), l) << m;
        ASSERT_EQ(static_cast<float>(Lanes::right(y)), r) << m;
    }
    lanes.save(peak, 199);
    EXPECT_TRUE(same(peak.y1L, scalar.y1L) && same(peak.y2R, scalar.y2R) && same(peak.x1R, scalar.x1R));
}

TEST(FilterBlockForms, PeakDesignRunsAgainOnlyForChangedSettingsWithTheSameResult) {
    CPeakBiquad a, b;
    a.set(6, 1000, 0.9f, 6, true);
    a.storeFrequency(3000);
    a.q = 0.6f;
    a.update();
    b.set(6, 3000, 0.6f, 6, true);
    EXPECT_TRUE(same(a.b0, b.b0) && same(a.b1, b.b1) && same(a.b2, b.b2) && same(a.a1, b.a1) && same(a.a2, b.a2));
    a.gainDb = 0;
    a.update();
    EXPECT_DOUBLE_EQ(a.b0, 1.0);  // a peak of 0 dB passes the signal
    a.sampleRate = 96000;
    a.update();
    b.set(6, 3000, 0.6f, 0, true);
    EXPECT_NE(a.a1, b.a1);  // a new rate redesigns
}

TEST(FilterBlockForms, SlopeFilterBackInItsSelectedBinKeepsThatBinsCoefficients) {
    CSlopeFilter f(8), fresh(8);
    f.setSlope(48);
    fresh.setSlope(48);
    f.setCutoff(500);
    f.setCutoff(5000);
    f.setCutoff(500);
    fresh.setCutoff(500);
    for (int k = 0; k < 2; ++k) {
        EXPECT_TRUE(same(f.lowPathA().a1[k], fresh.lowPathA().a1[k]));
        EXPECT_TRUE(same(f.lowPathB().b0[k], fresh.lowPathB().b0[k]));
        EXPECT_TRUE(same(f.allPassStages().b2[k], fresh.allPassStages().b2[k]));
    }
    f.setSlope(96);  // clears the cache: the same cutoff designs anew for the new order
    EXPECT_EQ(f.lowPathA().stageCount(), 4);
}

TEST(FilterBlockForms, MinMaxKeepsTheFirstOfEqualZerosAndSkipsNaN) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<std::vector<float>> cases = {
        {0.5f, -0.0f, 0.0f, 2.0f, -3.0f, nan, 1.0f, 0.25f, -0.0f},
        {-0.0f, 0.0f, -0.0f, 0.0f, 0.0f},
        {0.0f, -0.0f, 0.0f, -0.0f, -0.0f, 0.0f, 0.0f, 0.0f, -0.0f},
        {nan, nan, nan, nan, 3.0f},
        {}};
    for (float startLow : {0.0f, -0.0f, 1.0f, nan}) {
        for (const std::vector<float>& x : cases) {
            float low = startLow, high = -startLow, expectLow = startLow, expectHigh = -startLow;
            for (float v : x) {
                expectLow = std::min(expectLow, v);
                expectHigh = std::max(expectHigh, v);
            }
            Block::minMax(x.data(), static_cast<int>(x.size()), low, high);
            EXPECT_TRUE(same(low, expectLow));
            EXPECT_TRUE(same(high, expectHigh));

            for (float gain : {1.0f, -0.5f, 0.0f}) {
                std::vector<float> scaled = x, expected = x;
                float scaledLow = startLow, scaledHigh = -startLow;
                expectLow = startLow;
                expectHigh = -startLow;
                for (float& v : expected) {
                    v *= gain;
                    expectLow = std::min(expectLow, v);
                    expectHigh = std::max(expectHigh, v);
                }
                Block::scaleMinMax(scaled.data(), static_cast<int>(scaled.size()), gain, scaledLow, scaledHigh);
                for (size_t i = 0; i < x.size(); ++i) EXPECT_TRUE(same(scaled[i], expected[i]));
                EXPECT_TRUE(same(scaledLow, expectLow));
                EXPECT_TRUE(same(scaledHigh, expectHigh));
            }
        }
    }
}

TEST(FilterBlockForms, FinitenessScaleAndCrossfade) {
    std::vector<float> x(11, 0.5f);
    EXPECT_TRUE(Block::allFinite(x.data(), 11));
    x[10] = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(Block::allFinite(x.data(), 11));
    EXPECT_TRUE(Block::allFinite(x.data(), 10));
    x[2] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(Block::allFinite(x.data(), 4));

    std::vector<float> wet(9), other(9), k(9), expected(9);
    for (size_t i = 0; i < 9; ++i) {
        wet[i] = input(static_cast<int>(i) + 1);
        other[i] = input(static_cast<int>(i) + 40);
        k[i] = 0.1f * static_cast<float>(i);
        expected[i] = (wet[i] + (other[i] - wet[i]) * k[i]) * 0.7f;
    }
    Block::crossfade(wet.data(), other.data(), 9, k.data());
    Block::scale(wet.data(), 9, 0.7f);
    for (size_t i = 0; i < 9; ++i) EXPECT_TRUE(same(wet[i], expected[i])) << i;
}
