#include "effect/FusedFilterStageWide.h"

#include <immintrin.h>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "dsp/filters/StereoStage.h"
#include "effect/FusedStagePieces.h"

// Only what follows is built for AVX; the shared inline code above keeps the default instruction
// set, and nothing here runs unless the processor has AVX.
#pragma GCC push_options
#pragma GCC target("avx")

namespace {

using DSP::StereoStage;
namespace Lanes = DSP::Lanes;

using FusedStagePieces::Layout;
using FusedStagePieces::Part;
using FusedStagePieces::partSize;
using FusedStagePieces::withFloatOffset;
using FusedStagePieces::withOffset;
inline __m256d join(__m128d low, __m128d high) { return _mm256_insertf128_pd(_mm256_castpd128_pd256(low), high, 1); }
inline __m128d lowHalf(__m256d v) { return _mm256_castpd256_pd128(v); }
inline __m128d highHalf(__m256d v) { return _mm256_extractf128_pd(v, 1); }

// Stage k of two cascade pairs: A (left, right) in the low lanes runs as CBiquadCascade::tick,
// B (left, right) in the high lanes as tickRounded. The state slots swap with the sample's parity
// as in StereoStage.
struct StagePair {
    __m256d b0, b1, b2, a1, a2;
    __m256d x[2], y[2];

    void load(DSP::CBiquadCascade* const c[4], int k) {
        auto gather = [&](double* DSP::CBiquadCascade::*array) {
            return _mm256_setr_pd((c[0]->*array)[k], (c[1]->*array)[k], (c[2]->*array)[k], (c[3]->*array)[k]);
        };
        b0 = gather(&DSP::CBiquadCascade::b0);
        b1 = gather(&DSP::CBiquadCascade::b1);
        b2 = gather(&DSP::CBiquadCascade::b2);
        a1 = gather(&DSP::CBiquadCascade::a1);
        a2 = gather(&DSP::CBiquadCascade::a2);
        x[1] = gather(&DSP::CBiquadCascade::x1);
        x[0] = gather(&DSP::CBiquadCascade::x2);
        y[1] = gather(&DSP::CBiquadCascade::y1);
        y[0] = gather(&DSP::CBiquadCascade::y2);
    }
    void save(DSP::CBiquadCascade* const c[4], int k, int last) const {
        const int q = last & 1;
        double x1[4], x2[4], y1[4], y2[4];
        _mm256_storeu_pd(x1, x[q]);
        _mm256_storeu_pd(x2, x[q ^ 1]);
        _mm256_storeu_pd(y1, y[q]);
        _mm256_storeu_pd(y2, y[q ^ 1]);
        for (int lane = 0; lane < 4; ++lane) {
            c[lane]->x1[k] = x1[lane];
            c[lane]->x2[k] = x2[lane];
            c[lane]->y1[k] = y1[lane];
            c[lane]->y2[k] = y2[lane];
        }
    }
    ZONFRA_LANE_INLINE __m256d step(__m256d in, unsigned q) {
        const unsigned p = q ^ 1;
        __m256d v = _mm256_mul_pd(in, b0);
        v = _mm256_sub_pd(v, _mm256_mul_pd(a1, y[p]));
        v = _mm256_sub_pd(v, _mm256_mul_pd(a2, y[q]));
        v = _mm256_add_pd(v, _mm256_mul_pd(b1, x[p]));
        v = _mm256_add_pd(v, _mm256_mul_pd(b2, x[q]));
        v = _mm256_blend_pd(v, _mm256_cvtps_pd(_mm256_cvtpd_ps(v)), 0xC);  // B rounds to float
        x[q] = in;
        y[q] = v;
        return v;
    }
    ZONFRA_LANE_INLINE __m256d out(unsigned q) const { return y[q]; }
};

// G consecutive stages of a cascade pair, one pipeline step.
template <int G>
struct PairPart {
    StagePair stage[G];
    ZONFRA_LANE_INLINE __m256d step(__m256d v, unsigned q) {
#pragma GCC unroll 8
        for (int k = 0; k < G; ++k) v = stage[k].step(v, q);
        return v;
    }
    ZONFRA_LANE_INLINE __m256d out(unsigned q) const { return stage[G - 1].out(q); }
};

// The series pipeline of FusedStagePieces.h with K stages on both sides. Three cascade pairs that
// stand at the same depth share a register: low A with dry low, low B with dry high, high B with
// the all-pass.
template <int K>
struct WideSeries {
    static constexpr int G = partSize(K), N = K / G;
    using At = Layout<false, N, N>;
    static_assert(At::kDryLow == At::kLowA && At::kDryHigh == At::kLowB && At::kAllPass == At::kHighB);
    static constexpr int kDepth = At::kDepth;

    PairPart<G> low[N], middle[N], high[N];
    Part<G> highA[N];
    StereoStage resonanceLow, resonanceHigh;
    __m128d allPassIn[N][2];

    void loadOrSave(FilterStageParts& p, bool loading, int last) {
        DSP::CBiquadCascade* lowSet[4] = {&p.lowPassL.lowPathA(), &p.lowPassR.lowPathA(), &p.dryLowL, &p.dryLowR};
        DSP::CBiquadCascade* middleSet[4] = {&p.lowPassL.lowPathB(), &p.lowPassR.lowPathB(), &p.dryHighL, &p.dryHighR};
        DSP::CBiquadCascade* highSet[4] = {&p.highPassL.lowPathB(), &p.highPassR.lowPathB(),
                                           &p.highPassL.allPassStages(), &p.highPassR.allPassStages()};
        for (int j = 0; j < N; ++j) {
            for (int k = 0; k < G; ++k) {
                const int stage = j * G + k;
                if (loading) {
                    low[j].stage[k].load(lowSet, stage);
                    middle[j].stage[k].load(middleSet, stage);
                    high[j].stage[k].load(highSet, stage);
                    highA[j].stage[k].load(p.highPassL.lowPathA(), p.highPassR.lowPathA(), stage);
                } else {
                    low[j].stage[k].save(lowSet, stage, last);
                    middle[j].stage[k].save(middleSet, stage, last);
                    high[j].stage[k].save(highSet, stage, last);
                    highA[j].stage[k].save(p.highPassL.lowPathA(), p.highPassR.lowPathA(), stage, last);
                }
            }
        }
        if (loading) {
            resonanceLow.load(p.resonanceLow);
            resonanceHigh.load(p.resonanceHigh);
        } else {
            resonanceLow.save(p.resonanceLow, last);
            resonanceHigh.save(p.resonanceHigh, last);
        }
    }

    template <bool Masked, unsigned P>
    ZONFRA_LANE_INLINE void iterate(int i, int n, const FilterStageBuffers& io) {
        auto active = [i, n](int depth) { return !Masked || (i >= depth && i < n + depth); };
        auto parity = [](int depth) { return (P ^ static_cast<unsigned>(depth)) & 1u; };

#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
            const int d = At::kLowA + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const int m = i - d;
            const __m256d in =
                j == 0 ? join(withOffset(Lanes::load(io.lowInL, io.lowInR, m)),
                              withFloatOffset(_mm_setr_ps(io.lowInL[m], io.lowInR[m], 0.0f, 0.0f)))
                       : low[j - 1].out(q);
            low[j].step(in, q);
        }
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
            const int d = At::kLowB + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            __m256d in;
            if (j == 0) {
                const __m256d before = low[N - 1].out(q);
                in = join(withOffset(lowHalf(before)), withFloatOffset(Lanes::toFloats(highHalf(before))));
            } else {
                in = middle[j - 1].out(q);
            }
            const __m256d y = middle[j].step(in, q);
            if (j == N - 1) Lanes::store(highHalf(y), io.dryL, io.dryR, i - d);
        }
        if (active(At::kHighA)) {
            const unsigned q = parity(At::kHighA);
            const __m128d s = Lanes::rounded(lowHalf(middle[N - 1].out(q)));
            highA[0].tick(withOffset(s), q);
            allPassIn[0][q] = Lanes::rounded(withOffset(s));
        }
#pragma GCC unroll 8
        for (int j = 1; j < N; ++j) {
            const int d = At::kHighA + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            highA[j].tick(highA[j - 1].out(q), q);
            allPassIn[j][q] = allPassIn[j - 1][q];
        }
#pragma GCC unroll 8
        for (int j = 0; j < N; ++j) {
            const int d = At::kHighB + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m256d in =
                j == 0 ? join(withOffset(highA[N - 1].out(q)), allPassIn[N - 1][q]) : high[j - 1].out(q);
            high[j].step(in, q);
        }
        if (active(At::kResonance)) {
            const unsigned q = parity(At::kResonance);
            const __m256d pair = high[N - 1].out(q);
            const __m128 difference = _mm_sub_ps(Lanes::toFloats(highHalf(pair)), Lanes::toFloats(lowHalf(pair)));
            resonanceLow.peak(_mm_cvtps_pd(difference), q);
        }
        if (active(At::kHighResonance)) {
            const unsigned q = parity(At::kHighResonance);
            const __m128d y = resonanceHigh.peak(Lanes::rounded(resonanceLow.out(q)), q);
            Lanes::store(y, io.outL, io.outR, i - At::kHighResonance);
        }
    }

    // The iteration order of the other form's run; written out again because iterations built for
    // AVX cannot be inlined into a loop built without it.
    void masked(int from, int to, int n, const FilterStageBuffers& io) {
        for (int i = from; i < to; ++i) {
            if (i & 1)
                iterate<true, 1>(i, n, io);
            else
                iterate<true, 0>(i, n, io);
        }
    }

    void run(FilterStageParts& parts, const FilterStageBuffers& io, int n) {
        loadOrSave(parts, true, -1);
        if (n > kDepth) {
            masked(0, kDepth, n, io);
            int i = kDepth;
            if (i & 1) iterate<false, 1>(i++, n, io);
            for (; i + 1 < n; i += 2) {
                iterate<false, 0>(i, n, io);
                iterate<false, 1>(i + 1, n, io);
            }
            if (i < n) iterate<false, 0>(i, n, io);
            masked(n, n + kDepth, n, io);
        } else {
            masked(0, n + kDepth, n, io);
        }
        loadOrSave(parts, false, n - 1);
    }
};

template <int K>
void runWide(FilterStageParts& parts, const FilterStageBuffers& io, int n) {
    WideSeries<K> pipeline;
    pipeline.run(parts, io, n);
}

}  // namespace

bool runWideSeriesFilterStage(FilterStageParts& parts, const FilterStageBuffers& buffers, int samples, int stages) {
    static const bool available = __builtin_cpu_supports("avx");
    if (!available) return false;
    switch (stages) {
        case 1: runWide<1>(parts, buffers, samples); return true;
        case 2: runWide<2>(parts, buffers, samples); return true;
        case 4: runWide<4>(parts, buffers, samples); return true;
        default: return false;
    }
}

#pragma GCC pop_options
