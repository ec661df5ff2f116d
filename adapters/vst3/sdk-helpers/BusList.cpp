#include "adapters/vst3/sdk-helpers/BusList.h"

#include <cstring>

namespace Steinberg::Vst {

BusList::BusList(MediaType mediaType, BusDirection busDirection) : type(mediaType), direction(busDirection) {}

Bus* BusList::add(std::unique_ptr<Bus> bus) {
    if (!bus) return nullptr;
    buses.push_back(std::move(bus));
    return buses.back().get();
}

Bus* BusList::at(int32 index) const {
    if (index < 0 || index >= count()) return nullptr;
    return buses[static_cast<size_t>(index)].get();
}

bool BusList::getInfo(int32 index, BusInfo& info) const {
    const Bus* bus = at(index);
    if (!bus) return false;
    std::memset(&info, 0, sizeof info);
    info.mediaType = type;
    info.direction = direction;
    bus->getInfo(info);
    return true;
}

}  // namespace Steinberg::Vst
