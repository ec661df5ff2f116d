#include "adapters/vst3/sdk-helpers/Bus.h"

#include <cstring>

#include "adapters/vst3/sdk-helpers/StringConvert.h"

namespace Steinberg::Vst {

Bus::Bus(const char* busName, BusType type, uint32 busFlags)
    : busType(type), flags(busFlags), active((busFlags & BusInfo::kDefaultActive) != 0) {
    StringConvert::toString128(busName, name);
}

void Bus::getInfo(BusInfo& info) const {
    std::memcpy(info.name, name, sizeof name);
    info.busType = busType;
    info.flags = flags;
    info.channelCount = channelCount();
}

}  // namespace Steinberg::Vst
