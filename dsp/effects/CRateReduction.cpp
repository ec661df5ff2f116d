#include "dsp/effects/CRateReduction.h"

#include <emmintrin.h>

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

void CRateReduction::process(const DSP::StereoBuffer& io, unsigned count) {
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
    if (quantise) {
        quantiseBlock(io.left, n);
        quantiseBlock(io.right, n);
    }
    float holdL = heldLeft, holdR = heldRight;
    for (int i = 0; i < n; ++i) {
        p += step;
        if (p >= 1.0f) {
            holdL = io.left[i];
            holdR = io.right[i];
            p -= floorOf(p);
        }
        io.left[i] = holdL;
        io.right[i] = holdR;
    }
    heldLeft = holdL;
    heldRight = holdR;
    phase = p;
}

// x = (x > 0 ? floor(x * levels) : ceil(x * levels)) * inverseLevels, four samples at a time:
// truncation, a step toward the rounding direction where it cut the wrong way, the sign of zero
// kept, and the value itself where it is whole already (or not a number).
void CRateReduction::quantiseBlock(float* x, int n) const {
    const __m128 scale = _mm_set1_ps(levels), inverse = _mm_set1_ps(inverseLevels);
    const __m128 one = _mm_set1_ps(1.0f), integral = _mm_set1_ps(kIntegral), zero = _mm_setzero_ps();
    const __m128 sign = _mm_set1_ps(-0.0f);
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 x4 = _mm_loadu_ps(x + i);
        const __m128 v = _mm_mul_ps(x4, scale);
        const __m128 t = _mm_cvtepi32_ps(_mm_cvttps_epi32(v));
        const __m128 down = _mm_sub_ps(t, _mm_and_ps(_mm_cmpgt_ps(t, v), one));  // floor
        const __m128 up = _mm_add_ps(t, _mm_and_ps(_mm_cmplt_ps(t, v), one));    // ceil
        const __m128 positive = _mm_cmpgt_ps(x4, zero);
        __m128 r = _mm_or_ps(_mm_and_ps(positive, down), _mm_andnot_ps(positive, up));
        r = _mm_or_ps(_mm_andnot_ps(sign, r), _mm_and_ps(sign, v));
        const __m128 small = _mm_cmplt_ps(_mm_andnot_ps(sign, v), integral);
        r = _mm_or_ps(_mm_and_ps(small, r), _mm_andnot_ps(small, v));
        _mm_storeu_ps(x + i, _mm_mul_ps(r, inverse));
    }
    for (; i < n; ++i) x[i] = (x[i] > 0 ? floorOf(x[i] * levels) : ceilOf(x[i] * levels)) * inverseLevels;
}

}  // namespace DSP::FX
