#pragma once
// Where the pages stand in the display (its top left is 0, 0), in the order they are made, and
// where the display stands in the panel.
#include "lib/views/VintaTypes.h"

namespace ZonfraPages {

enum PageSide : int { kNoSide, kLeftSide, kRightSide };
enum PageId : int { kEnvelopePage, kLfoPage, kRingModPage, kFreqModPage, kDistPage, kLimiterPage, kSystemPage };

// Stands for the effect's global limiter switch, which has no key among the parameters.
inline constexpr const char* kGlobalLimiterKey = "<global limiter>";

struct PageRow {
    const char* title;
    const char* name;  // a short word for files and tests
    Vinta::CRect openRect;
    Vinta::CRect tabRect;
    int position;
    PageSide side;
    int index;
    Vinta::CColor panelColor;
    const char* parameters[8];  // keys of the dials' parameters, in the page's order
};



inline constexpr PageRow kPageRows[] = {
    {"Envelope", "envelope", {45, 0, 247, 137}, {95, 0, 247, 15}, 0, kLeftSide, 1, {50, 63, 60, 255},
     {"LP Attack", "LP Release", "LP Strength", "HP Attack", "HP Release", "HP Strength", "MEASUREPOINT",
      "ENV_BOOST"}},
    {"LFO", "lfo", {249, 0, 461, 93}, {249, 0, 401, 15}, 1, kRightSide, 1, {63, 50, 60, 255},
     {"LFO Rate", "LFO Shape", "LFO Sync", "LP StrengthLFO", "HP StrengthLFO", "LFO Shift", "LFO BPM"}},
    {"Ring Mod.", "ringmod", {7, 77, 126, 157}, {27, 143, 126, 157}, 2, kLeftSide, 2, {50, 50, 75, 255},
     {"RingModFreq", "RingModeStrength", "RinkModLinkFreqPerc."}},
    {"Freq Mod.", "freqmod", {128, 49, 247, 157}, {128, 143, 247, 157}, 2, kLeftSide, 2, {50, 50, 75, 255},
     {"FreqModFreq", "FreqModeStrength", "FreqModLinkFreqPerc.", "FreqModLinkMixPercent"}},
    {"Distortion", "distortion", {250, 49, 369, 157}, {250, 143, 369, 157}, 3, kRightSide, 2, {50, 50, 75, 255},
     {"DISTLEVEL", "DISTPREPOST", "RATEREDUCE_LEVEL", "RATE_PREPOST", "RATE_LPLINK", "RATE_LINK_AMOUNT"}},
    {"Limiter", "limiter", {372, 58, 494, 157}, {372, 143, 494, 157}, 2, kRightSide, 2, {63, 63, 60, 255},
     {"LimitRelease", "LimiterBypass", "LimiterOutGain", kGlobalLimiterKey}},
    {"System", "system", {27, 0, 471, 157}, {403, 0, 471, 15}, 0, kNoSide, 2, {50, 27, 35, 255}, {"FilterInteria"}},
};
static_assert(sizeof kPageRows / sizeof kPageRows[0] == 7);

inline constexpr Vinta::CRect kCloseButtonRect{480, 1, 492, 13};
// The display's rectangle in the panel.
inline constexpr Vinta::CRect kDisplayRect{19, 53, 515, 209};

}  // namespace ZonfraPages
