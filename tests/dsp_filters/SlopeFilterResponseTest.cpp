#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "dsp/filters/CSlopeFilter.h"
#include "dsp_filters/FilterTestHelpers.h"

using DSP::CSlopeFilter;

namespace {

constexpr int kSlopes[] = {12, 24, 48, 96};

void configure(CSlopeFilter& f, int slope, unsigned type, unsigned mode, double cutoff, double rate = 44100) {
    f.mode = mode;
    f.setSampleRate(rate);
    f.setType(type);
    f.setSlope(slope);
    f.setCutoff(cutoff);
}

std::vector<float> impulseResponse(CSlopeFilter& f, std::size_t length) {
    std::vector<float> x(length, 0.0f);
    x[0] = 1.0f;
    f.process(x.data(), x.data(), static_cast<unsigned>(length));
    return x;
}

}  // namespace

TEST(SlopeFilterResponse, SeriesPathFollowsTheSquaredButterworthMagnitude) {
    for (int slope : kSlopes) {
        for (unsigned type : {0u, 1u}) {
            for (double cutoff : {100.0, 1000.0, 8000.0}) {
                CSlopeFilter f(8);
                configure(f, slope, type, 2, cutoff, 48000);
                std::vector<double> freqs, db;
                for (double ratio : {0.03, 0.3, 0.7, 1.0, 1.4, 2.9, 12.0})
                    if (ratio * cutoff < 23000) freqs.push_back(ratio * cutoff);
                db.resize(freqs.size());
                f.response(freqs.data(), db.data(), static_cast<int>(freqs.size()));
                for (std::size_t i = 0; i < freqs.size(); ++i) {
                    const double m = FilterTest::butterworthMagnitude(freqs[i], cutoff, 48000, slope / 12, type == 1);
                    EXPECT_NEAR(db[i], std::max(2 * FilterTest::toDb(m), -200.0), 1e-6) << slope << " " << freqs[i];
                }
                EXPECT_NEAR(db[3], -6.0206, 1e-3) << "at the cutoff";
            }
        }
    }
}

// The complementary high-pass is measured on audio: its output plus the low-pass output must be
// the all-pass, magnitude 1 everywhere.
TEST(SlopeFilterResponse, LowPassPlusComplementaryHighPassIsFlat) {
    const std::size_t length = 1 << 15;
    for (int slope : kSlopes) {
        CSlopeFilter low(8), high(8);
        configure(low, slope, 0, 0, 1000);
        configure(high, slope, 1, 0, 1000);
        const auto lowIr = impulseResponse(low, length);
        const auto highIr = impulseResponse(high, length);
        std::vector<float> sum(length);
        for (std::size_t i = 0; i < length; ++i) sum[i] = lowIr[i] + highIr[i];
        for (double f : {20.0, 150.0, 500.0, 900.0, 1000.0, 1100.0, 2000.0, 6000.0, 15000.0, 21000.0}) {
            const double db = FilterTest::toDb(std::abs(FilterTest::dft(sum, f, 44100)));
            EXPECT_NEAR(db, 0.0, 1e-3) << slope << " at " << f;
        }
        const double atCutoff = FilterTest::toDb(std::abs(FilterTest::dft(highIr, 1000, 44100)));
        EXPECT_NEAR(atCutoff, -6.0206, 2e-3) << slope;
    }
}

TEST(SlopeFilterResponse, DirectHighPassHasTheComplementaryMagnitudeAndTheSamePoles) {
    const std::size_t length = 1 << 15;
    for (int slope : kSlopes) {
        CSlopeFilter complementary(8), direct(8);
        configure(complementary, slope, 1, 0, 1000);
        configure(direct, slope, 1, 1, 1000);
        const auto ir0 = impulseResponse(complementary, length);
        const auto ir1 = impulseResponse(direct, length);
        for (double f : {100.0, 400.0, 800.0, 1000.0, 1300.0, 3000.0, 15000.0}) {
            const double db0 = FilterTest::toDb(std::abs(FilterTest::dft(ir0, f, 44100)));
            const double db1 = FilterTest::toDb(std::abs(FilterTest::dft(ir1, f, 44100)));
            // The complementary output is a float difference of two near-unity signals, so its
            // floor lies near -110 dB; compare strictly where it is well above that floor.
            if (db1 > -50)
                EXPECT_NEAR(db0, db1, 1e-3) << slope << " at " << f;
            else if (db1 > -90)
                EXPECT_NEAR(db0, db1, 0.1) << slope << " at " << f;
            else
                EXPECT_LT(db0, -100) << slope << " at " << f;
        }
        const auto& a = complementary.allPassStages();
        const auto& b = direct.allPassStages();
        ASSERT_EQ(a.stageCount(), b.stageCount());
        for (int k = 0; k < a.stageCount(); ++k) {
            EXPECT_NEAR(a.a1[k], b.a1[k], 1e-12);
            EXPECT_NEAR(a.a2[k], b.a2[k], 1e-12);
        }
    }
}
