#include "effect/SignalChain.h"

#include <algorithm>
#include <cmath>

#include "dsp/memory/BlockScan.h"
#include "effect/FusedFilterStage.h"
#include "effect/LatencyDelay.h"

namespace {
// The resonance peaks are peaking sections from the start; the design flag makes their width a
// bandwidth in octaves.
constexpr int kPeakingDesign = 6;
// CSlopeFilter's type that makes it a high-pass.
constexpr unsigned kHighPassType = 1;
constexpr float kBypassFadeMs = 15.0f;

float bypassFadeStepAt(float rate) { return 1.0f / (kBypassFadeMs * rate * 0.001f); }

void raisePeak(const float* samples, int n, float& peak) {
    for (int i = 0; i < n; ++i) peak = std::max(peak, std::fabs(samples[i]));
}

bool isFinite(const DSP::StereoBuffer& buffer, int n) {
    return DSP::Block::allFinite(buffer.left, n) && DSP::Block::allFinite(buffer.right, n);
}
}  // namespace

SignalChain::SignalChain() {
    // The filters start steep and wide open; the high-pass is a high-pass for good.
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->setSlope(96);
    highPassL.setType(kHighPassType);
    highPassR.setType(kHighPassType);
    lowPassL.setCutoff(22050);
    lowPassR.setCutoff(22050);
    highPassL.setCutoff(20);
    highPassR.setCutoff(20);
    resonanceLow.set(kPeakingDesign, 1000, 0.2f, 0, true);
    resonanceHigh.set(kPeakingDesign, 1000, 0.2f, 0, true);
}

void SignalChain::setSampleRate(float rate) {
    distortion.setSampleRate(rate);
    limiter.setSampleRate(rate);
    const double integerRate = static_cast<int>(rate);
    for (DSP::CPeakBiquad* peak : {&resonanceLow, &resonanceHigh}) {
        peak->sampleRate = integerRate;
        peak->update();
    }
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->setSampleRate(rate);
    ringMod.setSampleRate(rate);
    freqMod.setSampleRate(rate);
    // A fade that a state load started before the rate was known runs at the new rate.
    if (bypassFadeStep != 0.0f) bypassFadeStep = std::copysign(bypassFadeStepAt(rate), bypassFadeStep);
}

void SignalChain::updateLatency() {
    latencySamples = limiter.getDelaySamples();
    for (Ondra::CNChannelBuffer* line : {&limiterDelay, &bypassDelay, &dryPathDelay}) line->resize(latencySamples, 2);
}

void SignalChain::setBlockSize(int samples) {
    workBuffer.allocate(samples);
    secondBuffer.allocate(samples);
    dryPathBuffer.allocate(samples);
    finiteInput.allocate(samples);
    // Sized here too so that the first block after a size change allocates nothing.
    if (bypassDryBuffer.capacity < samples) bypassDryBuffer.allocate(samples);
    delayScratch.resize(samples, 1);
    limiter.setBlockSize(samples);
}

void SignalChain::setLimiterOn(bool on) {
    limiterOn = on;
    limiter.setBypassed(!on);
}

void SignalChain::startBypassFade(bool on, float sampleRate) {
    const float step = bypassFadeStepAt(sampleRate);
    bypassFadeStep = on ? -step : step;
    bypassFade = on ? 1.0f : 0.0f;
    bypassSettled = false;
}

bool SignalChain::takeFiniteInput(Ondra::OndraAudioBlock& audio, int n) {
    DSP::StereoBuffer& in = audio.in[0];
    if (isFinite(in, n)) return false;
    for (int i = 0; i < n; ++i) {
        finiteInput.left[i] = std::isfinite(in.left[i]) ? in.left[i] : 0.0f;
        finiteInput.right[i] = std::isfinite(in.right[i]) ? in.right[i] : 0.0f;
    }
    hostInput = {in.left, in.right, in.capacity};
    in.refer(finiteInput.left, finiteInput.right, n);
    return true;
}

void SignalChain::restoreHostInput(Ondra::OndraAudioBlock& audio) {
    audio.in[0].refer(hostInput.left, hostInput.right, hostInput.capacity);
}

bool SignalChain::silenceIfNotFinite(Ondra::OndraAudioBlock& audio, int n) {
    DSP::StereoBuffer& out = audio.out[0];
    if (isFinite(out, n)) return false;
    std::fill(out.left, out.left + n, 0.0f);
    std::fill(out.right, out.right + n, 0.0f);
    return true;
}

bool SignalChain::passBypassed(Ondra::OndraAudioBlock& audio, int n, bool bypassed) {
    DSP::StereoBuffer& out = audio.out[0];
    bypassDryBuffer.copyFrom(audio.in[0], n);
    delayInPlace(bypassDelay, delayScratch, bypassDryBuffer.left, bypassDryBuffer.right, n);
    if (!bypassed || !bypassSettled) return false;
    bypassDryBuffer.copyTo(out.left, out.right, n);
    raisePeak(out.left, n, peakHoldL);
    raisePeak(out.right, n, peakHoldR);
    return true;
}

bool SignalChain::process(Ondra::OndraAudioBlock& audio, int n, bool bypassed, ChunkControl& control) {
    const DSP::StereoBuffer& in = audio.in[0];
    DSP::StereoBuffer& out = audio.out[0];
    applyFilterSettings();
    workBuffer.copyFrom(in, n);
    inputGain.apply(workBuffer.left, workBuffer.right, n);
    control.controlChunk(workBuffer, audio, n);

    // Stages before the filters; the dry/wet amount then reaches past them to the raw input.
    const bool distortionBefore = !distortionPost;
    const bool reductionBefore = !rateReductionPost;
    if (distortionBefore) distortion.process(workBuffer, static_cast<unsigned>(n));
    if (reductionBefore) rateReducer.process(workBuffer, static_cast<unsigned>(n));
    const float mix = mixTarget;
    if (mix != 1.0f && (distortionBefore || reductionBefore)) {
        float k = 1.0f - mixCurrent;
        mixSmoother.apply(workBuffer.left, workBuffer.right, in.left, in.right, k, 1.0f - mix, n);
    }

    runFilterStage(audio, n);

    float* io[2] = {out.left, out.right};
    ringMod.processInPlace(io, static_cast<unsigned>(n));
    // At rest the modulator is a one-sample delay that would put the wet path behind the reported
    // latency; it keeps listening so that its history is current when it starts to sweep.
    freqMod.processBlock(out.left, out.right, n, freqMod.isActive());
    if (distortionPost) distortion.process(out, static_cast<unsigned>(n));
    if (rateReductionPost) rateReducer.process(out, static_cast<unsigned>(n));

    // The limiter's delay, or an equal one, keeps the wet path as late with it as without.
    if (limiterOn && globalLimiterOn)
        limiter.process(out.left, out.right, static_cast<unsigned>(n));
    else
        delayInPlace(limiterDelay, delayScratch, out.left, out.right, n);
    outputGain.apply(out.left, out.right, n);

    // Dry/wet against the equally late dry path.
    delayInPlace(dryPathDelay, delayScratch, dryPathBuffer.left, dryPathBuffer.right, n);
    float k = 1.0f - mixCurrent;
    mixSmoother.apply(out.left, out.right, dryPathBuffer.left, dryPathBuffer.right, k, 1.0f - mix, n);
    mixCurrent = 1.0f - k;

    return runBypassFade(out, n, bypassed);
}

bool SignalChain::runBypassFade(DSP::StereoBuffer& out, int n, bool bypassed) {
    if (bypassSettled) return false;
    bool settledOn = false;
    for (int i = 0; i < n; ++i) {
        out.left[i] = bypassDryBuffer.left[i] + (out.left[i] - bypassDryBuffer.left[i]) * bypassFade;
        out.right[i] = bypassDryBuffer.right[i] + (out.right[i] - bypassDryBuffer.right[i]) * bypassFade;
        bypassFade += bypassFadeStep;
        if (bypassFade >= 1.0f || bypassFade <= 0.0f) {
            bypassFade = std::clamp(bypassFade, 0.0f, 1.0f);
            if (!bypassSettled) {
                bypassSettled = true;
                settledOn = bypassed;
            }
            bypassFadeStep = 0.0f;
        }
    }
    if (settledOn) clearAfterBypass();
    return settledOn;
}

void SignalChain::runFilterStage(Ondra::OndraAudioBlock& audio, int n) {
    // The dry chains follow the all-pass twins of the left filters on both channels.
    dryPhaseHighL.copyCoefficients(highPassL.allPassStages());
    dryPhaseHighR.copyCoefficients(highPassL.allPassStages());
    dryPhaseLowL.copyCoefficients(lowPassL.allPassStages());
    dryPhaseLowR.copyCoefficients(lowPassL.allPassStages());
    const bool parallel = filterMode != 0;
    DSP::StereoBuffer& out = audio.out[0];
    // Parallel: the high-pass branch takes the raw input, without input gain or pre stages.
    if (parallel) secondBuffer.copyFrom(audio.in[0], n);
    FilterStageParts parts{lowPassL,     lowPassR,      highPassL,    highPassR,     resonanceLow,
                           resonanceHigh, dryPhaseLowL, dryPhaseLowR, dryPhaseHighL, dryPhaseHighR};
    const FilterStageBuffers buffers{workBuffer.left,   workBuffer.right, secondBuffer.left,  secondBuffer.right,
                                     out.left,          out.right,        dryPathBuffer.left, dryPathBuffer.right};
    if (!runFusedFilterStage(parts, parallel, buffers, n)) runFilterStageOneByOne(parts, parallel, buffers, n);
}

void SignalChain::applyFilterSettings() {
    const int mode = filterMode;
    const bool modeChanged = mode != appliedFilterMode;
    if (modeChanged) {
        appliedFilterMode = mode;
        // In notch mode the high-pass is designed directly rather than as all-pass minus low-pass.
        for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR})
            f->mode = static_cast<unsigned>(mode);
    }
    applySlope(lowSlope, lowPassL, lowPassR, modeChanged);
    applySlope(highSlope, highPassL, highPassR, modeChanged);
}

// A new slope or mode rebuilds the cascades, whose old state means nothing then.
void SignalChain::applySlope(Slope& slope, DSP::CSlopeFilter& left, DSP::CSlopeFilter& right, bool force) {
    const int db = slope.asked;
    if (!force && db == slope.inForce) return;
    slope.inForce = db;
    left.setSlope(db);
    right.setSlope(db);
    left.reset();
    right.reset();
}

void SignalChain::resetBeforeControl() {
    workBuffer.clear();
    secondBuffer.clear();
    dryPathBuffer.clear();
    distortion.reset();
    rateReducer.reset();
    inputGain.snap();
    outputGain.snap();
}

void SignalChain::resetAfterControl() {
    clearFilterStates();
    limiter.reset();
    ringMod.reset();
    limiterDelay.clear();
    bypassDelay.clear();
    dryPathDelay.clear();
    mixCurrent = mixTarget;
    freqMod.reset();
}

void SignalChain::clearAfterBypass() {
    limiter.reset();
    distortion.reset();
    rateReducer.reset();
    inputGain.snap();
    outputGain.snap();
    clearFilterStates();
    ringMod.reset();
    dryPathDelay.clear();
    mixCurrent = mixTarget;
    inputGain.clearPeaks();
    outputGain.clearPeaks();
}

void SignalChain::clearFilterStates() {
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->reset();
    resonanceLow.reset();
    resonanceHigh.reset();
    for (DSP::CBiquadCascade* c : {&dryPhaseLowL, &dryPhaseLowR, &dryPhaseHighL, &dryPhaseHighR}) c->reset();
}

void SignalChain::clearPeaks() {
    inputGain.clearPeaks();
    outputGain.clearPeaks();
    peakHoldL = peakHoldR = 0;
}

void SignalChain::clearFilterDesigns() {
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->clearDesigns();
}
