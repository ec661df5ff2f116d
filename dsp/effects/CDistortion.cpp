#include "dsp/effects/CDistortion.h"

#include <emmintrin.h>

#include <cmath>
#include <initializer_list>

#include "dsp/memory/BlockScan.h"

namespace DSP::FX {

void CDistortion::setDrive(float amount) {
    const float e = 1.0f - amount;
    const float w = 1.0f - 3.0f * e / (2.0f * e + 1.0f);
    wet = w;
    dry = 1.0f - w;
    const float v = 6.5f * w / (5.5f * w + 1.0f);
    makeup = static_cast<float>(1.0 - 0.57 * static_cast<double>(v));
}

void CDistortion::process(const DSP::StereoBuffer& io, unsigned count) const {
    // Double precision keeps x^2 finite for any finite float input.
    const double a = shape;
    const double wetGain = static_cast<double>(wet) * makeup;
    const int n = static_cast<int>(count);
    for (float* channel : {io.left, io.right}) {
        if (!channel) continue;
        if (!Block::allFinite(channel, n)) {
            for (int i = 0; i < n; ++i) {
                const double x = channel[i];
                const double magnitude = std::sqrt(x * x);
                channel[i] = static_cast<float>(dry * x + wetGain * x * (a + magnitude) / (x * x + 1.0 + magnitude * (a - 1.0)));
            }
            continue;
        }
        // Without a wet share every finite sample comes out as it went in.
        if (wetGain == 0.0 && dry == 1.0f) continue;
        const __m128d dryGain = _mm_set1_pd(dry), wetFactor = _mm_set1_pd(wetGain), shapeA = _mm_set1_pd(a);
        const __m128d one = _mm_set1_pd(1.0), shapeLess = _mm_set1_pd(a - 1.0);
        int i = 0;
        for (; i + 2 <= n; i += 2) {
            const __m128d x = _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(channel + i))));
            const __m128d square = _mm_mul_pd(x, x);
            // The square of a float is exact in double, so its root is exactly |x|.
            const __m128d magnitude = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
            const __m128d numerator = _mm_mul_pd(_mm_mul_pd(wetFactor, x), _mm_add_pd(shapeA, magnitude));
            const __m128d denominator = _mm_add_pd(_mm_add_pd(square, one), _mm_mul_pd(magnitude, shapeLess));
            const __m128d y = _mm_add_pd(_mm_mul_pd(dryGain, x), _mm_div_pd(numerator, denominator));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(channel + i), _mm_castps_si128(_mm_cvtpd_ps(y)));
        }
        for (; i < n; ++i) {
            const double x = channel[i];
            const double magnitude = std::sqrt(x * x);
            channel[i] = static_cast<float>(dry * x + wetGain * x * (a + magnitude) / (x * x + 1.0 + magnitude * (a - 1.0)));
        }
    }
}

}  // namespace DSP::FX
