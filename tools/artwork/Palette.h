#pragma once
// The colours of the panel: a deep blue-grey body, light labels, the editor's amber for values.
#include "lib/views/VintaTypes.h"

namespace Artwork::Palette {

using Vinta::CColor;

inline constexpr CColor kPanelTop{47, 52, 64, 255};
inline constexpr CColor kPanelBottom{29, 32, 40, 255};
inline constexpr CColor kBarTop{34, 38, 47, 255};
inline constexpr CColor kBarBottom{24, 27, 34, 255};
inline constexpr CColor kSection{255, 255, 255, 9};
inline constexpr CColor kSectionEdge{255, 255, 255, 22};
inline constexpr CColor kHighlight{255, 255, 255, 30};
inline constexpr CColor kGroove{0, 0, 0, 110};
inline constexpr CColor kScreenTop{17, 20, 27, 255};
inline constexpr CColor kScreenBottom{10, 12, 16, 255};
inline constexpr CColor kWell{14, 16, 21, 255};

inline constexpr CColor kLabel{205, 210, 224, 255};
inline constexpr CColor kDimLabel{128, 135, 154, 255};
inline constexpr CColor kAccent{250, 200, 60, 255};
inline constexpr CColor kAccentDeep{176, 126, 28, 255};

inline constexpr CColor kKnobLight{86, 92, 108, 255};
inline constexpr CColor kKnobDark{33, 36, 45, 255};
inline constexpr CColor kKnobRim{140, 148, 168, 110};
inline constexpr CColor kTrack{8, 9, 12, 255};
inline constexpr CColor kTick{150, 157, 176, 200};
inline constexpr CColor kPointer{244, 240, 228, 255};
inline constexpr CColor kShadow{0, 0, 0, 150};

}  // namespace Artwork::Palette
