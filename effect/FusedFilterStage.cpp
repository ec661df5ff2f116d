#include "effect/FusedFilterStage.h"

#include <algorithm>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "dsp/filters/StereoStage.h"

namespace {

using DSP::StereoStage;
namespace Lanes = DSP::Lanes;

// The offsets in front of each cascade and of the dry chains.
inline __m128d withOffset(__m128d v) { return _mm_add_pd(v, _mm_set1_pd(1e-19)); }
inline __m128d withFloatOffset(__m128 v) { return _mm_cvtps_pd(_mm_add_ps(v, _mm_set1_ps(1e-19f))); }

// A skewed pipeline: a section at depth d works on sample i - d in iteration i, and reads its
// input from the output its predecessor (depth d - 1) produced for that sample one iteration
// before. Inside one iteration nothing depends on anything else.
template <bool Parallel, int KL, int KH>
struct Pipeline {
    static constexpr int kWide = 2 * (KL > KH ? KL : KH);
    static constexpr int kLowBase = Parallel ? kWide - 2 * KL : 0;
    static constexpr int kHighBase = Parallel ? kWide - 2 * KH : 2 * KL;
    static constexpr int kAllPassBase = 2 * KL + KH;  // series only, behind KH delay steps
    static constexpr int kResonance = Parallel ? kWide : 2 * KL + 2 * KH;
    static constexpr int kWetDepth = Parallel ? kWide : kResonance + 1;
    static constexpr int kDryDepth = KL + KH - 1;
    static constexpr int kDepth = kWetDepth > kDryDepth ? kWetDepth : kDryDepth;

    StereoStage lowA[KL], lowB[KL], highA[KH], highB[KH], allPass[KH], resonanceLow, resonanceHigh;
    StereoStage dryLow[KL], dryHigh[KH];
    // The all-pass branch's input, held until the twice-filtered branch has caught up.
    __m128d delay[KH][2];

    void load(FilterStageParts& p) {
        for (int k = 0; k < KL; ++k) {
            lowA[k].load(p.lowPassL.lowPathA(), p.lowPassR.lowPathA(), k);
            lowB[k].load(p.lowPassL.lowPathB(), p.lowPassR.lowPathB(), k);
            dryLow[k].load(p.dryLowL, p.dryLowR, k);
        }
        for (int k = 0; k < KH; ++k) {
            highA[k].load(p.highPassL.lowPathA(), p.highPassR.lowPathA(), k);
            highB[k].load(p.highPassL.lowPathB(), p.highPassR.lowPathB(), k);
            if (!Parallel) allPass[k].load(p.highPassL.allPassStages(), p.highPassR.allPassStages(), k);
            dryHigh[k].load(p.dryHighL, p.dryHighR, k);
        }
        resonanceLow.load(p.resonanceLow);
        resonanceHigh.load(p.resonanceHigh);
    }

    void save(FilterStageParts& p, int last) const {
        for (int k = 0; k < KL; ++k) {
            lowA[k].save(p.lowPassL.lowPathA(), p.lowPassR.lowPathA(), k, last);
            lowB[k].save(p.lowPassL.lowPathB(), p.lowPassR.lowPathB(), k, last);
            dryLow[k].save(p.dryLowL, p.dryLowR, k, last);
        }
        for (int k = 0; k < KH; ++k) {
            highA[k].save(p.highPassL.lowPathA(), p.highPassR.lowPathA(), k, last);
            highB[k].save(p.highPassL.lowPathB(), p.highPassR.lowPathB(), k, last);
            if (!Parallel) allPass[k].save(p.highPassL.allPassStages(), p.highPassR.allPassStages(), k, last);
            dryHigh[k].save(p.dryHighL, p.dryHighR, k, last);
        }
        resonanceLow.save(p.resonanceLow, last);
        resonanceHigh.save(p.resonanceHigh, last);
    }

    // One iteration; P is the parity of i, so that the parity of every section's sample is known
    // when compiling. In the ramp-up and run-out iterations (Masked) the sections whose sample lies
    // outside the chunk stand still.
    template <bool Masked, unsigned P>
    inline void iterate(int i, int n, const FilterStageBuffers& io) {
        auto active = [i, n](int depth) { return !Masked || (i >= depth && i < n + depth); };
        auto parity = [](int depth) { return (P ^ static_cast<unsigned>(depth)) & 1u; };

#pragma GCC unroll 8
        for (int k = 0; k < KL; ++k) {
            const int d = kLowBase + k;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m128d in = k == 0 ? withOffset(Lanes::load(io.lowInL, io.lowInR, i - d)) : lowA[k - 1].out(q);
            lowA[k].cascade(in, q);
        }
#pragma GCC unroll 8
        for (int k = 0; k < KL; ++k) {
            const int d = kLowBase + KL + k;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m128d in = k == 0 ? withOffset(lowA[KL - 1].out(q)) : lowB[k - 1].out(q);
            lowB[k].cascade(in, q);
        }

        if constexpr (Parallel) {
            if (active(kHighBase)) {
                const unsigned q = parity(kHighBase);
                highA[0].cascade(withOffset(Lanes::load(io.highInL, io.highInR, i - kHighBase)), q);
            }
        } else {
            // The high-pass takes the rounded low-pass output; its all-pass branch starts KH later.
            if (active(kHighBase)) {
                const unsigned q = parity(kHighBase);
                const __m128d s = Lanes::rounded(lowB[KL - 1].out(q));
                highA[0].cascade(withOffset(s), q);
                delay[0][q] = Lanes::rounded(withOffset(s));
            }
#pragma GCC unroll 8
            for (int k = 1; k < KH; ++k) {
                const int d = kHighBase + k;
                if (!active(d)) continue;
                const unsigned q = parity(d);
                delay[k][q] = delay[k - 1][q];
            }
#pragma GCC unroll 8
            for (int k = 0; k < KH; ++k) {
                const int d = kAllPassBase + k;
                if (!active(d)) continue;
                const unsigned q = parity(d);
                allPass[k].rounded(k == 0 ? delay[KH - 1][q] : allPass[k - 1].out(q), q);
            }
        }
#pragma GCC unroll 8
        for (int k = 1; k < KH; ++k) {
            const int d = kHighBase + k;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            highA[k].cascade(highA[k - 1].out(q), q);
        }
#pragma GCC unroll 8
        for (int k = 0; k < KH; ++k) {
            const int d = kHighBase + KH + k;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            highB[k].cascade(k == 0 ? withOffset(highA[KH - 1].out(q)) : highB[k - 1].out(q), q);
        }

        if (active(kResonance)) {
            const unsigned q = parity(kResonance);
            const int m = i - kResonance;
            if constexpr (Parallel) {
                const __m128d low = resonanceLow.peak(Lanes::rounded(lowB[KL - 1].out(q)), q);
                const __m128d high = resonanceHigh.peak(Lanes::rounded(highB[KH - 1].out(q)), q);
                Lanes::store(_mm_add_ps(Lanes::toFloats(low), Lanes::toFloats(high)), io.outL, io.outR, m);
            } else {
                const __m128 difference =
                    _mm_sub_ps(Lanes::toFloats(allPass[KH - 1].out(q)), Lanes::toFloats(highB[KH - 1].out(q)));
                resonanceLow.peak(_mm_cvtps_pd(difference), q);
            }
        }
        if constexpr (!Parallel) {
            if (active(kResonance + 1)) {
                const unsigned q = parity(kResonance + 1);
                const __m128d y = resonanceHigh.peak(Lanes::rounded(resonanceLow.out(q)), q);
                Lanes::store(y, io.outL, io.outR, i - (kResonance + 1));
            }
        }

#pragma GCC unroll 8
        for (int k = 0; k < KL; ++k) {
            if (!active(k)) continue;
            const unsigned q = parity(k);
            const int m = i - k;
            const __m128d in =
                k == 0 ? withFloatOffset(_mm_setr_ps(io.lowInL[m], io.lowInR[m], 0.0f, 0.0f)) : dryLow[k - 1].out(q);
            dryLow[k].rounded(in, q);
        }
#pragma GCC unroll 8
        for (int k = 0; k < KH; ++k) {
            const int d = KL + k;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m128d in = k == 0 ? withFloatOffset(Lanes::toFloats(dryLow[KL - 1].out(q))) : dryHigh[k - 1].out(q);
            const __m128d y = dryHigh[k].rounded(in, q);
            if (k == KH - 1) Lanes::store(y, io.dryL, io.dryR, i - d);
        }
    }

    void masked(int from, int to, int n, const FilterStageBuffers& io) {
        for (int i = from; i < to; ++i) {
            if (i & 1)
                iterate<true, 1>(i, n, io);
            else
                iterate<true, 0>(i, n, io);
        }
    }

    void run(FilterStageParts& parts, const FilterStageBuffers& io, int n) {
        load(parts);
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
        save(parts, n - 1);
    }
};

template <bool Parallel, int KL, int KH>
void runPipeline(FilterStageParts& parts, const FilterStageBuffers& io, int n) {
    Pipeline<Parallel, KL, KH> pipeline;
    pipeline.run(parts, io, n);
}

using Runner = void (*)(FilterStageParts&, const FilterStageBuffers&, int);

// Stage counts with a fused form: slopes of 12 and 24 dB per octave have one stage per cascade,
// 48 two, 96 four.
int stageIndex(int stages) { return stages == 1 ? 0 : stages == 2 ? 1 : stages == 4 ? 2 : -1; }

template <bool Parallel>
Runner runnerFor(int low, int high) {
    static constexpr Runner table[3][3] = {
        {runPipeline<Parallel, 1, 1>, runPipeline<Parallel, 1, 2>, runPipeline<Parallel, 1, 4>},
        {runPipeline<Parallel, 2, 1>, runPipeline<Parallel, 2, 2>, runPipeline<Parallel, 2, 4>},
        {runPipeline<Parallel, 4, 1>, runPipeline<Parallel, 4, 2>, runPipeline<Parallel, 4, 4>},
    };
    return table[low][high];
}

// Both channels of a side must have the same shape, and every chain the stage count of its side.
int sideStages(const DSP::CSlopeFilter& left, const DSP::CSlopeFilter& right, const DSP::CBiquadCascade& dryL,
               const DSP::CBiquadCascade& dryR, bool complementary) {
    const int k = left.lowPathA().stageCount();
    for (const DSP::CSlopeFilter* f : {&left, &right}) {
        if (f->isComplementary() != complementary || f->lowPathA().stageCount() != k ||
            f->lowPathB().stageCount() != k || (complementary && f->allPassStages().stageCount() != k))
            return -1;
    }
    if (dryL.stageCount() != k || dryR.stageCount() != k) return -1;
    return stageIndex(k);
}

}  // namespace

bool runFusedFilterStage(FilterStageParts& parts, bool parallel, const FilterStageBuffers& buffers, int samples) {
    if (samples <= 0) return true;
    const int low = sideStages(parts.lowPassL, parts.lowPassR, parts.dryLowL, parts.dryLowR, false);
    const int high = sideStages(parts.highPassL, parts.highPassR, parts.dryHighL, parts.dryHighR, !parallel);
    if (low < 0 || high < 0) return false;
    const Runner run = parallel ? runnerFor<true>(low, high) : runnerFor<false>(low, high);
    run(parts, buffers, samples);
    return true;
}
