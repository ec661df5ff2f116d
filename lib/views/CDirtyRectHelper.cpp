#include "lib/views/CDirtyRectHelper.h"

namespace Vinta {

bool CDirtyRectHelper::add(const CRect& rect) {
    if (isFull()) return false;
    for (int32_t index = 0; index < count; ++index)
        if (rects[index].rectInside(rect)) return true;
    rects[count++] = rect;
    return true;
}

} // namespace Vinta
