#pragma once
// A fixed list of rectangles waiting to be redrawn. Searched linearly; no merging.
#include <cstdint>

#include "lib/views/VintaTypes.h"

namespace Vinta {

class CDirtyRectHelper {
public:
    static constexpr int32_t kCapacity = 64;

    // False when the list is full (the caller then redraws everything).
    bool add(const CRect& rect);
    void clear() { count = 0; }
    bool isFull() const { return count >= kCapacity; }
    int32_t getCount() const { return count; }
    const CRect& get(int32_t index) const { return rects[index]; }

private:
    CRect rects[kCapacity];
    int32_t count = 0;
};

} // namespace Vinta
