#include "effect/FusedFilterStage.h"

#include <algorithm>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "dsp/filters/StereoStage.h"
#include "effect/FusedStagePieces.h"
#include "effect/FusedFilterStageWide.h"

namespace {

using DSP::StereoStage;
namespace Lanes = DSP::Lanes;
using FusedStagePieces::Layout;
using FusedStagePieces::Part;
using FusedStagePieces::partSize;
using FusedStagePieces::withFloatOffset;
using FusedStagePieces::withOffset;

// A cascade of K stages as K / G parts, each one step of the pipeline.
template <int K, int G>
struct Chain {
    static_assert(K % G == 0);
    static constexpr int kParts = K / G;
    Part<G> part[kParts];

    void load(const DSP::CBiquadCascade& left, const DSP::CBiquadCascade& right) {
        for (int j = 0; j < kParts; ++j) part[j].load(left, right, j * G);
    }
    void save(DSP::CBiquadCascade& left, DSP::CBiquadCascade& right, int last) const {
        for (int j = 0; j < kParts; ++j) part[j].save(left, right, j * G, last);
    }
    ZONFRA_LANE_INLINE __m128d out(unsigned q) const { return part[kParts - 1].out(q); }
};


// The pipeline of FusedStagePieces.h, one cascade pair per register.
template <bool Parallel, int KL, int KH>
struct Pipeline {
    static constexpr int GL = partSize(KL), GH = partSize(KH);
    static constexpr int NL = KL / GL, NH = KH / GH;
    using At = Layout<Parallel, NL, NH>;
    static constexpr int kDepth = At::kDepth;

    Chain<KL, GL> lowA, lowB, dryLow;
    Chain<KH, GH> highA, highB, allPass, dryHigh;
    StereoStage resonanceLow, resonanceHigh;
    // The all-pass branch's input on its way to the all-pass, one slot pair per step.
    __m128d allPassIn[NH][2];

    void load(FilterStageParts& p) {
        lowA.load(p.lowPassL.lowPathA(), p.lowPassR.lowPathA());
        lowB.load(p.lowPassL.lowPathB(), p.lowPassR.lowPathB());
        highA.load(p.highPassL.lowPathA(), p.highPassR.lowPathA());
        highB.load(p.highPassL.lowPathB(), p.highPassR.lowPathB());
        if (!Parallel) allPass.load(p.highPassL.allPassStages(), p.highPassR.allPassStages());
        dryLow.load(p.dryLowL, p.dryLowR);
        dryHigh.load(p.dryHighL, p.dryHighR);
        resonanceLow.load(p.resonanceLow);
        resonanceHigh.load(p.resonanceHigh);
    }

    void save(FilterStageParts& p, int last) const {
        lowA.save(p.lowPassL.lowPathA(), p.lowPassR.lowPathA(), last);
        lowB.save(p.lowPassL.lowPathB(), p.lowPassR.lowPathB(), last);
        highA.save(p.highPassL.lowPathA(), p.highPassR.lowPathA(), last);
        highB.save(p.highPassL.lowPathB(), p.highPassR.lowPathB(), last);
        if (!Parallel) allPass.save(p.highPassL.allPassStages(), p.highPassR.allPassStages(), last);
        dryLow.save(p.dryLowL, p.dryLowR, last);
        dryHigh.save(p.dryHighL, p.dryHighR, last);
        resonanceLow.save(p.resonanceLow, last);
        resonanceHigh.save(p.resonanceHigh, last);
    }

    // One iteration; P is the parity of i, so that the parity of every step's sample is known when
    // compiling. In the ramp-up and run-out iterations (Masked) the steps whose sample lies outside
    // the chunk stand still.
    template <bool Masked, unsigned P>
    ZONFRA_LANE_INLINE void iterate(int i, int n, const FilterStageBuffers& io) {
        auto active = [i, n](int depth) { return !Masked || (i >= depth && i < n + depth); };
        auto parity = [](int depth) { return (P ^ static_cast<unsigned>(depth)) & 1u; };

        // Low-pass: A then B, each behind the offset against denormals.
#pragma GCC unroll 8
        for (int j = 0; j < NL; ++j) {
            const int d = At::kLowA + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m128d in = j == 0 ? withOffset(Lanes::load(io.lowInL, io.lowInR, i - d)) : lowA.part[j - 1].out(q);
            lowA.part[j].tick(in, q);
        }
#pragma GCC unroll 8
        for (int j = 0; j < NL; ++j) {
            const int d = At::kLowB + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            lowB.part[j].tick(j == 0 ? withOffset(lowA.out(q)) : lowB.part[j - 1].out(q), q);
        }

        // High-pass: in parallel mode from its own input; in series mode from the rounded low-pass
        // output, with the all-pass branch fed that output plus the offset, rounded.
        if (active(At::kHighA)) {
            const unsigned q = parity(At::kHighA);
            if constexpr (Parallel) {
                highA.part[0].tick(withOffset(Lanes::load(io.highInL, io.highInR, i - At::kHighA)), q);
            } else {
                const __m128d s = Lanes::rounded(lowB.out(q));
                highA.part[0].tick(withOffset(s), q);
                allPassIn[0][q] = Lanes::rounded(withOffset(s));
            }
        }
#pragma GCC unroll 8
        for (int j = 1; j < NH; ++j) {
            const int d = At::kHighA + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            highA.part[j].tick(highA.part[j - 1].out(q), q);
            if constexpr (!Parallel) allPassIn[j][q] = allPassIn[j - 1][q];
        }
#pragma GCC unroll 8
        for (int j = 0; j < NH; ++j) {
            const int d = At::kHighB + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            highB.part[j].tick(j == 0 ? withOffset(highA.out(q)) : highB.part[j - 1].out(q), q);
            if constexpr (!Parallel)
                allPass.part[j].tickRounded(j == 0 ? allPassIn[NH - 1][q] : allPass.part[j - 1].out(q), q);
        }

        // Resonances: in series low then high on the complementary high-pass output; in parallel
        // one on each branch, then the sum.
        if (active(At::kResonance)) {
            const unsigned q = parity(At::kResonance);
            const int m = i - At::kResonance;
            if constexpr (Parallel) {
                const __m128d low = resonanceLow.peak(Lanes::rounded(lowB.out(q)), q);
                const __m128d high = resonanceHigh.peak(Lanes::rounded(highB.out(q)), q);
                Lanes::store(_mm_add_ps(Lanes::toFloats(low), Lanes::toFloats(high)), io.outL, io.outR, m);
            } else {
                const __m128 difference =
                    _mm_sub_ps(Lanes::toFloats(allPass.out(q)), Lanes::toFloats(highB.out(q)));
                resonanceLow.peak(_mm_cvtps_pd(difference), q);
            }
        }
        if constexpr (!Parallel) {
            if (active(At::kHighResonance)) {
                const unsigned q = parity(At::kHighResonance);
                const __m128d high = resonanceHigh.peak(Lanes::rounded(resonanceLow.out(q)), q);
                Lanes::store(high, io.outL, io.outR, i - At::kHighResonance);
            }
        }

        // Dry chains: low then high, each behind the float offset.
#pragma GCC unroll 8
        for (int j = 0; j < NL; ++j) {
            const int d = At::kDryLow + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const int m = i - d;
            const __m128d in = j == 0 ? withFloatOffset(_mm_setr_ps(io.lowInL[m], io.lowInR[m], 0.0f, 0.0f))
                                      : dryLow.part[j - 1].out(q);
            dryLow.part[j].tickRounded(in, q);
        }
#pragma GCC unroll 8
        for (int j = 0; j < NH; ++j) {
            const int d = At::kDryHigh + j;
            if (!active(d)) continue;
            const unsigned q = parity(d);
            const __m128d in = j == 0 ? withFloatOffset(Lanes::toFloats(dryLow.out(q))) : dryHigh.part[j - 1].out(q);
            const __m128d y = dryHigh.part[j].tickRounded(in, q);
            if (j == NH - 1) Lanes::store(y, io.dryL, io.dryR, i - d);
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

bool runFusedFilterStage(FilterStageParts& parts, bool parallel, const FilterStageBuffers& buffers, int samples,
                         FusedLanes lanes) {
    if (samples <= 0) return true;
    const int low = sideStages(parts.lowPassL, parts.lowPassR, parts.dryLowL, parts.dryLowR, false);
    const int high = sideStages(parts.highPassL, parts.highPassR, parts.dryHighL, parts.dryHighR, !parallel);
    if (low < 0 || high < 0) return false;
    if (!parallel && low == high && lanes == FusedLanes::widest &&
        runWideSeriesFilterStage(parts, buffers, samples, parts.lowPassL.lowPathA().stageCount()))
        return true;
    const Runner run = parallel ? runnerFor<true>(low, high) : runnerFor<false>(low, high);
    run(parts, buffers, samples);
    return true;
}

void runFilterStageOneByOne(FilterStageParts& p, bool parallel, const FilterStageBuffers& io, int n) {
    if (n <= 0) return;
    const auto count = static_cast<unsigned>(n);
    std::copy(io.lowInL, io.lowInL + n, io.dryL);
    std::copy(io.lowInR, io.lowInR + n, io.dryR);
    float* const low[2] = {io.lowInL, io.lowInR};
    float* const high[2] = {io.highInL, io.highInR};
    p.lowPassL.process(io.lowInL, io.lowInL, count);
    p.lowPassR.process(io.lowInR, io.lowInR, count);
    if (!parallel) {
        p.highPassL.process(io.lowInL, io.lowInL, count);
        p.highPassR.process(io.lowInR, io.lowInR, count);
        p.resonanceLow.process(low, low, count);
        p.resonanceHigh.process(low, low, count);
        std::copy(io.lowInL, io.lowInL + n, io.outL);
        std::copy(io.lowInR, io.lowInR + n, io.outR);
    } else {
        p.highPassL.process(io.highInL, io.highInL, count);
        p.highPassR.process(io.highInR, io.highInR, count);
        p.resonanceLow.process(low, low, count);
        p.resonanceHigh.process(high, high, count);
        for (int i = 0; i < n; ++i) {
            io.outL[i] = io.lowInL[i] + io.highInL[i];
            io.outR[i] = io.lowInR[i] + io.highInR[i];
        }
    }
    for (int i = 0; i < n; ++i) {
        float left = io.dryL[i] + 1e-19f;
        left = p.dryLowL.tickRounded(left) + 1e-19f;
        io.dryL[i] = p.dryHighL.tickRounded(left);
        float right = io.dryR[i] + 1e-19f;
        right = p.dryLowR.tickRounded(right) + 1e-19f;
        io.dryR[i] = p.dryHighR.tickRounded(right);
    }
}
