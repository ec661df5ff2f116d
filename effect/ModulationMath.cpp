#include "effect/ModulationMath.h"

#include <algorithm>
#include <cmath>

namespace ModulationMath {

float attackCoefficient(float ms) { return std::min(1.0f, 8.0f / ms); }

float releaseCoefficient(float ms) {
    const float u = ms / 1000.0f;
    const float stretched = 1000.0f * (19.0f * u) / (18.0f * u + 1.0f);
    return std::min(1.0f, 8.0f / stretched);
}

float envelopeLevel(float maxSquare) {
    double d = 8.685889638065037 * std::log(std::sqrt(static_cast<double>(maxSquare)));
    if (!(d > -24.0)) d = -24.0;  // silence gives -inf
    d = std::min(d, 0.0);
    return std::clamp(static_cast<float>(1.0 - d / -24.0), 0.0f, 1.0f);
}

float envelopeReachScale(float cutoffParam) {
    if (cutoffParam <= 100.0f) return 1.0f;
    const float t = 1.0f - ((1.0f - (cutoffParam - 100.0f) / 21950.0f) * 0.95f + 0.05f);
    return 1.0f - 31.0f * t / (30.0f * t + 1.0f);
}

namespace {
float applyOnce(float y, float m, float s) {
    if (m <= 0) return s <= 0 ? y + 2.0f * y * (-m) * (-s) : y - 0.75f * y * (-m) * s;
    return s <= 0 ? y - 0.75f * y * m * (-s) : y + 2.0f * y * m * s;
}
}  // namespace

float applyLfo(float y, float m, float s) {
    float rest = s;
    while (std::fabs(rest) > 1.0f) {
        const float unit = rest > 0 ? 1.0f : -1.0f;
        y = applyOnce(y, m, unit);
        rest -= unit;
    }
    return applyOnce(y, m, rest);
}

float glideStep(float cutoff, float modulated, int slopeDb, float inertia) {
    float k = 0.505f;
    float r = 8.05f;
    if (slopeDb > 24) {
        k = static_cast<float>(0.505 - 0.40000000327825547 * inertia);
        r = static_cast<float>(8.05 - 7.009499955177308 * inertia);
    }
    const float base = std::max(cutoff, 10.0f);
    float next = cutoff + 1e-19f + k * (modulated - cutoff);
    if (next > base)
        next = std::min(next, base * r);
    else
        next = std::max(next, base / r);
    return next;
}

float inertiaFromRow(float value) {
    const float u = 1.0f - value;
    const float w = 1.0f - u * u * u;
    if (w <= 0.001f) return 0.001f;
    return std::min(w, 1.0f);
}

ResonanceShape resonanceShape(float resonance, float cutoff, float widthParam) {
    const float f = std::clamp(cutoff, 40.0f, 22050.0f);
    const float factor = f < 100.0f ? (f - 5.0f) / 100.0f : 1.0f;
    float maxDb = 24.0f;
    float widthFactor = 1.0f;
    if (f > 15000.0f) {
        const float p = 1.0f - (f - 15000.0f) / 7050.0f;
        widthFactor = 0.6f * p + 0.4f;
        maxDb = 24.0f - 5.0f * (1.0f - p);
    }
    return {resonance * maxDb * factor, widthFactor * widthParam};
}

namespace {
struct SyncEntry {
    int code;
    float multiplier;
};
constexpr SyncEntry kSync[25] = {
    {0, 0},       {1, 1},         {3, 3},         {2, 2},         {3, 1},         {4, 1},        {5, 1},
    {6, 1},       {7, 1},         {1, 0.6666667f}, {3, 2},       {3, 1.3333334f}, {3, 0.6666667f}, {4, 0.6666667f},
    {5, 0.6666667f}, {6, 0.6666667f}, {7, 0.6666667f}, {1, 1.5f},  {3, 4.5f},      {2, 3},        {3, 1.5f},
    {4, 1.5f},    {5, 1.5f},      {6, 1.5f},      {7, 1.5f}};
double lengthFactor(int code) {
    static const double factors[8] = {0, 4, 2, 1, 0.5, 0.25, 0.125, 0.0625};
    return code >= 1 && code <= 7 ? factors[code] : 0;
}
}  // namespace

int syncPeriodSamples(int syncIndex, float tempo, float sampleRate) {
    if (syncIndex < 1 || syncIndex > 24 || !(tempo > 0) || !(sampleRate > 0)) return 0;
    const SyncEntry& e = kSync[syncIndex];
    const int length = static_cast<int>(60.0 / tempo * 4000.0 * lengthFactor(e.code) * sampleRate * 0.001);
    return static_cast<int>(length * static_cast<double>(e.multiplier));
}

float rateLinkControl(float lowModulated, float amount, bool flip) {
    const float u = std::min(lowModulated, 22050.0f) / 22050.0f;
    const float w = 21.0f * u / (20.0f * u + 1.0f);
    if (!flip) return 1.0f - (1.0f - w) * amount;
    const float a = 0.9f * amount;
    return (1.0f - a) + (1.0f - w) * a;
}

float linkTowardFilter(float n, float position, float a) {
    if (a < 0) return n - (-(position * a)) * n;
    return n + (position - n) * a;
}

}  // namespace ModulationMath
