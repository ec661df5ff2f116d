#pragma once
#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// The editor's size as the host asks for it (effEditGetRect), in pixels.
struct ERect {
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};
static_assert(offsetof(ERect, right) == 6);
static_assert(sizeof(ERect) == 8);

}  // namespace Vst2
