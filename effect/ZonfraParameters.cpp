#include "effect/ZonfraParameters.h"

#include <cmath>
#include <cstdio>

using Ondra::IPluginParameter;
using Ondra::kParameterTextSize;

namespace {

void formatFilterMode(float v, char* out, bool) { std::snprintf(out, kParameterTextSize, "%s", v == 0 ? "Bandpass" : "Notch"); }

void formatMeasurePoint(float v, char* out, bool withUnit) {
    if (v <= 100)
        std::snprintf(out, kParameterTextSize, "All");
    else if (v < 1000)
        std::snprintf(out, kParameterTextSize, withUnit ? "%.2fHz" : "%.2f", static_cast<double>(v));
    else
        std::snprintf(out, kParameterTextSize, withUnit ? "%.2fkHz" : "%.2fk", static_cast<double>(v) / 1000.0);
}

void formatLfoRate(IPluginParameter* parameter, float v, char* out, bool withUnit, IPluginParameter* linked) {
    if (!linked) {
        std::snprintf(out, kParameterTextSize, "Error");
        return;
    }
    if (linked->getBool()) {
        const int index = lfoSyncIndexFromNormalized(static_cast<float>(parameter->toNormalized(v)));
        std::snprintf(out, kParameterTextSize, "%s", lfoSyncText(index));
        return;
    }
    std::snprintf(out, kParameterTextSize, v < 1 ? "%0.3f%s" : "%.2f%s", static_cast<double>(v), withUnit ? "Hz" : "");
}

void formatLfoShape(float v, char* out, bool) {
    static const char* const names[6] = {"Sine", "Triangle", "Saw", "Dbl Sine", "Mod. Sine", "Square"};
    const int shape = static_cast<int>(v + 0.1f);
    std::snprintf(out, kParameterTextSize, "%s", shape >= 0 && shape < 6 ? names[shape] : "");
}

// Read as the effect reads it (ParameterProperty::getInt), so that the text names the tempo in force.
void formatBpm(float v, char* out, bool) {
    const int bpm = static_cast<int>(v + 0.02f);
    if (bpm < 30)
        std::snprintf(out, kParameterTextSize, "Host");
    else
        std::snprintf(out, kParameterTextSize, "%i", bpm);
}

void formatPrePost(float v, char* out, bool) {
    std::snprintf(out, kParameterTextSize, "%s", v == 0 ? "pre Filter" : "post Filter");
}

void formatRelease(float v, char* out, bool withUnit) {
    if (v <= 1)
        std::snprintf(out, kParameterTextSize, "Auto");
    else
        std::snprintf(out, kParameterTextSize, withUnit ? "%i ms" : " %i", static_cast<int>(std::floor(v + 0.1f)));
}

void formatLinkAmount(IPluginParameter* parameter, float v, char* out, bool, IPluginParameter*) {
    const double d = v;
    const float minimum = parameter->getMinimum();
    if (v == 0)
        std::snprintf(out, kParameterTextSize, "Off");
    else if (v < 0)
        std::snprintf(out, kParameterTextSize, "-%.2f%%", d / minimum * 100.0);
    else
        std::snprintf(out, kParameterTextSize, minimum >= 0 ? "%.2f%%" : "+%.2f%%", d / parameter->getMaximum() * 100.0);
}

using Ondra::FormatParameterFunction;
using Ondra::FormatValueFunction;
constexpr FormatValueFunction kNoValue = nullptr;
constexpr FormatParameterFunction kNoParameter = nullptr;

// key, name, automation name, min, max, initial, default, automatable, curve, unit type, id
const ZonfraParameterRow kRows[kZonfraParameterCount] = {
    {{"INPUTGAIN", "Input Gain", "Input Gain", 0, 2, 1, 1, true, 0, 3, 0}, kNoValue, kNoParameter},
    {{"LOWPASSFREQ", "LowPass Frequency", "LowPass.Freq.", 40, 22050, 22050, 22050, true, 30, 5, 1}, kNoValue, kNoParameter},
    {{"LOWPASSQ", "LowPass Resonance", "LowPass.Res.", 0, 1, 0, 0, true, 0, 1, 2}, kNoValue, kNoParameter},
    {{"LOWPASSQWIDTH", "LowPass Res.Width", "LowPass.Res.Width", 0.54f, 1.5f, 1, 1, true, 0, 1, 3}, kNoValue, kNoParameter},
    {{"LOWPASSSLOPE", "LowPass Slope", "LowPass.Slope", 1, 4, 2, 2, true, 0, 13, 4}, kNoValue, kNoParameter},
    {{"HIGHPASSFREQ", "HighPass Frequency", "HighPass.Freq.", 0.001f, 22050, 0, 0.001f, true, 25, 5, 5}, kNoValue, kNoParameter},
    {{"HIGHPASSQ", "HighPass Resonance", "HighPass.Res.", 0, 1, 0, 0, true, 0, 1, 6}, kNoValue, kNoParameter},
    {{"HIGHPASSQWIDTH", "HighPass Res.Width", "HighPass.Res. Width", 0.54f, 1.5f, 1, 1, true, 0, 1, 7}, kNoValue, kNoParameter},
    {{"HIGHPASSSLOPE", "HighPass Slope", "HighPass.Slope", 1, 4, 2, 2, true, 0, 13, 8}, kNoValue, kNoParameter},
    {{"OUTPUTGAIN", "Output Gain", "Output Gain", 0, 2, 1, 1, true, 0, 3, 9}, kNoValue, kNoParameter},
    {{"LINKFILTERS", "Link Filters", "Link Filters", 0, 1, 0, 0, true, 0, 8, 10}, kNoValue, kNoParameter},
    {{"FILTERMODE", "Filter Mode", "Filter Mode", 0, 1, 0, 0, true, 0, 8, 11}, formatFilterMode, kNoParameter},
    {{"LP Attack", "LP Atk", "Env.LP Attack", 1, 1000, 5, 50, true, 18, 0, 12}, kNoValue, kNoParameter},
    {{"LP Release", "LP Rls", "Env.LP Release", 10, 1000, 5, 50, true, 18, 0, 13}, kNoValue, kNoParameter},
    {{"LP Strength", "LP Str", "Env.LP Strength", -1, 1, 0, 0, true, 0, 1, 14}, kNoValue, kNoParameter},
    {{"HP Attack", "HP Atk", "Env.HP Attack", 1, 1000, 50, 50, true, 18, 0, 15}, kNoValue, kNoParameter},
    {{"HP Release", "HP Rls", "Env.HP Release", 10, 1000, 100, 50, true, 18, 0, 16}, kNoValue, kNoParameter},
    {{"HP Strength", "HP Str", "Env.HP Strength", -1, 1, 0, 0, true, 0, 1, 17}, kNoValue, kNoParameter},
    {{"MEASUREPOINT", "Area", "Env.Measure Point", 100, 16000, 4000, 4000, true, 30, 5, 18}, formatMeasurePoint, kNoParameter},
    {{"ENV_BOOST", "Boost", "Env.Envelope Boost", -12, 12, 1, 1, true, 0, 4, 19}, kNoValue, kNoParameter},
    {{"LFO Rate", "Speed", "LFO.Rate", 0, 10, 0.15f, 0.15f, true, 10, 5, 20}, kNoValue, formatLfoRate},
    {{"LFO Shape", "Shape", "LFO.Shape", 0, 5, 0, 0, true, 0, 13, 21}, formatLfoShape, kNoParameter},
    {{"LFO Sync", "Sync", "LFO.Sync", 0, 1, 1, 1, true, 0, 8, 22}, kNoValue, kNoParameter},
    {{"LP StrengthLFO", "LP Str.", "LFO.LP Strength", -3, 3, 0, 0, true, 0, 1, 23}, kNoValue, kNoParameter},
    {{"HP StrengthLFO", "HP Str.", "LFO.HP Strength", -3, 3, 0, 0, true, 0, 1, 24}, kNoValue, kNoParameter},
    {{"LFO BPM", "BPM", "LFO.BPM Override", 29, 200, 0, 29, true, 0, 13, 25}, formatBpm, kNoParameter},
    {{"LFO Shift", "Shift", "LFO.Shift", 0, 1, 0, 0, true, 0, 1, 26}, kNoValue, kNoParameter},
    {{"DISTLEVEL", "Drv. Lvl", "Drive.Level", 0, 1, 0, 0, true, 0, 1, 27}, kNoValue, kNoParameter},
    {{"DISTPREPOST", "Pre/Post", "Dist.Pre/Post", 0, 1, 0, 0, true, 0, 8, 28}, formatPrePost, kNoParameter},
    {{"RATEREDUCE_LEVEL", "Rate", "Rate.Reduction", 0, 1, 1, 1, true, 0, 1, 29}, kNoValue, kNoParameter},
    {{"RATE_LPLINK", "LP Link", "Rate.LP Link", 0, 1, 0, 0, true, 0, 8, 30}, kNoValue, kNoParameter},
    {{"RATE_LINK_AMOUNT", "Amount", "Rate.LP Link Amount", -1, 1, 1, 1, true, 0, 1, 31}, kNoValue, kNoParameter},
    {{"RATE_PREPOST", "Pre/Post", "Rate.pre / post", 0, 1, 1, 1, true, 20, 8, 32}, formatPrePost, kNoParameter},
    {{"RATE_FLIP", "Flip Link", "Rate.Flip", 0, 1, 0, 0, false, 0, 8, 33}, kNoValue, kNoParameter},
    {{"LimitRelease", "Rls", "Limiter.Release", 1, 1000, 110, 50, true, 20, 0, 34}, formatRelease, kNoParameter},
    {{"LimiterBypass", "On/Off", "Limiter.Bypass", 0, 1, 0, 0, true, 0, 8, 35}, kNoValue, kNoParameter},
    {{"LimiterOutGain", "Out.Gain", "Limiter.OutGain", -1, 0, -0.1f, -0.1f, true, 0, 4, 36}, kNoValue, kNoParameter},
    {{"RingModFreq", "Freq.", "RingMod.Freq.", 200, 12000, 100, 200, true, 30, 5, 37}, kNoValue, kNoParameter},
    {{"RingModeStrength", "Mix", "RingMod.Mix", 0, 1, 0, 0, true, 0, 1, 38}, kNoValue, kNoParameter},
    {{"RinkModLinkFreq", "LP Link.", "---------", 0, 1, 1, 1, true, 0, 8, 39}, kNoValue, kNoParameter},
    {{"RinkModLinkFreqPerc.", "Lnk Freq.", "RingMod.Lnk.Amnt", -1, 1, 0, 0, true, 0, 1, 40}, kNoValue, formatLinkAmount},
    {{"kDryWetMix", "DryWetMix", "DryWetMix", 0, 1, 1, 1, true, 0, 1, 41}, kNoValue, kNoParameter},
    {{"kBypass", "Bypass", "Bypass", 0, 1, 0, 0, true, 0, 8, 42}, kNoValue, kNoParameter},
    {{"FreqModFreq", "Freq.", "FreqMod.Freq.", 0, 16000, 100, 200, true, 30, 5, 43}, kNoValue, kNoParameter},
    {{"FreqModeStrength", "Mix", "FreqMod.Mix", 0, 1, 0, 0, true, 0, 1, 44}, kNoValue, kNoParameter},
    {{"FreqModLinkFreq", "-------", "------------", 0, 1, 0, 0, true, 0, 8, 45}, kNoValue, kNoParameter},
    {{"FreqModLinkFreqPerc.", "Lnk Freq.", "FreqMod.Lnk.Frq.Amnt", -1, 1, 0, 0, true, 0, 1, 46}, kNoValue, formatLinkAmount},
    {{"FreqModLinkMixPercent", "Lnk Mix", "FreqMod.Lnk.Mix.Amnt.", -1, 1, 0, 0, true, 0, 1, 47}, kNoValue, formatLinkAmount},
    {{"FilterInteria", "Filter Inertia ( 48/96db )", "FltrInertia", 0, 1, 1, 1, true, 0, 1, 48}, kNoValue, kNoParameter},
};

}  // namespace

const ZonfraParameterRow& zonfraParameterRow(int id) {
    return kRows[id >= 0 && id < kZonfraParameterCount ? id : 0];
}

const char* lfoSyncText(int index) {
    static const char* const texts[25] = {"",      "4/1",  "3/1",  "2/1",  "1/1",  "1/2",  "1/4",  "1/8",  "1/16",
                                          "4/1T",  "3/1T", "2/1T", "1/1T", "1/2T", "1/4T", "1/8T", "1/16T",
                                          "4/1D",  "3/1D", "2/1D", "1/1D", "1/2D", "1/4D", "1/8D", "1/16D"};
    return index >= 1 && index <= 24 ? texts[index] : "";
}

int lfoSyncIndexFromNormalized(float normalized) {
    return static_cast<int>(std::floor(normalized * 23.0f + 0.5f)) + 1;
}

void formatGlobalLimiter(float value, char* out, bool) {
    std::snprintf(out, kParameterTextSize, "%s", value >= 1 ? "Preset" : "Gbl.OFF");
}
