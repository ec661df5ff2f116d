#include <algorithm>
#include <cmath>

#include "effect/CZonfra.h"
#include "framework/plugin/FloatingPointGuard.h"

namespace {
constexpr int kSlopeTable[5] = {1, 12, 24, 48, 96};

int slopeFromRow(int value) { return kSlopeTable[std::clamp(value, 0, 4)]; }
}  // namespace

void CZonfra::parameterChanged(Ondra::IPluginParameter* parameter) {
    Ondra::FloatingPointGuard guard;
    onParameterChanged(parameter);
}

void CZonfra::onParameterChanged(Ondra::IPluginParameter* parameter) {
    if (!parameter) return;
    auto* property = static_cast<Ondra::ParameterProperty*>(parameter);
    const float v = parameter->getValue();
    switch (property->getId()) {
        case kInputGain: inputGain.setGain(v); break;
        case kLowPassFreq: lowCutoffParam = v; break;
        case kLowPassQ: lowResonanceParam = v; break;
        case kLowPassQWidth: lowWidthParam = v; break;
        case kLowPassSlope: lowSlopeDb = slopeFromRow(parameter->getInt()); break;
        case kHighPassFreq: highCutoffParam = v; break;
        case kHighPassQ: highResonanceParam = v; break;
        case kHighPassQWidth: highWidthParam = v; break;
        case kHighPassSlope: highSlopeDb = slopeFromRow(parameter->getInt()); break;
        case kOutputGain: outputGain.setGain(v); break;
        case kFilterMode: filterMode = parameter->getInt() == 1 ? 1 : 0; break;
        case kDistLevel: distortion.setDrive(v); break;
        case kDistPrePost: distortionPost = parameter->getBool(); break;
        case kRatePrePost: rateReductionPost = parameter->getBool(); break;
        case kLimitRelease: limiter.setParam(3, v); break;
        case kLimiterBypass:
            limiterOn = parameter->getBool();
            limiter.setParam(5, parameter->getBool() ? 0.0f : 1.0f);
            break;
        case kLimiterOutGain: limiter.setParam(4, std::pow(10.0f, v * 0.05f)); break;
        case kDryWetMix: mixTarget = v; break;
        case kBypass: setBypass(parameter->getBool()); break;
        case kGlobalLimiterId: globalLimiterOn = parameter->getBool(); break;
        default: break;
    }
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
    const int low = lowSlopeDb;
    if (modeChanged || low != appliedLowSlopeDb) {
        appliedLowSlopeDb = low;
        lowPassL.setSlope(low);
        lowPassR.setSlope(low);
        lowPassL.reset();
        lowPassR.reset();
    }
    const int high = highSlopeDb;
    if (modeChanged || high != appliedHighSlopeDb) {
        appliedHighSlopeDb = high;
        highPassL.setSlope(high);
        highPassR.setSlope(high);
        highPassL.reset();
        highPassR.reset();
    }
}

void CZonfra::controlStep() {
    lowTarget = lowModulated = std::clamp(static_cast<float>(lowCutoffParam), 0.0f, 22050.0f);
    highTarget = highModulated = std::clamp(static_cast<float>(highCutoffParam), 0.0f, 22050.0f);
    if (std::fabs(lowModulated - lowCutoff) > 1.0f) {
        lowCutoff = lowModulated;
        lowPassL.setCutoff(lowCutoff);
        lowPassR.setCutoff(lowCutoff);
        resonanceLow.setFrequency(std::min(lowCutoff, 18000.0f));
    }
    if (std::fabs(highModulated - highCutoff) > 1.0f) {
        highCutoff = highModulated;
        highPassL.setCutoff(highCutoff);
        highPassR.setCutoff(highCutoff);
        resonanceHigh.setFrequency(std::min(highCutoff, 18000.0f));
    }
}
