#include <algorithm>
#include <cmath>
#include <utility>

#include "dsp/filters/StereoStage.h"
#include "effect/CZonfra.h"
#include "effect/ModulationMath.h"
#include "framework/parameters/ParameterCurve.h"
#include "framework/plugin/FloatingPointGuard.h"

namespace {
constexpr int kSlopeTable[5] = {1, 12, 24, 48, 96};

int slopeFromRow(int value) { return kSlopeTable[std::clamp(value, 0, 4)]; }

// Row 21 holds 0..5; the last shape is the generator's square, code 7.
int lfoShapeCode(int value) { return value == 5 ? 7 : std::clamp(value, 0, 4); }
}  // namespace

void CZonfra::parameterChanged(Ondra::IPluginParameter* parameter) {
    Ondra::FloatingPointGuard guard;
    onParameterChanged(parameter);
}

void CZonfra::onParameterChanged(Ondra::IPluginParameter* parameter) {
    if (!parameter) return;
    using ModulationMath::attackCoefficient;
    using ModulationMath::releaseCoefficient;
    const float v = parameter->getValue();
    switch (static_cast<Ondra::ParameterProperty*>(parameter)->getId()) {
        case kInputGain: inputGain.setGain(v); break;
        case kLowPassFreq:
            low.cutoffParam = v;
            linkCutoff(kHighPassFreq, v / linkRatio);
            applyRateLink();
            break;
        case kLowPassQ: low.resonanceParam = v; break;
        case kLowPassQWidth: low.widthParam = v; break;
        case kLowPassSlope: low.slopeDb = slopeFromRow(parameter->getInt()); break;
        case kHighPassFreq:
            high.cutoffParam = v;
            linkCutoff(kLowPassFreq, linkRatio * v);
            break;
        case kHighPassQ: high.resonanceParam = v; break;
        case kHighPassQWidth: high.widthParam = v; break;
        case kHighPassSlope: high.slopeDb = slopeFromRow(parameter->getInt()); break;
        case kOutputGain: outputGain.setGain(v); break;
        case kLinkFilters:
            linkFilters = parameter->getBool();
            linkRatio = low.cutoffParam / high.cutoffParam;
            break;
        case kFilterMode: changeFilterMode(parameter->getInt()); break;
        case kLpAttack: low.envAttack = attackCoefficient(v); break;
        case kLpRelease: low.envRelease = releaseCoefficient(v); break;
        case kLpStrength: low.envAmount = v; break;
        case kHpAttack: high.envAttack = attackCoefficient(v); break;
        case kHpRelease: high.envRelease = releaseCoefficient(v); break;
        case kHpStrength: high.envAmount = v; break;
        case kMeasurePoint:
            measureBandFrequency = v;
            measureBandOn = v > 100.0f;
            break;
        case kEnvBoost: envBoost = std::pow(10.0f, v * 0.05f); break;
        case kLfoSync:
        case kLfoRate: {
            if (!row(kLfoSync)) break;  // still building: the sync row reports next
            lfoSyncOn = row(kLfoSync)->getBool();
            if (!lfoSyncOn) {
                lfoSyncIndex = 0;
                lfo.setSyncIndex(0);
                lfo.setRate(row(kLfoRate)->getValue());
            } else {
                lfoSyncIndex = lfoSyncIndexFromNormalized(row(kLfoRate)->getNormalized());
                lfo.setSyncIndex(lfoSyncIndex);
            }
            lfoResync = true;
            break;
        }
        case kLfoShape:
            lfo.setShape(lfoShapeCode(parameter->getInt()));
            lfoResync = true;
            break;
        case kLpStrengthLfo: low.lfoAmount = v; break;
        case kHpStrengthLfo: high.lfoAmount = v; break;
        case kLfoBpm: bpmOverride = parameter->getInt(); break;
        case kLfoShift:
            lfo.setShift(v);
            lfoResync = true;
            break;
        case kDistLevel: distortion.setDrive(v); break;
        case kDistPrePost: distortionPost = parameter->getBool(); break;
        case kRatePrePost: rateReductionPost = parameter->getBool(); break;
        case kRateReduceLevel:
            rateParam = v;
            applyRateLink();
            break;
        case kRateLpLink:
            rateLinkOn = parameter->getBool();
            if (!rateLinkOn && !stateLoading) row(kRateReduceLevel)->setValue(rateParam);
            break;
        case kRateLinkAmount:
            rateAmount = std::fabs(v);
            rateFlip = v < 0;
            applyRateLink();
            break;
        case kRateFlip:
            rateFlip = parameter->getBool();
            applyRateLink();
            break;
        case kLimitRelease: limiter.setParam(3, v); break;
        case kLimiterBypass:
            limiterOn = parameter->getBool();
            limiter.setParam(5, parameter->getBool() ? 0.0f : 1.0f);
            break;
        case kLimiterOutGain: limiter.setParam(4, std::pow(10.0f, v * 0.05f)); break;
        case kRingModFreq:
            ringFreq = v;
            applyRingLink();
            break;
        case kRingModStrength:
            ringMix = v;
            applyRingLink();
            break;
        case kRingModLinkFreqPercent:
            ringLinkAmount = v;
            applyRingLink();
            break;
        case kDryWetMix: mixTarget = v; break;
        case kBypass: setBypass(parameter->getBool()); break;
        case kFreqModFreq: freqModFreq = v; applyFreqModLink(true); break;
        case kFreqModStrength: freqModMix = v; applyFreqModLink(true); break;
        case kFreqModLinkFreqPercent: freqModLinkFreq = v; applyFreqModLink(true); break;
        case kFreqModLinkMixPercent: freqModLinkMix = v; applyFreqModLink(true); break;
        case kFilterInertia: inertia = ModulationMath::inertiaFromRow(v); break;
        case kGlobalLimiterId: globalLimiterOn = parameter->getBool(); break;
        default: break;  // rows 39 and 45 act only after a state load
    }
}

// With the link on, moving one cutoff moves the other by the stored ratio, and not back.
void CZonfra::linkCutoff(int otherRow, float value) {
    if (!linkFilters || linkRecursion || stateLoading) return;
    linkRecursion = true;
    row(otherRow)->setValue(value);
    linkRecursion = false;
}

void CZonfra::changeFilterMode(int value) {
    const int mode = value == 1 ? 1 : 0;
    const bool changed = mode != filterMode;
    filterMode = mode;  // the filters follow on the audio thread
    if (changed && !stateLoading) {
        // What was the band's low-pass becomes the notch's high-pass, and back.
        linkRecursion = true;
        for (auto [a, b] : {std::pair{kLowPassFreq, kHighPassFreq}, std::pair{kLowPassQ, kHighPassQ},
                            std::pair{kLowPassQWidth, kHighPassQWidth}, std::pair{kLowPassSlope, kHighPassSlope}}) {
            const float first = row(a)->getValue();
            row(a)->setValue(row(b)->getValue());
            row(b)->setValue(first);
        }
        linkRecursion = false;
    }
    linkRatio = low.cutoffParam / high.cutoffParam;
    resetRequested = true;
}

void CZonfra::applyRateLink() {
    float c = rateParam;
    if (rateLinkOn && !stateLoading) c = ModulationMath::rateLinkControl(low.modulated, rateAmount, rateFlip);
    rateReducer.setBits(c * 0.7f + 0.3f);
    rateReducer.setRate(c);
}

float CZonfra::filterPosition() {
    Ondra::ParameterProperty* p = row(kLowPassFreq);
    return Ondra::shape((low.cutoff - p->getMinimum()) / (p->getMaximum() - p->getMinimum()), -p->getCurve());
}

void CZonfra::applyRingLink() {
    const float amount = ringLinkAmount;
    if (amount == 0) {
        ringFreqOut = ringFreq;
    } else {
        Ondra::ParameterProperty* p = row(kRingModFreq);
        const float n = static_cast<float>(p->toNormalized(ringFreq));
        const float moved = ModulationMath::linkTowardFilter(n, filterPosition(), amount);
        ringFreqOut = std::clamp(static_cast<float>(p->toValue(moved)), p->getMinimum(), p->getMaximum());
    }
    ringMod.setParam(0, ringFreqOut);
    ringMod.setParam(1, ringMix);
}

void CZonfra::applyFreqModLink(bool atChange) {
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
    freqMod.setParam(2, freqModFreqOut);
    freqMod.setParam(3, freqModMixOut);
}

// Structural filter changes run where the filters run, never beside a block in progress.
void CZonfra::applyFilterSettings() {
    const int mode = filterMode;
    const bool modeChanged = mode != appliedFilterMode;
    if (modeChanged) {
        appliedFilterMode = mode;
        for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR})
            f->mode = static_cast<unsigned>(mode);
    }
    const std::pair<FilterSide*, std::pair<DSP::CSlopeFilter*, DSP::CSlopeFilter*>> sides[2] = {
        {&low, {&lowPassL, &lowPassR}}, {&high, {&highPassL, &highPassR}}};
    for (const auto& [side, filters] : sides) {
        const int slope = side->slopeDb;
        if (!modeChanged && slope == side->appliedSlopeDb) continue;
        side->appliedSlopeDb = slope;
        filters.first->setSlope(slope);
        filters.second->setSlope(slope);
        filters.first->reset();
        filters.second->reset();
    }
    const float band = measureBandFrequency;
    if (band != appliedMeasureBandFrequency) {
        appliedMeasureBandFrequency = band;
        measureBand.setFrequency(band);
    }
}

void CZonfra::measureEnvelope(int n) {
    const float gain = envBoost * (measureBandOn ? 3.548134f : 0.39810717f);
    const float maximum = measureBandOn ? bandPeakSquare(gain, n) : peakSquare(gain, n);
    const float x = ModulationMath::envelopeLevel(maximum);
    for (FilterSide* side : {&low, &high}) {
        const float coefficient = x > side->env ? side->envAttack : side->envRelease;
        side->env += (x - side->env) * coefficient + 1e-19f;
        side->envOut = side->env;
    }
}

// The largest square of the gained samples, as maximum = max(maximum, max(l * l, r * r)) from 0:
// a NaN square never wins, and a NaN on the left also hides the right. Four samples at a time.
float CZonfra::peakSquare(float gain, int n) const {
    const __m128 g = _mm_set1_ps(gain);
    __m128 peak = _mm_setzero_ps();
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 l = _mm_mul_ps(_mm_loadu_ps(workBuffer.left + i), g);
        const __m128 r = _mm_mul_ps(_mm_loadu_ps(workBuffer.right + i), g);
        const __m128 louder = _mm_max_ps(_mm_mul_ps(r, r), _mm_mul_ps(l, l));  // l² < r² ? r² : l²
        peak = _mm_max_ps(louder, peak);
    }
    float lanes[4];
    _mm_storeu_ps(lanes, peak);
    float maximum = 0;
    for (float lane : lanes) maximum = std::max(maximum, lane);
    for (; i < n; ++i) {
        const float l = workBuffer.left[i] * gain;
        const float r = workBuffer.right[i] * gain;
        maximum = std::max(maximum, std::max(l * l, r * r));
    }
    return maximum;
}

// The same through the measure band, both channels in the lanes of one section whose state
// stays in registers.
float CZonfra::bandPeakSquare(float gain, int n) {
    const __m128d b0 = _mm_set1_pd(measureBand.b0), b1 = _mm_set1_pd(measureBand.b1);
    const __m128d b2 = _mm_set1_pd(measureBand.b2), a1 = _mm_set1_pd(measureBand.a1);
    const __m128d a2 = _mm_set1_pd(measureBand.a2), offset = _mm_set1_pd(1e-18);
    __m128d x1 = DSP::Lanes::pair(measureBand.x1L, measureBand.x1R);
    __m128d x2 = DSP::Lanes::pair(measureBand.x2L, measureBand.x2R);
    __m128d y1 = DSP::Lanes::pair(measureBand.y1L, measureBand.y1R);
    __m128d y2 = DSP::Lanes::pair(measureBand.y2L, measureBand.y2R);
    __m128 maximum = _mm_setzero_ps();
    for (int i = 0; i < n; ++i) {
        const __m128d in = DSP::Lanes::fromFloats(workBuffer.left[i] * gain, workBuffer.right[i] * gain);
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

void CZonfra::stepLfo(const Ondra::OndraAudioBlock& audio, int n) {
    const float tempo = bpmOverride >= 30 ? static_cast<float>(bpmOverride) : audio.tempo;
    if (audio.transportPlaying && lfoSyncOn) {
        if (!lfoSyncRunning || lfoResync) lfoCounter = -1;
        lfoSyncRunning = true;
        // A host tempo of 0 gives no period: no restart then, the LFO runs on.
        const int period = ModulationMath::syncPeriodSamples(lfoSyncIndex, tempo, sampleRate);
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
        lastLfoRestart = audio.samplePos + lfoCounter;
        start = lfoCounter;
        lfoCounter = -1;
    } else if (lfoCounter >= n) {
        lfoCounter -= n;
    }
    sum = lfo.accumulate(sum, n - start);
    lfoMean = n > 0 ? static_cast<float>(sum / n) : 0.0f;
}

void CZonfra::moveCutoff(FilterSide& side, Ondra::IPluginParameter* rowParameter, DSP::CSlopeFilter& left,
                         DSP::CSlopeFilter& right, DSP::CPeakBiquad& resonanceStage) {
    const float amount = side.envAmount * ModulationMath::envelopeReachScale(side.cutoffParam);
    const float x = std::clamp(rowParameter->getNormalized() + side.envOut * amount, 0.0f, 1.0f);
    const float y = static_cast<float>(rowParameter->toValue(x));
    side.target = y;
    side.modulated = std::clamp(ModulationMath::applyLfo(y, lfoMean, side.lfoAmount), 0.0f, 22050.0f);

    if (std::fabs(side.modulated - side.cutoff) > 1.0f) {
        side.cutoff = ModulationMath::glideStep(side.cutoff, side.modulated, side.appliedSlopeDb, inertia);
        left.setCutoff(side.cutoff);
        right.setCutoff(side.cutoff);
        resonanceStage.storeFrequency(std::min(side.cutoff, 18000.0f));  // designed below
    }
    side.resonance += (side.resonanceParam - side.resonance) * 0.105f + 1e-19f;
    const ModulationMath::ResonanceShape shape =
        ModulationMath::resonanceShape(side.resonance, side.modulated, side.widthParam);
    resonanceStage.gainDb = shape.gainDb;
    resonanceStage.q = shape.bandwidth;
    resonanceStage.update();
}

void CZonfra::controlStep() {
    moveCutoff(low, row(kLowPassFreq), lowPassL, lowPassR, resonanceLow);
    moveCutoff(high, row(kHighPassFreq), highPassL, highPassR, resonanceHigh);
    if (rateLinkOn) applyRateLink();
    applyRingLink();
    applyFreqModLink(false);
}
