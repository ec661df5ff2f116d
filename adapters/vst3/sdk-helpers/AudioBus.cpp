#include "adapters/vst3/sdk-helpers/AudioBus.h"

#include <bit>

namespace Steinberg::Vst {

AudioBus::AudioBus(const char* busName, BusType type, uint32 busFlags, SpeakerArrangement speakers)
    : Bus(busName, type, busFlags), arrangement(speakers) {}

int32 AudioBus::channelCount() const { return std::popcount(arrangement); }

}  // namespace Steinberg::Vst
