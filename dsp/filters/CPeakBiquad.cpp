#include "dsp/filters/CPeakBiquad.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace DSP {

namespace {
constexpr double kDenormalOffset = 1e-18;
// ln(2) / 2: converts a bandwidth in octaves for the sinh form of alpha.
constexpr double kHalfLn2 = 0.34657359027997264;
// Callers keep q above 0; this only keeps a stray 0 from turning the state into NaN.
constexpr double kMinimumQ = 1e-6;

struct Section {
    double b0, b1, b2, a0, a1, a2;
};

Section cookbook(int type, double w, double q, double gainDb, bool bandwidthMode) {
    const double s = std::sin(w);
    const double c = std::cos(w);
    const double alpha = bandwidthMode ? s * std::sinh(kHalfLn2 * q * w / s) : s / (2.0 * q);
    const double A = std::pow(10.0, gainDb / 40.0);
    const double B = std::sqrt(A) * s / q;
    switch (type) {
        case 0: return {(1 - c) / 2, 1 - c, (1 - c) / 2, 1 + alpha, -2 * c, 1 - alpha};
        case 1: return {(1 + c) / 2, -1 - c, (1 + c) / 2, 1 + alpha, -2 * c, 1 - alpha};
        case 2: return {s / 2, 0, -s / 2, 1 + alpha, -2 * c, 1 - alpha};
        case 3: return {alpha, 0, -alpha, 1 + alpha, -2 * c, 1 - alpha};
        case 4: return {1, -2 * c, 1, 1 + alpha, -2 * c, 1 - alpha};
        case 5: return {1 - alpha, -2 * c, 1 + alpha, 1 + alpha, -2 * c, 1 - alpha};
        case 6: return {1 + alpha * A, -2 * c, 1 - alpha * A, 1 + alpha / A, -2 * c, 1 - alpha / A};
        case 7:
            return {A * ((A + 1) - (A - 1) * c + B), 2 * A * ((A - 1) - (A + 1) * c),
                    A * ((A + 1) - (A - 1) * c - B), (A + 1) + (A - 1) * c + B,
                    -2 * ((A - 1) + (A + 1) * c), (A + 1) + (A - 1) * c - B};
        case 8:
            return {A * ((A + 1) + (A - 1) * c + B), -2 * A * ((A - 1) + (A + 1) * c),
                    A * ((A + 1) + (A - 1) * c - B), (A + 1) - (A - 1) * c + B,
                    2 * ((A - 1) - (A + 1) * c), (A + 1) - (A - 1) * c - B};
        default: return {1, 0, 0, 1, 0, 0};
    }
}
}  // namespace

void CPeakBiquad::set(int newType, float newFrequency, float newQ, float newGainDb, bool bandwidth) {
    type = newType;
    frequency = newFrequency;
    q = newQ;
    gainDb = newGainDb;
    bandwidthMode = bandwidth ? 1 : 0;
    update();
}

namespace {
template <typename T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
}  // namespace

void CPeakBiquad::update() {
    if (!(sampleRate > 0.0)) return;
    if (designed && sameBits(last.sampleRate, sampleRate) && last.type == type && sameBits(last.frequency, frequency) &&
        sameBits(last.q, q) && sameBits(last.gainDb, gainDb) && last.bandwidthMode == bandwidthMode)
        return;
    designed = true;
    last = Design{sampleRate, type, frequency, q, gainDb, bandwidthMode};
    // Near half the sample rate the bandwidth form's sinh overflows; 20 kHz keeps the same distance
    // from it at every rate.
    const double highest = std::min(20000.0, sampleRate * (20000.0 / 44100.0));
    const double f = std::clamp(static_cast<double>(frequency), 5.0, std::max(highest, 5.0));
    const double w = 2.0 * std::numbers::pi * (std::isnan(f) ? 1000.0 : f) / sampleRate;
    const double qValue = q > kMinimumQ ? static_cast<double>(q) : kMinimumQ;
    const Section section = cookbook(type, w, qValue, gainDb, bandwidthMode != 0);
    b0 = section.b0 / section.a0;
    b1 = section.b1 / section.a0;
    b2 = section.b2 / section.a0;
    a1 = section.a1 / section.a0;
    a2 = section.a2 / section.a0;
}

void CPeakBiquad::setFrequency(float hertz) {
    if (std::isnan(hertz)) return;
    storeFrequency(hertz);
    update();
}

void CPeakBiquad::storeFrequency(float hertz) {
    if (std::isnan(hertz)) return;
    frequency = static_cast<float>(std::clamp(static_cast<double>(hertz), 1.0, sampleRate / 2.0));
}

void CPeakBiquad::setSampleRate(int hertz) {
    if (hertz <= 0) return;
    sampleRate = hertz;
    update();
}

void CPeakBiquad::reset() {
    x1L = x2L = y1L = y2L = 0.0;
    x1R = x2R = y1R = y2R = 0.0;
}

void CPeakBiquad::tick(float& left, float& right) {
    const double l = left;
    const double yl = b0 * l + kDenormalOffset + b1 * x1L + b2 * x2L - a1 * y1L - a2 * y2L;
    x2L = x1L;
    x1L = l;
    y2L = y1L;
    y1L = yl;
    const double r = right;
    const double yr = b0 * r + kDenormalOffset + b1 * x1R + b2 * x2R - a1 * y1R - a2 * y2R;
    x2R = x1R;
    x1R = r;
    y2R = y1R;
    y1R = yr;
    left = static_cast<float>(yl);
    right = static_cast<float>(yr);
}

void CPeakBiquad::process(const float* const in[2], float* const out[2], unsigned count) {
    if (count == 0 || in == nullptr || out == nullptr || !in[0] || !in[1] || !out[0] || !out[1]) return;
    for (unsigned i = 0; i < count; ++i) {
        float left = in[0][i];
        float right = in[1][i];
        tick(left, right);
        out[0][i] = left;
        out[1][i] = right;
    }
}

}  // namespace DSP
