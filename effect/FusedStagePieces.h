#pragma once
// Pieces shared by both forms of the fused filter stage. Included before the wide form switches to
// AVX, so these keep the default instruction set wherever they are compiled.
#include <emmintrin.h>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/StereoStage.h"

namespace FusedStagePieces {

namespace Lanes = DSP::Lanes;

// The offsets in front of each cascade and of the dry chains.
inline __m128d withOffset(__m128d v) { return _mm_add_pd(v, _mm_set1_pd(1e-19)); }
inline __m128d withFloatOffset(__m128 v) { return _mm_cvtps_pd(_mm_add_ps(v, _mm_set1_ps(1e-19f))); }

// G consecutive stages of one cascade for both channels, run through in order for one sample.
template <int G>
struct Part {
    DSP::StereoStage stage[G];

    void load(const DSP::CBiquadCascade& left, const DSP::CBiquadCascade& right, int first) {
        for (int k = 0; k < G; ++k) stage[k].load(left, right, first + k);
    }
    void save(DSP::CBiquadCascade& left, DSP::CBiquadCascade& right, int first, int last) const {
        for (int k = 0; k < G; ++k) stage[k].save(left, right, first + k, last);
    }
    // CBiquadCascade::tick over these stages.
    ZONFRA_LANE_INLINE __m128d tick(__m128d x, unsigned q) {
#pragma GCC unroll 8
        for (int k = 0; k < G; ++k) x = stage[k].cascade(x, q);
        return x;
    }
    // CBiquadCascade::tickRounded over these stages (before the final, exact, conversion to float).
    ZONFRA_LANE_INLINE __m128d tickRounded(__m128d x, unsigned q) {
#pragma GCC unroll 8
        for (int k = 0; k < G; ++k) x = stage[k].rounded(x, q);
        return x;
    }
    ZONFRA_LANE_INLINE __m128d out(unsigned q) const { return stage[G - 1].out(q); }
};

// Stages per pipeline step: short enough that the steps of one iteration keep the arithmetic
// units busy, long enough that few ramp-up and run-out iterations remain.
constexpr int partSize(int stages) { return stages >= 2 ? 2 : 1; }

}  // namespace FusedStagePieces
