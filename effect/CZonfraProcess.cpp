#include <algorithm>
#include <cmath>

#include "dsp/memory/BlockScan.h"
#include "effect/CZonfra.h"
#include "effect/FusedFilterStage.h"
#include "effect/LatencyDelay.h"
#include "framework/plugin/FloatingPointGuard.h"

namespace {
void raisePeak(const float* samples, int n, float& peak) {
    for (int i = 0; i < n; ++i) peak = std::max(peak, std::fabs(samples[i]));
}

bool isFinite(const Ondra::StereoBuffer& buffer, int n) {
    return DSP::Block::allFinite(buffer.left, n) && DSP::Block::allFinite(buffer.right, n);
}

// Silence in place of what is not a number: one such sample would stay in every filter's state.
void copyFinite(const Ondra::StereoBuffer& from, Ondra::StereoBuffer& to, int n) {
    for (int i = 0; i < n; ++i) {
        to.left[i] = std::isfinite(from.left[i]) ? from.left[i] : 0.0f;
        to.right[i] = std::isfinite(from.right[i]) ? from.right[i] : 0.0f;
    }
}
}  // namespace

void CZonfra::process(Ondra::OndraAudioBlock& audio) {
    Ondra::FloatingPointGuard guard;
    const int n = audio.numSamples;
    if (n <= 0 || audio.inputCount < 1 || audio.outputCount < 1) return;
    // Grows before anything else so that the delays' scratch is large enough.
    if (n > maxBlockSize) setBlockSize(n);
    if (!isFinite(audio.in[0], n)) {
        copyFinite(audio.in[0], finiteInput, n);
        Ondra::StereoBuffer& in = audio.in[0];
        float* const hostLeft = in.left;
        float* const hostRight = in.right;
        const int hostCapacity = in.capacity;
        in.refer(finiteInput.left, finiteInput.right, n);
        runChain(audio, n);
        in.refer(hostLeft, hostRight, hostCapacity);
    } else {
        runChain(audio, n);
    }
    // Finite input can still overflow a stage (full-scale floats times gain): such a block leaves
    // silence and the stages start afresh.
    if (!isFinite(audio.out[0], n)) {
        std::fill(audio.out[0].left, audio.out[0].left + n, 0.0f);
        std::fill(audio.out[0].right, audio.out[0].right + n, 0.0f);
        resetRequested = true;
    }
    // The editor reads the block's peaks; they start afresh for the next one.
    if (editorTap) {
        editorTap->audioTap(*this, audio.out[0].left, audio.out[0].right, n);
        inputGain.clearPeaks();
        outputGain.clearPeaks();
        peakHoldL = peakHoldR = 0;
    }
}

void CZonfra::runChain(Ondra::OndraAudioBlock& audio, int n) {
    const Ondra::StereoBuffer& in = audio.in[0];
    Ondra::StereoBuffer& out = audio.out[0];

    // 1-3: untouched input, delayed as far as the wet path; a settled bypass ends here.
    bypassDryBuffer.copyFrom(in, n);
    delayInPlace(bypassDelay, delayScratch, bypassDryBuffer.left, bypassDryBuffer.right, n);
    if (bypassed && bypassSettled) {
        bypassDryBuffer.copyTo(out.left, out.right, n);
        raisePeak(out.left, n, peakHoldL);
        raisePeak(out.right, n, peakHoldR);
        return;
    }

    if (resetRequested) resetInternal(false);
    applyFilterSettings();
    // 5-8: input gain, envelope and LFO, then the control step.
    workBuffer.copyFrom(in, n);
    inputGain.apply(workBuffer.left, workBuffer.right, n);
    measureEnvelope(n);
    stepLfo(audio, n);
    controlStep();

    // 9-11: stages before the filters; the dry/wet amount reaches past them to the raw input.
    const bool distortionBefore = !distortionPost;
    const bool reductionBefore = !rateReductionPost;
    if (distortionBefore) distortion.process(workBuffer, static_cast<unsigned>(n));
    if (reductionBefore) rateReducer.process(workBuffer, static_cast<unsigned>(n));
    const float mix = mixTarget;
    if (mix != 1.0f && (distortionBefore || reductionBefore)) {
        float k = 1.0f - mixCurrent;
        mixSmoother.apply(workBuffer.left, workBuffer.right, in.left, in.right, k, 1.0f - mix, n);
    }

    // 12-13: the filters and the dry path's phase twins.
    runFilterStage(audio, n);

    // 14-17: modulators and the stages after the filters.
    float* io[2] = {out.left, out.right};
    ringMod.processInPlace(io, static_cast<unsigned>(n));
    // At rest the modulator is a one-sample delay that would put the wet path behind the reported
    // latency; it keeps listening so that its history is current when it starts to sweep.
    freqMod.processBlock(out.left, out.right, n, freqMod.isActive());
    if (distortionPost) distortion.process(out, static_cast<unsigned>(n));
    if (rateReductionPost) rateReducer.process(out, static_cast<unsigned>(n));

    // 18-19: limiter or its equal delay, then output gain.
    if (limiterOn && globalLimiterOn)
        limiter.process(out.left, out.right, static_cast<unsigned>(n));
    else
        delayInPlace(limiterDelay, delayScratch, out.left, out.right, n);
    outputGain.apply(out.left, out.right, n);

    // 20-21: dry/wet against the equally late dry path.
    delayInPlace(dryPathDelay, delayScratch, dryPathBuffer.left, dryPathBuffer.right, n);
    float k = 1.0f - mixCurrent;
    mixSmoother.apply(out.left, out.right, dryPathBuffer.left, dryPathBuffer.right, k, 1.0f - mix, n);
    mixCurrent = 1.0f - k;

    // 22: the bypass fade.
    if (!bypassSettled) {
        for (int i = 0; i < n; ++i) {
            out.left[i] = bypassDryBuffer.left[i] + (out.left[i] - bypassDryBuffer.left[i]) * bypassFade;
            out.right[i] = bypassDryBuffer.right[i] + (out.right[i] - bypassDryBuffer.right[i]) * bypassFade;
            bypassFade += bypassFadeStep;
            if (bypassFade >= 1.0f || bypassFade <= 0.0f) {
                bypassFade = std::clamp(bypassFade, 0.0f, 1.0f);
                if (!bypassSettled) {
                    bypassSettled = true;
                    if (bypassed) clearAfterBypass();
                }
                bypassFadeStep = 0.0f;
            }
        }
    }
}

void CZonfra::runFilterStage(Ondra::OndraAudioBlock& audio, int n) {
    // The dry chains follow the all-pass twins of the left filters on both channels.
    dryPhaseHighL.copyCoefficients(highPassL.allPassStages());
    dryPhaseHighR.copyCoefficients(highPassL.allPassStages());
    dryPhaseLowL.copyCoefficients(lowPassL.allPassStages());
    dryPhaseLowR.copyCoefficients(lowPassL.allPassStages());
    const bool parallel = filterMode != 0;
    Ondra::StereoBuffer& out = audio.out[0];
    // Parallel: the high-pass branch takes the raw input, without input gain or pre stages.
    if (parallel) secondBuffer.copyFrom(audio.in[0], n);
    FilterStageParts parts{lowPassL,     lowPassR,      highPassL,    highPassR,     resonanceLow,
                           resonanceHigh, dryPhaseLowL, dryPhaseLowR, dryPhaseHighL, dryPhaseHighR};
    const FilterStageBuffers buffers{workBuffer.left,   workBuffer.right, secondBuffer.left,  secondBuffer.right,
                                     out.left,          out.right,        dryPathBuffer.left, dryPathBuffer.right};
    if (runFusedFilterStage(parts, parallel, buffers, n)) return;
    runFilters(audio, n, parallel);
    runDryPhaseChains(n);
}

// The filters one by one, for shapes the fused stage does not cover.
void CZonfra::runFilters(Ondra::OndraAudioBlock& audio, int n, bool parallel) {
    const auto count = static_cast<unsigned>(n);
    Ondra::StereoBuffer& out = audio.out[0];
    if (!parallel) {
        dryPathBuffer.copyFrom(workBuffer, n);
        lowPassL.process(workBuffer.left, workBuffer.left, count);
        lowPassR.process(workBuffer.right, workBuffer.right, count);
        highPassL.process(workBuffer.left, workBuffer.left, count);
        highPassR.process(workBuffer.right, workBuffer.right, count);
        float* const work[2] = {workBuffer.left, workBuffer.right};
        resonanceLow.process(work, work, count);
        resonanceHigh.process(work, work, count);
        workBuffer.copyTo(out.left, out.right, n);
        return;
    }
    dryPathBuffer.copyFrom(workBuffer, n);
    lowPassL.process(workBuffer.left, workBuffer.left, count);
    lowPassR.process(workBuffer.right, workBuffer.right, count);
    highPassL.process(secondBuffer.left, secondBuffer.left, count);
    highPassR.process(secondBuffer.right, secondBuffer.right, count);
    float* const work[2] = {workBuffer.left, workBuffer.right};
    float* const second[2] = {secondBuffer.left, secondBuffer.right};
    resonanceLow.process(work, work, count);
    resonanceHigh.process(second, second, count);
    for (int i = 0; i < n; ++i) {
        out.left[i] = workBuffer.left[i] + secondBuffer.left[i];
        out.right[i] = workBuffer.right[i] + secondBuffer.right[i];
    }
}

void CZonfra::runDryPhaseChains(int n) {
    for (int i = 0; i < n; ++i) {
        float left = dryPathBuffer.left[i] + 1e-19f;
        left = dryPhaseLowL.tickRounded(left) + 1e-19f;
        dryPathBuffer.left[i] = dryPhaseHighL.tickRounded(left);
        float right = dryPathBuffer.right[i] + 1e-19f;
        right = dryPhaseLowR.tickRounded(right) + 1e-19f;
        dryPathBuffer.right[i] = dryPhaseHighR.tickRounded(right);
    }
}

void CZonfra::clearAfterBypass() {
    limiter.reset();
    distortion.reset();
    rateReducer.reset();
    inputGain.snap();
    outputGain.snap();
    low.env = low.envOut = high.env = high.envOut = 0;
    for (FilterSide* side : {&low, &high}) {
        side->cutoff = side->modulated;
        side->resonance = side->resonanceParam;
    }
    clearFilterStates();
    lfoResync = true;
    ringMod.reset();
    dryPathDelay.clear();
    mixCurrent = mixTarget;
    inputGain.clearPeaks();
    outputGain.clearPeaks();
}

void CZonfra::clearFilterStates() {
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->reset();
    resonanceLow.reset();
    resonanceHigh.reset();
    measureBand.reset();
    for (DSP::CBiquadCascade* c : {&dryPhaseLowL, &dryPhaseLowR, &dryPhaseHighL, &dryPhaseHighR}) c->reset();
}
