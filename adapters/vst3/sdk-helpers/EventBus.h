#pragma once
#include "adapters/vst3/sdk-helpers/Bus.h"

namespace Steinberg::Vst {

// An event bus with a fixed number of MIDI channels.
class EventBus : public Bus {
public:
    EventBus(const char* name, BusType busType, uint32 flags, int32 channels);

protected:
    int32 channelCount() const override { return channels; }

private:
    int32 channels;
};

}  // namespace Steinberg::Vst
