#pragma once
#include <cstddef>

#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

enum VstEventTypes : VstInt32 { kVstMidiType = 1, kVstSysExType = 6 };

// The common head of every event; `byteSize` counts what follows the first two fields.
struct VstEvent {
    VstInt32 type;
    VstInt32 byteSize;
    VstInt32 deltaFrames;  // sample offset in the current block
    VstInt32 flags;
    char data[16];
};
static_assert(sizeof(VstEvent) == 32);

struct VstMidiEvent {
    VstInt32 type;  // kVstMidiType
    VstInt32 byteSize;
    VstInt32 deltaFrames;
    VstInt32 flags;
    VstInt32 noteLength;
    VstInt32 noteOffset;
    char midiData[4];  // one to three message bytes, zero padded
    char detune;
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};
static_assert(offsetof(VstMidiEvent, midiData) == 24);
static_assert(sizeof(VstMidiEvent) == 32);

// A host-owned list of event pointers; the array really holds `numEvents` entries.
struct VstEvents {
    VstInt32 numEvents;
    VstIntPtr reserved;
    VstEvent* events[2];
};
static_assert(offsetof(VstEvents, events) == 16);

}  // namespace Vst2
