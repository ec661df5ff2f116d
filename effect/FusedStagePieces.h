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

// The skewed pipeline that both forms run. A step at depth d works on sample i - d in iteration i
// and takes its input from the output its predecessor (depth d - 1) produced for that sample one
// iteration before, so inside one iteration no step waits for another. Each cascade is split into
// steps of partSize stages: NL steps per low-pass cascade, NH per high-pass cascade.
//   Series:   low A -> low B -> high A -> high B -> low resonance -> high resonance. The all-pass
//             branch's input is taken where high A starts, waits NH steps, then runs beside high B
//             and meets it at the low resonance.
//   Parallel: low A -> low B beside high A -> high B, the shorter side starting later so that both
//             end just before the two resonances and their sum.
//   Both:     the dry chains, dry low -> dry high, from depth 0 on.
// Every step stands still in the ramp-up and run-out iterations whose sample lies outside the chunk.
template <bool Parallel, int NL, int NH>
struct Layout {
    static constexpr int kWide = 2 * (NL > NH ? NL : NH);
    static constexpr int kLowA = Parallel ? kWide - 2 * NL : 0;
    static constexpr int kLowB = kLowA + NL;
    static constexpr int kHighA = Parallel ? kWide - 2 * NH : 2 * NL;
    static constexpr int kHighB = kHighA + NH;
    static constexpr int kAllPass = kHighB;
    static constexpr int kResonance = kHighB + NH;  // the low one in series, both in parallel
    static constexpr int kHighResonance = Parallel ? kResonance : kResonance + 1;
    static constexpr int kDryLow = 0;
    static constexpr int kDryHigh = NL;
    static constexpr int kDryDepth = kDryHigh + NH - 1;
    // The last step's depth: iterations run from 0 to samples + kDepth - 1.
    static constexpr int kDepth = kHighResonance > kDryDepth ? kHighResonance : kDryDepth;
};

}  // namespace FusedStagePieces
