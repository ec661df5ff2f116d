#pragma once
#include <emmintrin.h>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"

// The per-sample steps must inline into the loops of the block kernels, also the rarely run ones.
#define ZONFRA_LANE_INLINE inline __attribute__((always_inline))

namespace DSP {

// Left and right channel in the two lanes of one SSE2 register. Every lane operation is the
// same IEEE operation as the scalar code it replaces, so results are identical to the bit.
namespace Lanes {
inline __m128d fromFloats(float left, float right) { return _mm_cvtps_pd(_mm_setr_ps(left, right, 0.0f, 0.0f)); }
inline __m128d load(const float* left, const float* right, int i) { return fromFloats(left[i], right[i]); }
inline __m128 toFloats(__m128d v) { return _mm_cvtpd_ps(v); }
inline void store(__m128 v, float* left, float* right, int i) {
    _mm_store_ss(left + i, v);
    _mm_store_ss(right + i, _mm_shuffle_ps(v, v, 1));
}
inline void store(__m128d v, float* left, float* right, int i) { store(toFloats(v), left, right, i); }
// Rounds both lanes to float precision, kept as doubles.
inline __m128d rounded(__m128d v) { return _mm_cvtps_pd(_mm_cvtpd_ps(v)); }
inline __m128d pair(double left, double right) { return _mm_setr_pd(left, right); }
inline double left(__m128d v) { return _mm_cvtsd_f64(v); }
inline double right(__m128d v) { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }
}  // namespace Lanes

// One second-order section for both channels, in the three arithmetic forms of the filter
// classes. The state lives in two slots per history value that swap roles with the parity of the
// sample: processing sample m (parity q = m & 1) reads slot q ^ 1 as the one-sample-old value and
// slot q as the two-sample-old one, and overwrites the latter. So a section's latest output for
// sample m is y[q], which later sections of a skewed pipeline can read while this one moves on.
struct alignas(16) StereoStage {
    __m128d b0, b1, b2, a1, a2;
    __m128d x[2], y[2];

    // Stage k of a cascade pair; the slots are set up for sample 0 next.
    void load(const CBiquadCascade& left, const CBiquadCascade& right, int k) {
        b0 = Lanes::pair(left.b0[k], right.b0[k]);
        b1 = Lanes::pair(left.b1[k], right.b1[k]);
        b2 = Lanes::pair(left.b2[k], right.b2[k]);
        a1 = Lanes::pair(left.a1[k], right.a1[k]);
        a2 = Lanes::pair(left.a2[k], right.a2[k]);
        x[1] = Lanes::pair(left.x1[k], right.x1[k]);
        x[0] = Lanes::pair(left.x2[k], right.x2[k]);
        y[1] = Lanes::pair(left.y1[k], right.y1[k]);
        y[0] = Lanes::pair(left.y2[k], right.y2[k]);
    }
    // Writes the state back after `last` was the last sample processed.
    void save(CBiquadCascade& left, CBiquadCascade& right, int k, int last) const {
        const int q = last & 1;
        left.x1[k] = Lanes::left(x[q]);
        right.x1[k] = Lanes::right(x[q]);
        left.x2[k] = Lanes::left(x[q ^ 1]);
        right.x2[k] = Lanes::right(x[q ^ 1]);
        left.y1[k] = Lanes::left(y[q]);
        right.y1[k] = Lanes::right(y[q]);
        left.y2[k] = Lanes::left(y[q ^ 1]);
        right.y2[k] = Lanes::right(y[q ^ 1]);
    }
    // A stereo peak section: one set of coefficients for both lanes.
    void load(const CPeakBiquad& peak) {
        b0 = _mm_set1_pd(peak.b0);
        b1 = _mm_set1_pd(peak.b1);
        b2 = _mm_set1_pd(peak.b2);
        a1 = _mm_set1_pd(peak.a1);
        a2 = _mm_set1_pd(peak.a2);
        x[1] = Lanes::pair(peak.x1L, peak.x1R);
        x[0] = Lanes::pair(peak.x2L, peak.x2R);
        y[1] = Lanes::pair(peak.y1L, peak.y1R);
        y[0] = Lanes::pair(peak.y2L, peak.y2R);
    }
    void save(CPeakBiquad& peak, int last) const {
        const int q = last & 1;
        peak.x1L = Lanes::left(x[q]);
        peak.x1R = Lanes::right(x[q]);
        peak.x2L = Lanes::left(x[q ^ 1]);
        peak.x2R = Lanes::right(x[q ^ 1]);
        peak.y1L = Lanes::left(y[q]);
        peak.y1R = Lanes::right(y[q]);
        peak.y2L = Lanes::left(y[q ^ 1]);
        peak.y2R = Lanes::right(y[q ^ 1]);
    }

    // CBiquadCascade::tick for one stage: x b0 - a1 y1 - a2 y2 + b1 x1 + b2 x2.
    ZONFRA_LANE_INLINE __m128d cascade(__m128d in, unsigned q) { return remember(in, cascadeSum(in, q), q); }
    // CBiquadCascade::tickRounded for one stage: the same sum, rounded to float.
    ZONFRA_LANE_INLINE __m128d rounded(__m128d in, unsigned q) {
        return remember(in, Lanes::rounded(cascadeSum(in, q)), q);
    }
    // CPeakBiquad: b0 x + 1e-18 + b1 x1 + b2 x2 - a1 y1 - a2 y2.
    ZONFRA_LANE_INLINE __m128d peak(__m128d in, unsigned q) {
        const unsigned p = q ^ 1;
        __m128d v = _mm_mul_pd(b0, in);
        v = _mm_add_pd(v, _mm_set1_pd(1e-18));
        v = _mm_add_pd(v, _mm_mul_pd(b1, x[p]));
        v = _mm_add_pd(v, _mm_mul_pd(b2, x[q]));
        v = _mm_sub_pd(v, _mm_mul_pd(a1, y[p]));
        v = _mm_sub_pd(v, _mm_mul_pd(a2, y[q]));
        return remember(in, v, q);
    }
    // Output for a sample of parity q, once processed.
    ZONFRA_LANE_INLINE __m128d out(unsigned q) const { return y[q]; }

private:
    // The cascade's sum in its own order of operations, which the results depend on to the bit.
    ZONFRA_LANE_INLINE __m128d cascadeSum(__m128d in, unsigned q) const {
        const unsigned p = q ^ 1;
        __m128d v = _mm_mul_pd(in, b0);
        v = _mm_sub_pd(v, _mm_mul_pd(a1, y[p]));
        v = _mm_sub_pd(v, _mm_mul_pd(a2, y[q]));
        v = _mm_add_pd(v, _mm_mul_pd(b1, x[p]));
        return _mm_add_pd(v, _mm_mul_pd(b2, x[q]));
    }
    // The sample of parity q becomes the stage's newest input and output.
    ZONFRA_LANE_INLINE __m128d remember(__m128d in, __m128d v, unsigned q) {
        x[q] = in;
        y[q] = v;
        return v;
    }
};

}  // namespace DSP
