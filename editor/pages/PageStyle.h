#pragma once
// Colours and text sizes of the slide-out pages: the panel's light blue-grey at several strengths,
// the body colours of the drawn artwork, and its amber for values.
#include "lib/views/VintaTypes.h"

namespace ZonfraPages {

using Vinta::CColor;

inline constexpr CColor kPanelColor20{161, 163, 193, 20};
inline constexpr CColor kPanelColor60{161, 163, 193, 60};
inline constexpr CColor kPanelColor120{161, 163, 193, 120};
inline constexpr CColor kPanelColor130{161, 163, 193, 130};
inline constexpr CColor kPanelColor200{161, 163, 193, 200};

inline constexpr CColor kLabelColor{205, 210, 224, 255};
inline constexpr CColor kValueColor{250, 200, 60, 255};
// Dark enough that the plot behind a page does not compete with its text.
inline constexpr CColor kBackingColor{0, 0, 0, 232};
inline constexpr CColor kDialFace{33, 36, 45, 255};
inline constexpr CColor kDialRim{140, 148, 168, 220};

inline constexpr CColor withAlpha(CColor colour, uint8_t alpha) {
    colour.alpha = alpha;
    return colour;
}

}  // namespace ZonfraPages
