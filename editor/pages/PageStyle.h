#pragma once
// Colours and text sizes of the slide-out pages: the panel's light blue-grey at several strengths,
// the body colours of the drawn artwork, and its amber for values.
#include "editor/EditorPalette.h"

namespace ZonfraPages {

using Vinta::CColor;
using ZonfraEditor::kPanelColor120;
using ZonfraEditor::kPanelColor130;
using ZonfraEditor::kPanelColor20;
using ZonfraEditor::kPanelColor200;
using ZonfraEditor::kPanelColor60;

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
