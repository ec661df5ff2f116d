#pragma once

namespace DSP {
class CBiquadCascade;
class CPeakBiquad;
class CSlopeFilter;
}  // namespace DSP

// The objects of the effect's filter stage: both slope filters, their resonance peaks and the dry
// path's all-pass twins.
struct FilterStageParts {
    DSP::CSlopeFilter& lowPassL;
    DSP::CSlopeFilter& lowPassR;
    DSP::CSlopeFilter& highPassL;
    DSP::CSlopeFilter& highPassR;
    DSP::CPeakBiquad& resonanceLow;
    DSP::CPeakBiquad& resonanceHigh;
    DSP::CBiquadCascade& dryLowL;
    DSP::CBiquadCascade& dryLowR;
    DSP::CBiquadCascade& dryHighL;
    DSP::CBiquadCascade& dryHighR;
};

struct FilterStageBuffers {
    float* lowInL;   // into the low-pass and the dry chains
    float* lowInR;
    float* highInL;  // into the high-pass, in parallel mode only
    float* highInR;
    float* outL;
    float* outR;
    float* dryL;
    float* dryR;
};

// Runs the whole filter stage of one chunk in a single loop, both channels in the lanes of one
// register and each group of up to two stages one sample behind the group before it, so that the
// groups of an iteration are independent of each other. Each sample of each channel sees exactly
// the arithmetic of the filter classes' own loops. Series: low-pass, high-pass, low then high
// resonance; parallel: low-pass with its resonance plus high-pass with its resonance. The dry
// chains run low then high on the low-pass input.
//
// Returns false, having touched nothing, for a shape it has no fused form of (the stage counts
// of the two channels differ, or a slope outside 12 to 96 dB per octave); the caller then runs
// the filters one by one.
//
// With `lanes` at widest, a processor with AVX runs the series form with two cascades to a
// register; sse2 keeps to the form every x86-64 processor runs (the results are the same).
enum class FusedLanes { widest, sse2 };
bool runFusedFilterStage(FilterStageParts& parts, bool parallel, const FilterStageBuffers& buffers, int samples,
                         FusedLanes lanes = FusedLanes::widest);

// The same stage through the filter classes' own loops, each filter over the whole chunk before the
// next and the dry chains last, for shapes the fused form does not cover. Leaves the inputs filtered.
void runFilterStageOneByOne(FilterStageParts& parts, bool parallel, const FilterStageBuffers& buffers, int samples);
