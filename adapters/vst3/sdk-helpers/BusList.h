#pragma once
#include <memory>
#include <vector>

#include "adapters/vst3/sdk-helpers/Bus.h"

namespace Steinberg::Vst {

// The buses of one media type and direction, in the order the host indexes them; owns them.
class BusList {
public:
    BusList(MediaType type, BusDirection direction);

    MediaType getType() const { return type; }
    BusDirection getDirection() const { return direction; }

    // Takes the bus and answers it; null for a null bus.
    Bus* add(std::unique_ptr<Bus> bus);
    // Null outside the list.
    Bus* at(int32 index) const;
    int32 count() const { return static_cast<int32>(buses.size()); }
    void clear() { buses.clear(); }

    // The complete description of bus `index`; false outside the list.
    bool getInfo(int32 index, BusInfo& info) const;

private:
    MediaType type;
    BusDirection direction;
    std::vector<std::unique_ptr<Bus>> buses;
};

}  // namespace Steinberg::Vst
