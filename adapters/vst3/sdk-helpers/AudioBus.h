#pragma once
#include "adapters/vst3/sdk-helpers/Bus.h"

namespace Steinberg::Vst {

// An audio bus: its channels are the speakers of its arrangement, which the host may change.
class AudioBus : public Bus {
public:
    AudioBus(const char* name, BusType busType, uint32 flags, SpeakerArrangement arrangement);

    SpeakerArrangement getArrangement() const { return arrangement; }
    void setArrangement(SpeakerArrangement speakers) { arrangement = speakers; }

protected:
    int32 channelCount() const override;

private:
    SpeakerArrangement arrangement;
};

}  // namespace Steinberg::Vst
