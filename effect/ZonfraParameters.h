#pragma once
#include "framework/parameters/ParameterProperty.h"

// Ids of the effect's parameters: the order of the table, fixed because hosts and state use it.
enum ZonfraParameterId : int {
    kInputGain = 0,
    kLowPassFreq,
    kLowPassQ,
    kLowPassQWidth,
    kLowPassSlope,
    kHighPassFreq,
    kHighPassQ,
    kHighPassQWidth,
    kHighPassSlope,
    kOutputGain,
    kLinkFilters,
    kFilterMode,
    kLpAttack,
    kLpRelease,
    kLpStrength,
    kHpAttack,
    kHpRelease,
    kHpStrength,
    kMeasurePoint,
    kEnvBoost,
    kLfoRate,
    kLfoShape,
    kLfoSync,
    kLpStrengthLfo,
    kHpStrengthLfo,
    kLfoBpm,
    kLfoShift,
    kDistLevel,
    kDistPrePost,
    kRateReduceLevel,
    kRateLpLink,
    kRateLinkAmount,
    kRatePrePost,
    kRateFlip,
    kLimitRelease,
    kLimiterBypass,
    kLimiterOutGain,
    kRingModFreq,
    kRingModStrength,
    kRingModLinkFreq,
    kRingModLinkFreqPercent,
    kDryWetMix,
    kBypass,
    kFreqModFreq,
    kFreqModStrength,
    kFreqModLinkFreq,
    kFreqModLinkFreqPercent,
    kFreqModLinkMixPercent,
    kFilterInertia,
    kZonfraParameterCount
};

constexpr int kGlobalLimiterId = 1000;
constexpr const char* kManagerTag = "MMK zonfra";

// One table row: the record plus the formatter that replaces the unit type's text, if any.
struct ZonfraParameterRow {
    Ondra::ParameterRecord record;
    Ondra::FormatValueFunction formatValue;
    Ondra::FormatParameterFunction formatParameter;
};

const ZonfraParameterRow& zonfraParameterRow(int id);

// The sync texts of the LFO rate, index 1 to 24.
const char* lfoSyncText(int index);
int lfoSyncIndexFromNormalized(float normalized);

void formatGlobalLimiter(float value, char* out, bool withUnit);
