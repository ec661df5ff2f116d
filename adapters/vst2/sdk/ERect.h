#pragma once
#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// The editor's size as the host asks for it (effEditGetRect), in pixels.
struct ERect {
    VstInt16 top;
    VstInt16 left;
    VstInt16 bottom;
    VstInt16 right;
};

}  // namespace Vst2
