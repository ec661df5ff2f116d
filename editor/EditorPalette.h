#pragma once
// The editor's colours, shared by the main panel, the display and the pages.
#include "lib/views/VintaTypes.h"

namespace ZonfraEditor {

using Vinta::CColor;

inline constexpr CColor kValueTextColor{250, 200, 60, 225};
inline constexpr CColor kMidTextColor{125, 100, 30, 225};
inline constexpr CColor kPanelColor20{161, 163, 193, 20};
inline constexpr CColor kPanelColor60{161, 163, 193, 60};
inline constexpr CColor kPanelColor120{161, 163, 193, 120};
inline constexpr CColor kPanelColor130{161, 163, 193, 130};
inline constexpr CColor kPanelColor200{161, 163, 193, 200};
inline constexpr CColor kAltColor{193, 163, 161, 225};
inline constexpr CColor kCurveColor{162, 152, 43, 225};
inline constexpr CColor kCurveColorSoft{162, 152, 43, 130};
inline constexpr CColor kWhiteText{255, 255, 255, 255};
inline constexpr CColor kMeterRed{200, 0, 0, 200};

}  // namespace ZonfraEditor
