#pragma once
#include "adapters/vst3/sdk/Vst3Processor.h"

namespace Steinberg::Vst {

// What every bus has: a name, main or auxiliary, flags, and whether the host has it switched on.
// Media type and direction belong to the list that holds it.
class Bus {
public:
    // The name in UTF-8; a bus flagged default-active starts active.
    Bus(const char* name, BusType busType, uint32 flags);
    virtual ~Bus() = default;
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    bool isActive() const { return active; }
    void setActive(bool state) { active = state; }
    BusType getBusType() const { return busType; }

    // Fills name, type, flags and channel count; the list fills media type and direction.
    virtual void getInfo(BusInfo& info) const;

protected:
    virtual int32 channelCount() const = 0;

private:
    String128 name;
    BusType busType;
    uint32 flags;
    bool active;
};

}  // namespace Steinberg::Vst
