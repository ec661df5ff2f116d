#pragma once
// Colours of the update views, which draw without bitmaps: the panel's amber for titles, and plain
// red, green, black and white at the strengths each piece asks for.
#include <cstdint>

#include "lib/views/VintaTypes.h"

namespace Resko {

inline constexpr Vinta::CColor kUpdateAccent{250, 200, 60, 225};

inline constexpr Vinta::CColor withAlpha(Vinta::CColor colour, uint8_t alpha) {
    colour.alpha = alpha;
    return colour;
}

}  // namespace Resko
