// The switch that turns each parameter change into control fields and stage settings.
#include <algorithm>
#include <cmath>
#include <utility>

#include "effect/ModulationControl.h"
#include "effect/ModulationMath.h"
#include "effect/ZonfraParameters.h"

namespace {
constexpr int kSlopeTable[5] = {1, 12, 24, 48, 96};

int slopeFromRow(int value) { return kSlopeTable[std::clamp(value, 0, 4)]; }

// The shape parameter holds 0..5: the generator's first five shapes, then its square.
int lfoShapeCode(int value) { return value == 5 ? DSP::CLfoGenerator::kSquare : std::clamp(value, 0, 4); }

// The measure band takes part above this frequency; below it the detector hears the whole band.
constexpr float kMeasureBandFloorHz = 100.0f;

float decibelsToGain(float db) { return std::pow(10.0f, db * 0.05f); }
}  // namespace

void ModulationControl::parameterChanged(Ondra::IPluginParameter& parameter) {
    using ModulationMath::attackCoefficient;
    using ModulationMath::releaseCoefficient;
    const float v = parameter.getValue();
    switch (static_cast<Ondra::ParameterProperty&>(parameter).getId()) {
        case kInputGain: chain.inputGain.setGain(v); break;
        case kLowPassFreq:
            lowSide.cutoffParam = v;
            linkCutoff(kHighPassFreq, v / linkRatio);
            applyRateLink();
            break;
        case kLowPassQ: lowSide.resonanceParam = v; break;
        case kLowPassQWidth: lowSide.widthParam = v; break;
        case kLowPassSlope: chain.setLowSlope(slopeFromRow(parameter.getInt())); break;
        case kHighPassFreq:
            highSide.cutoffParam = v;
            linkCutoff(kLowPassFreq, linkRatio * v);
            break;
        case kHighPassQ: highSide.resonanceParam = v; break;
        case kHighPassQWidth: highSide.widthParam = v; break;
        case kHighPassSlope: chain.setHighSlope(slopeFromRow(parameter.getInt())); break;
        case kOutputGain: chain.outputGain.setGain(v); break;
        case kLinkFilters:
            linkFilters = parameter.getBool();
            linkRatio = lowSide.cutoffParam / highSide.cutoffParam;
            break;
        case kFilterMode: changeFilterMode(parameter.getInt()); break;
        case kLpAttack: lowSide.envAttack = attackCoefficient(v); break;
        case kLpRelease: lowSide.envRelease = releaseCoefficient(v); break;
        case kLpStrength: lowSide.envAmount = v; break;
        case kHpAttack: highSide.envAttack = attackCoefficient(v); break;
        case kHpRelease: highSide.envRelease = releaseCoefficient(v); break;
        case kHpStrength: highSide.envAmount = v; break;
        case kMeasurePoint:
            measureBandFrequency = v;
            measureBandOn = v > kMeasureBandFloorHz;
            break;
        case kEnvBoost: envBoost = decibelsToGain(v); break;
        case kLfoSync:
        case kLfoRate: changeLfoRate(); break;
        case kLfoShape:
            lfo.setShape(lfoShapeCode(parameter.getInt()));
            lfoResync = true;
            break;
        case kLpStrengthLfo: lowSide.lfoAmount = v; break;
        case kHpStrengthLfo: highSide.lfoAmount = v; break;
        case kLfoBpm: bpmOverride = parameter.getInt(); break;
        case kLfoShift:
            lfo.setShift(v);
            lfoResync = true;
            break;
        case kDistLevel: chain.distortion.setDrive(v); break;
        case kDistPrePost: chain.setDistortionAfterFilters(parameter.getBool()); break;
        case kRatePrePost: chain.setReductionAfterFilters(parameter.getBool()); break;
        case kRateReduceLevel:
            rateParam = v;
            applyRateLink();
            break;
        case kRateLpLink:
            rateLinkOn = parameter.getBool();
            if (!rateLinkOn && !stateLoading) row(kRateReduceLevel)->setValue(rateParam);
            break;
        case kRateLinkAmount:
            rateAmount = std::fabs(v);
            rateFlip = v < 0;
            applyRateLink();
            break;
        case kRateFlip:
            rateFlip = parameter.getBool();
            applyRateLink();
            break;
        case kLimitRelease: chain.limiter.setReleaseMs(v); break;
        case kLimiterBypass: chain.setLimiterOn(parameter.getBool()); break;
        case kLimiterOutGain: chain.limiter.setOutputGain(decibelsToGain(v)); break;
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
        case kDryWetMix: chain.setMixTarget(v); break;
        case kFreqModFreq: freqModFreq = v; applyFreqModLink(true); break;
        case kFreqModStrength: freqModMix = v; applyFreqModLink(true); break;
        case kFreqModLinkFreqPercent: freqModLinkFreq = v; applyFreqModLink(true); break;
        case kFreqModLinkMixPercent: freqModLinkMix = v; applyFreqModLink(true); break;
        case kFilterInertia: inertia = ModulationMath::inertiaFromRow(v); break;
        case kGlobalLimiterId: chain.setGlobalLimiterOn(parameter.getBool()); break;
        default: break;  // the two link switches act only after a state load
    }
}

// Rate and sync switch together decide between a free rate in hertz and a note length.
void ModulationControl::changeLfoRate() {
    if (!row(kLfoSync)) return;  // still building: the sync row reports next
    lfoSyncOn = row(kLfoSync)->getBool();
    if (!lfoSyncOn) {
        syncIndex = 0;
        lfo.setSyncIndex(0);
        lfo.setRate(row(kLfoRate)->getValue());
    } else {
        syncIndex = lfoSyncIndexFromNormalized(row(kLfoRate)->getNormalized());
        lfo.setSyncIndex(syncIndex);
    }
    lfoResync = true;
}

// With the link on, moving one cutoff moves the other by the stored ratio, and not back.
void ModulationControl::linkCutoff(int otherRow, float value) {
    if (!linkFilters || linkRecursion || stateLoading) return;
    linkRecursion = true;
    row(otherRow)->setValue(value);
    linkRecursion = false;
}

void ModulationControl::changeFilterMode(int value) {
    const int mode = value == 1 ? 1 : 0;
    const bool changed = mode != chain.askedFilterMode();
    chain.setFilterMode(mode);  // the filters follow on the audio thread
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
    linkRatio = lowSide.cutoffParam / highSide.cutoffParam;
    resetRequested = true;
}
