#pragma once
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "dsp/filters/CBiquadCascade.h"

// Reference arithmetic for the filter tests, written independently of the production code.
namespace FilterTest {

constexpr double kPi = std::numbers::pi;

struct Section {
    double b0, b1, b2, a1, a2;
};

// One section of a bilinear Butterworth low-pass or high-pass with quality q, prewarped.
inline Section butterworthSection(double f, double fs, double q, bool highPass) {
    const double k = std::tan(kPi * f / fs);
    const double norm = 1.0 / (1.0 + k / q + k * k);
    const double a1 = 2.0 * (k * k - 1.0) * norm;
    const double a2 = (1.0 - k / q + k * k) * norm;
    if (highPass) return {norm, -2.0 * norm, norm, a1, a2};
    return {k * k * norm, 2.0 * k * k * norm, k * k * norm, a1, a2};
}

inline Section butterworthFirstOrder(double f, double fs, bool highPass) {
    const double k = std::tan(kPi * f / fs);
    const double a1 = (k - 1.0) / (k + 1.0);
    if (highPass) return {1.0 / (k + 1.0), -1.0 / (k + 1.0), 0.0, a1, 0.0};
    return {k / (k + 1.0), k / (k + 1.0), 0.0, a1, 0.0};
}

// Stage qualities of a Butterworth filter of order n, highest first.
inline std::vector<double> butterworthQualities(int n) {
    std::vector<double> q;
    for (int k = 0; k < n / 2; ++k) q.push_back(1.0 / (2.0 * std::sin((2.0 * k + 1.0) * kPi / (2.0 * n))));
    return q;
}

inline std::complex<double> sectionResponse(const Section& s, double f, double fs) {
    const std::complex<double> v = std::polar(1.0, -2.0 * kPi * f / fs);
    return (s.b0 + s.b1 * v + s.b2 * v * v) / (1.0 + s.a1 * v + s.a2 * v * v);
}

// Magnitude of the analogue-prototype Butterworth mapped through the prewarped bilinear transform.
inline double butterworthMagnitude(double f, double cutoff, double fs, int order, bool highPass) {
    double ratio = std::tan(kPi * f / fs) / std::tan(kPi * cutoff / fs);
    if (highPass) ratio = 1.0 / ratio;
    return 1.0 / std::sqrt(1.0 + std::pow(ratio, 2.0 * order));
}

inline double toDb(double magnitude) { return 20.0 * std::log10(magnitude); }

inline void expectRelative(double actual, double expected, double relative, const char* what) {
    const double tolerance = relative * std::max(std::abs(expected), 1e-12);
    if (std::abs(actual - expected) > tolerance) ADD_FAILURE() << what << ": " << actual << " expected " << expected;
}

inline void expectSection(const Section& actual, const Section& expected, double relative) {
    expectRelative(actual.b0, expected.b0, relative, "b0");
    expectRelative(actual.b1, expected.b1, relative, "b1");
    expectRelative(actual.b2, expected.b2, relative, "b2");
    expectRelative(actual.a1, expected.a1, relative, "a1");
    expectRelative(actual.a2, expected.a2, relative, "a2");
}

// The first stage of a cascade.
inline Section firstSection(const DSP::CBiquadCascade& c) { return {c.b0[0], c.b1[0], c.b2[0], c.a1[0], c.a2[0]}; }

}  // namespace FilterTest
