#pragma once
#include <emmintrin.h>

#include <algorithm>

namespace DSP::Block {

// The smallest and the largest of four lanes that hold no NaN unless all four do.
inline float lowestLane(__m128 v) {
    v = _mm_min_ps(v, _mm_movehl_ps(v, v));
    return _mm_cvtss_f32(_mm_min_ss(v, _mm_shuffle_ps(v, v, 1)));
}
inline float highestLane(__m128 v) {
    v = _mm_max_ps(v, _mm_movehl_ps(v, v));
    return _mm_cvtss_f32(_mm_max_ss(v, _mm_shuffle_ps(v, v, 1)));
}

// Scans and simple arithmetic over float blocks, four samples at a time. Each gives exactly
// the result of the plain sample loop named in its comment.

// True when no sample is infinite or NaN.
inline bool allFinite(const float* x, int n) {
    const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 infinity = _mm_set1_ps(__builtin_inff());
    __m128 finite = _mm_castsi128_ps(_mm_set1_epi32(-1));
    int i = 0;
    for (; i + 4 <= n; i += 4) finite = _mm_and_ps(finite, _mm_cmplt_ps(_mm_and_ps(_mm_loadu_ps(x + i), magnitude), infinity));
    bool result = _mm_movemask_ps(finite) == 0xf;
    for (; i < n; ++i) result = result && __builtin_isfinite(x[i]);
    return result;
}

// x[i] *= gain.
inline void scale(float* x, int n, float gain) {
    const __m128 g = _mm_set1_ps(gain);
    int i = 0;
    for (; i + 4 <= n; i += 4) _mm_storeu_ps(x + i, _mm_mul_ps(_mm_loadu_ps(x + i), g));
    for (; i < n; ++i) x[i] *= gain;
}

// minimum = std::min(minimum, x[i]), maximum = std::max(maximum, x[i]), in sample order. The
// order only shows in which of two equal zeros survives, so a zero result is found again in order.
inline void minMax(const float* x, int n, float& minimum, float& maximum) {
    __m128 low = _mm_set1_ps(minimum), high = _mm_set1_ps(maximum);
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 v = _mm_loadu_ps(x + i);
        low = _mm_min_ps(v, low);    // v < low ? v : low
        high = _mm_max_ps(v, high);  // v > high ? v : high
    }
    // The lanes started from the present values, so they already include them.
    float resultLow = lowestLane(low), resultHigh = highestLane(high);
    for (int k = i; k < n; ++k) {
        resultLow = std::min(resultLow, x[k]);
        resultHigh = std::max(resultHigh, x[k]);
    }
    if (resultLow == 0.0f) {
        resultLow = minimum;
        for (int k = 0; k < n; ++k) resultLow = std::min(resultLow, x[k]);
    }
    if (resultHigh == 0.0f) {
        resultHigh = maximum;
        for (int k = 0; k < n; ++k) resultHigh = std::max(resultHigh, x[k]);
    }
    minimum = resultLow;
    maximum = resultHigh;
}

// x[i] *= gain, then minimum = std::min(minimum, x[i]) and maximum = std::max(maximum, x[i]) in
// sample order, in one pass.
inline void scaleMinMax(float* x, int n, float gain, float& minimum, float& maximum) {
    const __m128 g = _mm_set1_ps(gain);
    __m128 low = _mm_set1_ps(minimum), high = _mm_set1_ps(maximum);
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 v = _mm_mul_ps(_mm_loadu_ps(x + i), g);
        _mm_storeu_ps(x + i, v);
        low = _mm_min_ps(v, low);
        high = _mm_max_ps(v, high);
    }
    for (; i < n; ++i) x[i] *= gain;
    // The lanes started from the present values, so they already include them.
    float resultLow = lowestLane(low), resultHigh = highestLane(high);
    for (int k = n - n % 4; k < n; ++k) {
        resultLow = std::min(resultLow, x[k]);
        resultHigh = std::max(resultHigh, x[k]);
    }
    // The order only shows in which of two equal zeros survives: a zero result is found again in order.
    if (resultLow == 0.0f || resultHigh == 0.0f) {
        float orderedLow = minimum, orderedHigh = maximum;
        for (int k = 0; k < n; ++k) {
            orderedLow = std::min(orderedLow, x[k]);
            orderedHigh = std::max(orderedHigh, x[k]);
        }
        if (resultLow == 0.0f) resultLow = orderedLow;
        if (resultHigh == 0.0f) resultHigh = orderedHigh;
    }
    minimum = resultLow;
    maximum = resultHigh;
}

// wet[i] += (other[i] - wet[i]) * k[i].
inline void crossfade(float* wet, const float* other, int n, const float* k) {
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 w = _mm_loadu_ps(wet + i);
        _mm_storeu_ps(wet + i, _mm_add_ps(w, _mm_mul_ps(_mm_sub_ps(_mm_loadu_ps(other + i), w), _mm_loadu_ps(k + i))));
    }
    for (; i < n; ++i) wet[i] += (other[i] - wet[i]) * k[i];
}

// out[i] = (a[i] + b[i]) * 0.5f.
inline void midpoint(float* out, const float* a, const float* b, int n) {
    const __m128 half = _mm_set1_ps(0.5f);
    int i = 0;
    for (; i + 4 <= n; i += 4) _mm_storeu_ps(out + i, _mm_mul_ps(_mm_add_ps(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i)), half));
    for (; i < n; ++i) out[i] = (a[i] + b[i]) * 0.5f;
}

}  // namespace DSP::Block
