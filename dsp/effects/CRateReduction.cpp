#include "dsp/effects/CRateReduction.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace DSP::FX {

namespace {
constexpr float kIntegral = 8388608.0f;  // 2^23: from here on every float is a whole number

// std::floor and std::ceil without a library call: through a truncating conversion where that is
// exact, the sign of a zero kept.
inline float floorOf(float v) {
    if (!(std::fabs(v) < kIntegral)) return std::floor(v);
    float t = static_cast<float>(static_cast<int>(v));
    if (t > v) t -= 1.0f;
    return std::copysign(t, v);
}

inline float ceilOf(float v) {
    if (!(std::fabs(v) < kIntegral)) return std::ceil(v);
    float t = static_cast<float>(static_cast<int>(v));
    if (t < v) t += 1.0f;
    return std::copysign(t, v);
}

bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }
}  // namespace

void CRateReduction::setBits(float amount) {
    bitAmount = amount;
    const float e = 1.0f - amount;
    const float t = -501.0f * e / (500.0f * e + 1.0f);
    levels = (t + 1.0f) * 16000.0f + 2.0f;
    inverseLevels = 1.0f / levels;
}

void CRateReduction::setRate(float amount) {
    rateAmount = static_cast<float>(0.97 * static_cast<double>(amount) + 0.03);
    const float e = 1.0f - rateAmount;
    const float t = -15.0f * e / (14.0f * e + 1.0f);
    phaseStep = (1.0f + t) * 0.99f + 0.01f;
}

void CRateReduction::reset() {
    heldLeft = heldRight = phase = 0.0f;
}

void CRateReduction::process(const Ondra::StereoBuffer& io, unsigned count) {
    if (!io.left || !io.right) return;
    const int n = static_cast<int>(count);
    const bool quantise = bitAmount < 1.0f;
    const float step = phaseStep;
    float p = phase;
    if (!quantise && step >= 1.0f && p >= 0.0f) {
        // Every sample is taken and held at once: the block stays as it is. Only the phase moves,
        // and once a step leaves it where it is it stays there.
        for (int i = 0; i < n; ++i) {
            float next = p + step;
            next -= floorOf(next);
            if (sameBits(next, p)) break;
            p = next;
        }
        phase = p;
        if (n > 0) {
            heldLeft = io.left[n - 1];
            heldRight = io.right[n - 1];
        }
        return;
    }
    float holdL = heldLeft, holdR = heldRight;
    const float scale = levels, inverse = inverseLevels;
    for (int i = 0; i < n; ++i) {
        float l = io.left[i];
        float r = io.right[i];
        if (quantise) {
            // Truncation toward zero: no offset between positive and negative values.
            l = (l > 0 ? floorOf(l * scale) : ceilOf(l * scale)) * inverse;
            r = (r > 0 ? floorOf(r * scale) : ceilOf(r * scale)) * inverse;
        }
        p += step;
        if (p >= 1.0f) {
            holdL = l;
            holdR = r;
            p -= floorOf(p);
        }
        io.left[i] = holdL;
        io.right[i] = holdR;
    }
    heldLeft = holdL;
    heldRight = holdR;
    phase = p;
}

}  // namespace DSP::FX
