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

TEST(SlopeFilterResponse, EverySlopeIsMinus6dBAtItsCutoff) {
    for (int slope : kSlopes) {
        for (unsigned type : {0u, 1u}) {
            for (double cutoff : {100.0, 1000.0, 8000.0}) {
                CSlopeFilter f(8);
                configure(f, slope, type, 1, cutoff);
                const double freq[] = {cutoff};
                double db = 0;
                f.response(freq, &db, 1);
                EXPECT_NEAR(db, -6.0206, 1e-3) << slope << " type " << type << " at " << cutoff;
            }
        }
    }
}

TEST(SlopeFilterResponse, SeriesPathFollowsTheSquaredButterworthMagnitude) {
    for (int slope : kSlopes) {
        for (unsigned type : {0u, 1u}) {
            CSlopeFilter f(8);
            configure(f, slope, type, 2, 1000, 48000);
            std::vector<double> freqs = {30, 300, 700, 1400, 3000, 12000}, db(freqs.size());
            f.response(freqs.data(), db.data(), static_cast<int>(freqs.size()));
            for (std::size_t i = 0; i < freqs.size(); ++i) {
                const double m = FilterTest::butterworthMagnitude(freqs[i], 1000, 48000, slope / 12, type == 1);
                EXPECT_NEAR(db[i], std::max(2 * FilterTest::toDb(m), -200.0), 1e-6) << slope << " " << freqs[i];
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

// A sine through the steepest slope, measured after the transient, against the analytic curve.
TEST(SlopeFilterResponse, SineMeasurementShows96dBPerOctave) {
    const double rate = 48000;
    CSlopeFilter f(8);
    configure(f, 96, 0, 0, 1000, rate);
    std::vector<double> measured;
    const double freqs[] = {250, 1000, 2000, 3000};
    for (double freq : freqs) {
        f.reset();
        std::vector<float> x(2 * static_cast<std::size_t>(rate));
        for (std::size_t n = 0; n < x.size(); ++n)
            x[n] = static_cast<float>(std::sin(2 * FilterTest::kPi * freq * static_cast<double>(n) / rate));
        std::vector<float> y(x.size());
        f.process(x.data(), y.data(), static_cast<unsigned>(x.size()));
        const std::size_t start = static_cast<std::size_t>(rate);
        const double amplitude = 2.0 * std::abs(FilterTest::dft(y, freq, rate, start)) / rate;
        const double db = FilterTest::toDb(amplitude);
        const double expected = 2 * FilterTest::toDb(FilterTest::butterworthMagnitude(freq, 1000, rate, 8, false));
        EXPECT_NEAR(db, expected, 0.05) << freq;
        measured.push_back(db);
    }
    EXPECT_NEAR(measured[0], 0.0, 0.01);
    EXPECT_NEAR(measured[1], -6.02, 0.01);
    // One octave above the cutoff the slope has reached its 96 dB per octave.
    EXPECT_GT(measured[1] - measured[2], 89.0);
    EXPECT_LT(measured[1] - measured[2], 100.0);
}

TEST(SlopeFilterResponse, NoiseThroughTheSteepHighPassIsAttenuatedAnOctaveBelow) {
    CSlopeFilter f(8);
    configure(f, 96, 1, 1, 4000);
    std::vector<float> noise(1 << 16);
    unsigned state = 12345u;
    for (float& v : noise) {
        state = state * 1664525u + 1013904223u;
        v = static_cast<float>(state >> 8) / 8388608.0f - 1.0f;
    }
    std::vector<float> y(noise.size());
    f.process(noise.data(), y.data(), static_cast<unsigned>(noise.size()));
    // Hann-windowed after the transient, so that leakage does not hide the stop band.
    const auto band = [&](const std::vector<float>& s, double lo, double hi) {
        const std::size_t start = 8192, length = s.size() - start;
        std::vector<float> windowed(length);
        for (std::size_t n = 0; n < length; ++n)
            windowed[n] = static_cast<float>(
                s[start + n] * (0.5 - 0.5 * std::cos(2 * FilterTest::kPi * static_cast<double>(n) / length)));
        double power = 0;
        for (double q = lo; q < hi; q += 10.0) power += std::norm(FilterTest::dft(windowed, q, 44100));
        return power;
    };
    const double passBand = band(y, 9000, 9400) / band(noise, 9000, 9400);
    const double octaveBelow = band(y, 1800, 2200) / band(noise, 1800, 2200);
    EXPECT_NEAR(10 * std::log10(passBand), 0.0, 0.5);
    EXPECT_LT(10 * std::log10(octaveBelow), -85.0);
}
