#include "adapters/vst3/sdk-helpers/EventBus.h"

namespace Steinberg::Vst {

EventBus::EventBus(const char* busName, BusType type, uint32 busFlags, int32 channelCount)
    : Bus(busName, type, busFlags), channels(channelCount) {}

}  // namespace Steinberg::Vst
