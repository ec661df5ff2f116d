#pragma once
#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// One input or output channel as the host shows it (effGetInputProperties, effGetOutputProperties).
struct VstPinProperties {
    char label[kVstMaxLabelLen];
    VstInt32 flags;            // VstPinPropertiesFlags
    VstInt32 arrangementType;  // VstSpeakerArrangementType
    char shortLabel[kVstMaxShortLabelLen];
    char future[48];
};
static_assert(offsetof(VstPinProperties, flags) == 64);
static_assert(offsetof(VstPinProperties, arrangementType) == 68);
static_assert(sizeof(VstPinProperties) == 128);

enum VstPinPropertiesFlags : VstInt32 {
    kVstPinIsActive = 1 << 0,
    kVstPinIsStereo = 1 << 1,  // first of a stereo pair
    kVstPinUseSpeaker = 1 << 2,
};

}  // namespace Vst2
