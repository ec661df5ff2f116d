#include "dsp/filters/CPeakBiquad.h"
#include "dsp_filters/FilterTestHelpers.h"

using DSP::CPeakBiquad;

namespace {

double gainDbAt(const CPeakBiquad& p, double f) {
    const FilterTest::Section s{p.b0, p.b1, p.b2, p.a1, p.a2};
    return FilterTest::toDb(std::abs(FilterTest::sectionResponse(s, f, p.sampleRate)));
}

CPeakBiquad make(int type, float f, float q, float gainDb, bool bandwidth, double rate = 48000) {
    CPeakBiquad p;
    p.sampleRate = rate;
    p.set(type, f, q, gainDb, bandwidth);
    return p;
}

}  // namespace

TEST(PeakBiquad, EveryTypeHasItsCharacteristicGain) {
    // A low-pass at the Butterworth quality is the second-order Butterworth.
    const CPeakBiquad low = make(0, 1000, static_cast<float>(std::sqrt(0.5)), 0, false, 44100);
    const auto expected = FilterTest::butterworthSection(1000, 44100, static_cast<float>(std::sqrt(0.5)), false);
    EXPECT_TRUE(std::fabs(low.b0 - expected.b0) < 1e-12 && std::fabs(low.b1 - expected.b1) < 1e-12 &&
                std::fabs(low.a1 - expected.a1) < 1e-12 && std::fabs(low.a2 - expected.a2) < 1e-12);
    const struct {
        int type;
        float gainDb;
        double hertz, expectedDb, tolerance;
    } rows[] = {{0, 0, 0, 0, 1e-9},     {1, 0, 24000, 0, 1e-9}, {3, 0, 1000, 0, 1e-9},  {4, 0, 10, 0, 1e-3},
                {5, 0, 10, 0, 1e-9},    {5, 0, 700, 0, 1e-9},   {5, 0, 1000, 0, 1e-9},  {5, 0, 5000, 0, 1e-9},
                {5, 0, 23000, 0, 1e-9}, {6, 9, 1000, 9, 1e-9},  {6, -12, 1000, -12, 1e-9}, {7, 6, 0, 6, 1e-9},
                {7, 6, 24000, 0, 1e-9}, {8, 6, 24000, 6, 1e-9}, {8, 6, 0, 0, 1e-9}};
    for (bool bandwidth : {false, true}) {
        const float q = bandwidth ? 1.0f : 2.0f;
        for (const auto& r : rows)
            EXPECT_NEAR(gainDbAt(make(r.type, 1000, q, r.gainDb, bandwidth), r.hertz), r.expectedDb, r.tolerance)
                << "type " << r.type << " at " << r.hertz << (bandwidth ? " (bandwidth)" : "");
        EXPECT_LT(gainDbAt(make(4, 1000, q, 0, bandwidth), 1000.0), -120.0);  // the notch
    }
    // The constant-skirt band-pass peaks at Q.
    EXPECT_NEAR(gainDbAt(make(2, 1000, 4, 0, false), 1000.0), FilterTest::toDb(4.0), 1e-9);
}

TEST(PeakBiquad, BandwidthInOctavesSpansTheHalfPowerPointsOfTheBandPass) {
    for (float octaves : {0.5f, 1.0f, 2.0f}) {
        const CPeakBiquad p = make(3, 1000, octaves, 0, true);
        // Bandwidth mode places the half-power points on a geometric pair around the centre.
        const double lower = 1000.0 * std::pow(2.0, -octaves / 2.0);
        const double upper = 1000.0 * std::pow(2.0, octaves / 2.0);
        // The prewarped definition is exact only for small w; at 1 kHz / 48 kHz 0.05 dB holds.
        EXPECT_NEAR(gainDbAt(p, lower), -3.0103, 0.05) << octaves;
        EXPECT_NEAR(gainDbAt(p, upper), -3.0103, 0.05) << octaves;
    }
}

TEST(PeakBiquad, PeakWithZeroGainIsAnIdentity) {
    for (float q : {0.1f, 0.7f, 3.0f, 20.0f}) {
        for (bool bandwidth : {false, true}) {
            CPeakBiquad p = make(6, 3000, q, 0, bandwidth);
            EXPECT_NEAR(p.b0, 1.0, 1e-15);
            EXPECT_NEAR(p.b1, p.a1, 1e-15);
            EXPECT_NEAR(p.b2, p.a2, 1e-15);
            for (int i = 0; i < 1000; ++i) {
                const float x = static_cast<float>(std::sin(0.37 * i) * 0.8);
                float left = x, right = -x;
                p.tick(left, right);
                ASSERT_NEAR(left, x, 1e-6f);
                ASSERT_NEAR(right, -x, 1e-6f);
            }
        }
    }
}

TEST(PeakBiquad, FrequencyIsClampedToNyquistAndDesignRange) {
    CPeakBiquad p = make(6, 1000, 1, 6, true, 44100);
    p.setFrequency(100000.0f);
    EXPECT_FLOAT_EQ(p.frequency, 22050.0f);
    EXPECT_TRUE(std::isfinite(p.b0) && std::isfinite(p.a1) && std::isfinite(p.a2));
    // The design itself stops at 20 kHz.
    EXPECT_DOUBLE_EQ(p.a1, make(6, 20000, 1, 6, true, 44100).a1);
    p.setFrequency(0.0f);
    EXPECT_FLOAT_EQ(p.frequency, 1.0f);
    EXPECT_DOUBLE_EQ(p.a1, make(6, 5, 1, 6, true, 44100).a1);
}

TEST(PeakBiquad, DirectWritesTakeEffectOnUpdateAndSampleRateRedesigns) {
    EXPECT_EQ(CPeakBiquad().sampleRate, 44100.0);  // before any rate is set
    CPeakBiquad p = make(6, 1000, 1, 0, true, 44100);
    p.gainDb = 12.0f;
    p.update();
    EXPECT_NEAR(gainDbAt(p, 1000.0), 12.0, 1e-9);
    p.setSampleRate(96000);
    EXPECT_EQ(p.sampleRate, 96000.0);
    EXPECT_NEAR(gainDbAt(p, 1000.0), 12.0, 1e-9);
    const double a1 = p.a1;
    p.setSampleRate(0);
    p.setSampleRate(-5);
    EXPECT_EQ(p.sampleRate, 96000.0);
    EXPECT_EQ(p.a1, a1);
}
