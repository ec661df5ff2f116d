#pragma once
#include <cstdint>
#include <vector>

namespace Ondra {

// One decoded MIDI event, 32 bytes, as adapters hand them over before a block runs.
struct OndraMidiEvent {
    int32_t delta = 0;
    uint8_t status = 0;
    uint8_t data1 = 0;
    uint8_t data2 = 0;
    uint8_t reserved = 0;
    int32_t number = 0;
    int32_t kind = 0;
    float value1 = 0;
    float value2 = 0;
    int32_t controller = 0;
    int32_t channel = 0;
};
static_assert(sizeof(OndraMidiEvent) == 32);

enum MidiEventKind : int32_t {
    kMidiNoteOff = 0x80,
    kMidiNoteOn = 0x90,
    kMidiController = 0xB0,
    kMidiPitchBend = 0xE0,
    kMidiAllNotesOff = 0xFF01,
    kMidiAllSoundOff = 0xFF02,
};

// Fills the derived fields from the raw bytes and moves "all notes off" first among events of
// the same delta.
void decodeMidiEvents(std::vector<OndraMidiEvent>& events);

}  // namespace Ondra
