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

// The effect designs band-passes (type 3) and peaks (type 6) only.
TEST(PeakBiquad, BandPassAndPeakHaveTheirGainAtTheCentre) {
    for (bool bandwidth : {false, true}) {
        const float q = bandwidth ? 1.0f : 2.0f;
        for (auto [type, gain] : {std::pair{3, 0.0f}, {6, 9.0f}, {6, -12.0f}})
            EXPECT_NEAR(gainDbAt(make(type, 1000, q, gain, bandwidth), 1000.0), gain, 1e-9) << type << " " << gain;
    }
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
