#pragma once
#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

struct VstSpeakerProperties {
    float azimuth;
    float elevation;
    float radius;
    float reserved;
    char name[kVstMaxNameLen];
    VstInt32 type;
    char future[28];
};
static_assert(sizeof(VstSpeakerProperties) == 112);

// A bus layout; `speakers` really holds `numChannels` entries.
struct VstSpeakerArrangement {
    VstInt32 type;  // VstSpeakerArrangementType
    VstInt32 numChannels;
    VstSpeakerProperties speakers[8];
};
static_assert(offsetof(VstSpeakerArrangement, speakers) == 8);
static_assert(sizeof(VstSpeakerArrangement) == 904);

enum VstSpeakerArrangementType : VstInt32 {
    kSpeakerArrUserDefined = -2,
    kSpeakerArrEmpty = -1,
    kSpeakerArrMono = 0,
    kSpeakerArrStereo = 1,
};

}  // namespace Vst2
