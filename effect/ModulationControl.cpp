#include "effect/ModulationControl.h"

#include <algorithm>
#include <cmath>

#include "dsp/filters/StereoStage.h"
#include "effect/ModulationMath.h"
#include "effect/ZonfraParameters.h"
#include "framework/parameters/ParameterCurve.h"

namespace {
// The measure band is a band-pass until its parameter reports.
constexpr int kBandPassDesign = 3;
// The resonance peaks stay below the top of the band, where their design would fold over.
constexpr float kHighestResonanceHz = 18000.0f;
// The detector hears the measure band 11 dB up, the whole band 8 dB down.
constexpr float kBandDetectorGain = 3.548134f, kWideDetectorGain = 0.39810717f;
// Below this the tempo parameter means "the host's tempo".
constexpr int kLowestOwnTempo = 30;
// A cutoff this close to where it heads stays, and its filters are left alone.
constexpr float kCutoffRestHz = 1.0f;
constexpr float kResonanceGlide = 0.105f;
}  // namespace

ModulationControl::ModulationControl(SignalChain& signalChain, Ondra::CPropertyManager& parameterList)
    : chain(signalChain), parameters(parameterList) {
    measureBand.set(kBandPassDesign, 500, 0.1f, 0, false);
}

void ModulationControl::setSampleRate(float rate) {
    sampleRate = rate;
    lfo.setSampleRate(rate);
    measureBand.sampleRate = static_cast<double>(static_cast<int>(rate));
    measureBand.update();
}

void ModulationControl::startLfo(float rate) {
    lfo.setSampleRate(rate);
    lfo.setShape(DSP::CLfoGenerator::kSine);
    lfo.setRate(1.0);
    lfo.setSyncIndex(0);
}

void ModulationControl::controlChunk(const DSP::StereoBuffer& gained, const Ondra::OndraAudioBlock& audio, int n) {
    applyMeasureBand();
    measureEnvelope(gained, n);
    stepLfo(audio, n);
    step();
}

// The band's frequency is a design, done here on the audio thread rather than by the setter.
void ModulationControl::applyMeasureBand() {
    const float band = measureBandFrequency;
    if (band != appliedMeasureBandFrequency) {
        appliedMeasureBandFrequency = band;
        measureBand.setFrequency(band);
    }
}

void ModulationControl::reset() {
    lfoMeanValue = 0;
    lowSide.env = lowSide.envOut = highSide.env = highSide.envOut = 0;
    for (FilterControl* side : {&lowSide, &highSide}) {
        side->cutoff = side->modulated = side->target = side->cutoffParam;
        side->resonance = side->resonanceParam;
    }
    resetRequested = false;
    applyMeasureBand();
    // Slopes before cutoffs: a cache bin keeps the design of the first cutoff that visits it.
    chain.applyFilterSettings();
    chain.lowPassL.setCutoff(lowSide.cutoff);
    chain.lowPassR.setCutoff(lowSide.cutoff);
    chain.highPassL.setCutoff(highSide.cutoff);
    chain.highPassR.setCutoff(highSide.cutoff);
    chain.resonanceLow.setFrequency(std::min(lowSide.cutoff, kHighestResonanceHz));
    chain.resonanceHigh.setFrequency(std::min(highSide.cutoff, kHighestResonanceHz));
    step();
    measureBand.reset();
}

void ModulationControl::clearAfterBypass() {
    lowSide.env = lowSide.envOut = highSide.env = highSide.envOut = 0;
    for (FilterControl* side : {&lowSide, &highSide}) {
        side->cutoff = side->modulated;
        side->resonance = side->resonanceParam;
    }
    measureBand.reset();
    lfoResync = true;
}

void ModulationControl::applyRateLink() {
    float c = rateParam;
    if (rateLinkOn && !stateLoading) c = ModulationMath::rateLinkControl(lowSide.modulated, rateAmount, rateFlip);
    chain.rateReducer.setBits(c * 0.7f + 0.3f);
    chain.rateReducer.setRate(c);
}

float ModulationControl::filterPosition() {
    Ondra::ParameterProperty* p = row(kLowPassFreq);
    return Ondra::shape((lowSide.cutoff - p->getMinimum()) / (p->getMaximum() - p->getMinimum()), -p->getCurve());
}

void ModulationControl::applyRingLink() {
    const float amount = ringLinkAmount;
    if (amount == 0) {
        ringFreqOut = ringFreq;
    } else {
        Ondra::ParameterProperty* p = row(kRingModFreq);
        const float n = static_cast<float>(p->toNormalized(ringFreq));
        const float moved = ModulationMath::linkTowardFilter(n, filterPosition(), amount);
        ringFreqOut = std::clamp(static_cast<float>(p->toValue(moved)), p->getMinimum(), p->getMaximum());
    }
    chain.ringMod.setFrequency(ringFreqOut);
    chain.ringMod.setMix(ringMix);
}

void ModulationControl::applyFreqModLink(bool atChange) {
    const float linkFreq = freqModLinkFreq;
    const float linkMix = freqModLinkMix;
    if (linkFreq == 0 && linkMix == 0) {
        if (!atChange) return;
        freqModFreqOut = freqModFreq;
        freqModMixOut = freqModMix;
    } else {
        const float position = filterPosition();
        Ondra::ParameterProperty* frequency = row(kFreqModFreq);
        const float n = static_cast<float>(frequency->toNormalized(freqModFreq));
        const float moved = ModulationMath::linkTowardFilter(n, position, linkFreq);
        freqModFreqOut = std::clamp(static_cast<float>(frequency->toValue(moved)) - 1.0f, 0.0f, 16000.0f);
        const float mix = ModulationMath::linkTowardFilter(freqModMix, position, linkMix);
        freqModMixOut = std::clamp(static_cast<float>(row(kFreqModStrength)->toValue(mix)), 0.0f, 1.0f);
    }
    chain.freqMod.setFrequency(freqModFreqOut);
    chain.freqMod.setDepth(freqModMixOut);
}

void ModulationControl::measureEnvelope(const DSP::StereoBuffer& gained, int n) {
    const float gain = envBoost * (measureBandOn ? kBandDetectorGain : kWideDetectorGain);
    const float maximum = measureBandOn ? bandPeakSquare(gained, gain, n) : peakSquare(gained, gain, n);
    const float x = ModulationMath::envelopeLevel(maximum);
    for (FilterControl* side : {&lowSide, &highSide}) {
        const float coefficient = x > side->env ? side->envAttack : side->envRelease;
        side->env += (x - side->env) * coefficient + 1e-19f;
        side->envOut = side->env;
    }
}

// The largest square of the gained samples, as maximum = max(maximum, max(l * l, r * r)) from 0:
// a NaN square never wins, and a NaN on the left also hides the right. Four samples at a time.
float ModulationControl::peakSquare(const DSP::StereoBuffer& gained, float gain, int n) const {
    const __m128 g = _mm_set1_ps(gain);
    __m128 peak = _mm_setzero_ps();
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 l = _mm_mul_ps(_mm_loadu_ps(gained.left + i), g);
        const __m128 r = _mm_mul_ps(_mm_loadu_ps(gained.right + i), g);
        const __m128 louder = _mm_max_ps(_mm_mul_ps(r, r), _mm_mul_ps(l, l));  // l² < r² ? r² : l²
        peak = _mm_max_ps(louder, peak);
    }
    float lanes[4];
    _mm_storeu_ps(lanes, peak);
    float maximum = 0;
    for (float lane : lanes) maximum = std::max(maximum, lane);
    for (; i < n; ++i) {
        const float l = gained.left[i] * gain;
        const float r = gained.right[i] * gain;
        maximum = std::max(maximum, std::max(l * l, r * r));
    }
    return maximum;
}

// The same through the measure band, both channels in the lanes of one section whose state
// stays in registers.
float ModulationControl::bandPeakSquare(const DSP::StereoBuffer& gained, float gain, int n) {
    const __m128d b0 = _mm_set1_pd(measureBand.b0), b1 = _mm_set1_pd(measureBand.b1);
    const __m128d b2 = _mm_set1_pd(measureBand.b2), a1 = _mm_set1_pd(measureBand.a1);
    const __m128d a2 = _mm_set1_pd(measureBand.a2), offset = _mm_set1_pd(1e-18);
    __m128d x1 = DSP::Lanes::pair(measureBand.x1L, measureBand.x1R);
    __m128d x2 = DSP::Lanes::pair(measureBand.x2L, measureBand.x2R);
    __m128d y1 = DSP::Lanes::pair(measureBand.y1L, measureBand.y1R);
    __m128d y2 = DSP::Lanes::pair(measureBand.y2L, measureBand.y2R);
    __m128 maximum = _mm_setzero_ps();
    for (int i = 0; i < n; ++i) {
        const __m128d in = DSP::Lanes::fromFloats(gained.left[i] * gain, gained.right[i] * gain);
        // As CPeakBiquad::tick: b0 x + 1e-18 + b1 x1 + b2 x2 - a1 y1 - a2 y2.
        __m128d y = _mm_add_pd(_mm_mul_pd(b0, in), offset);
        y = _mm_add_pd(y, _mm_mul_pd(b1, x1));
        y = _mm_add_pd(y, _mm_mul_pd(b2, x2));
        y = _mm_sub_pd(y, _mm_mul_pd(a1, y1));
        y = _mm_sub_pd(y, _mm_mul_pd(a2, y2));
        x2 = x1;
        x1 = in;
        y2 = y1;
        y1 = y;
        const __m128 out = DSP::Lanes::toFloats(y);
        const __m128 square = _mm_mul_ps(out, out);
        const __m128 louder = _mm_max_ss(_mm_shuffle_ps(square, square, 1), square);  // l² < r² ? r² : l²
        maximum = _mm_max_ss(louder, maximum);
    }
    measureBand.x1L = DSP::Lanes::left(x1);
    measureBand.x1R = DSP::Lanes::right(x1);
    measureBand.x2L = DSP::Lanes::left(x2);
    measureBand.x2R = DSP::Lanes::right(x2);
    measureBand.y1L = DSP::Lanes::left(y1);
    measureBand.y1R = DSP::Lanes::right(y1);
    measureBand.y2L = DSP::Lanes::left(y2);
    measureBand.y2R = DSP::Lanes::right(y2);
    return _mm_cvtss_f32(maximum);
}

void ModulationControl::stepLfo(const Ondra::OndraAudioBlock& audio, int n) {
    const float tempo = bpmOverride >= kLowestOwnTempo ? static_cast<float>(bpmOverride) : audio.tempo;
    if (audio.transportPlaying && lfoSyncOn) {
        if (!lfoSyncRunning || lfoResync) lfoCounter = -1;
        lfoSyncRunning = true;
        // A host tempo of 0 gives no period: no restart then, the LFO runs on.
        const int period = ModulationMath::syncPeriodSamples(syncIndex, tempo, sampleRate);
        if (period > 0 && (lfoCounter < 0 || std::fabs(audio.samplePos - lfoLastPos) > period)) {
            lfoLastPos = audio.samplePos;
            const long long position = static_cast<long long>(audio.samplePos);
            lfoCounter = static_cast<int>((period - ((position % period) + period) % period) % period);
        }
        lfoResync = false;
    } else {
        lfoSyncRunning = false;
    }
    if (tempo != lfoTempo && tempo > 0) {
        lfoTempo = tempo;
        lfo.setTempo(tempo);
    }
    // The counter restarts the LFO at the sample where it reads 0, then rests at -1.
    double sum = 0;
    int start = 0;
    if (lfoCounter >= 0 && lfoCounter < n) {
        sum = lfo.accumulate(sum, lfoCounter);
        lfo.restart();
        lastRestart = audio.samplePos + lfoCounter;
        start = lfoCounter;
        lfoCounter = -1;
    } else if (lfoCounter >= n) {
        lfoCounter -= n;
    }
    sum = lfo.accumulate(sum, n - start);
    lfoMeanValue = n > 0 ? static_cast<float>(sum / n) : 0.0f;
}

void ModulationControl::moveCutoff(FilterControl& side, Ondra::IPluginParameter* cutoffRow, int slopeDb,
                                   DSP::CSlopeFilter& left, DSP::CSlopeFilter& right, DSP::CPeakBiquad& resonanceStage) {
    const float amount = side.envAmount * ModulationMath::envelopeReachScale(side.cutoffParam);
    const float x = std::clamp(cutoffRow->getNormalized() + side.envOut * amount, 0.0f, 1.0f);
    const float y = static_cast<float>(cutoffRow->toValue(x));
    side.target = y;
    side.modulated = std::clamp(ModulationMath::applyLfo(y, lfoMeanValue, side.lfoAmount), 0.0f, 22050.0f);

    if (std::fabs(side.modulated - side.cutoff) > kCutoffRestHz) {
        side.cutoff = ModulationMath::glideStep(side.cutoff, side.modulated, slopeDb, inertia);
        left.setCutoff(side.cutoff);
        right.setCutoff(side.cutoff);
        resonanceStage.storeFrequency(std::min(side.cutoff, kHighestResonanceHz));  // designed below
    }
    side.resonance += (side.resonanceParam - side.resonance) * kResonanceGlide + 1e-19f;
    const ModulationMath::ResonanceShape shape =
        ModulationMath::resonanceShape(side.resonance, side.modulated, side.widthParam);
    resonanceStage.gainDb = shape.gainDb;
    resonanceStage.q = shape.bandwidth;
    resonanceStage.update();
}

void ModulationControl::step() {
    moveCutoff(lowSide, row(kLowPassFreq), chain.lowSlopeInForce(), chain.lowPassL, chain.lowPassR,
               chain.resonanceLow);
    moveCutoff(highSide, row(kHighPassFreq), chain.highSlopeInForce(), chain.highPassL, chain.highPassR,
               chain.resonanceHigh);
    if (rateLinkOn) applyRateLink();
    applyRingLink();
    applyFreqModLink(false);
}
