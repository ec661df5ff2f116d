#pragma once
// Where the editor places its controls, in panel units, and the sizes of the images they draw.
// The background's labels and wells follow the same numbers.
#include "lib/views/VintaTypes.h"

namespace Artwork::Layout {

using Vinta::CPoint;
using Vinta::CRect;

inline constexpr double kPanelWidth = 534;
inline constexpr double kPanelHeight = 488;

// Knob strips: square frames, one per step of the value, as the editor's knobs expect.
inline constexpr int kKnobFrames = 128;
inline constexpr double kBigDial = 87;    // dials of type 0 and 1
inline constexpr double kSmallDial = 54;  // type 2, sits inside a big dial
inline constexpr double kMixDial = 24;    // type 3; its read-out starts right of it

// Two-row images: the lower row is the resting state, the upper one the lit or pressed state.
inline constexpr double kLed = 14;  // radio groups step 15 units
inline constexpr double kLinkWidth = 84, kLinkRow = 60;
inline constexpr double kDipWidth = 30, kDipRow = 18;
inline constexpr double kArrowWidth = 12, kArrowRow = 14;

// Top-left corners of the controls.
inline constexpr CPoint kMixKnob{277, 12};
inline constexpr CPoint kInputKnob{15, 221};
inline constexpr CPoint kOutputKnob{426, 221};
inline constexpr CPoint kLowCutoffKnob{15, 336};
inline constexpr CPoint kLowWidthKnob{123, 336};
inline constexpr CPoint kHighWidthKnob{318, 336};
inline constexpr CPoint kHighCutoffKnob{426, 336};
inline constexpr CPoint kLowSlopeLeds{149, 233};
inline constexpr CPoint kHighSlopeLeds{344, 233};
inline constexpr double kLedStep = 15;
inline constexpr CPoint kLinkButton{224, 300};
inline constexpr CRect kLinkPill{233, 316, 299, 344};
inline constexpr CPoint kModeSwitch{262, 370};
inline constexpr CRect kPresetBox{64, 11, 258, 33};
inline constexpr CPoint kArrows{220, 15};
inline constexpr CRect kDisplay{19, 53, 515, 209};

}  // namespace Artwork::Layout
