#include "framework/plugin/OndraMidiEvent.h"

#include <cstddef>
#include <utility>

namespace Ondra {

namespace {
void decode(OndraMidiEvent& e) {
    e.channel = e.status & 0x0F;
    e.kind = e.status & 0xF0;
    switch (e.kind) {
        case kMidiNoteOn:
            e.number = e.data1;
            e.value1 = e.data2 / 127.0f;
            if (e.data2 == 0) {
                e.kind = kMidiNoteOff;
                e.status = static_cast<uint8_t>(0x80 | e.channel);
            }
            break;
        case kMidiNoteOff:
            e.number = e.data1;
            e.value1 = e.data2 / 127.0f;
            break;
        case kMidiPitchBend: {
            const int bend = e.data1 + e.data2 * 128 - 8192;
            if (bend > -2 && bend < 2)
                e.value2 = 0;
            else if (bend > 0)
                e.value2 = bend / 8152.0f;
            else
                e.value2 = bend * 0.00012207031f;
            break;
        }
        case kMidiController:
            e.number = e.data1;
            e.controller = e.data1;
            e.value2 = e.data2 / 127.0f;
            if (e.data1 == 123) e.kind = kMidiAllNotesOff;
            if (e.data1 == 120) e.kind = kMidiAllSoundOff;
            break;
        default:
            break;
    }
}
}  // namespace

void decodeMidiEvents(std::vector<OndraMidiEvent>& events) {
    for (auto& e : events) decode(e);
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (events[i].kind != kMidiAllNotesOff) continue;
        for (std::size_t j = i; j-- > 0;) {
            if (events[j].delta != events[j + 1].delta) break;
            std::swap(events[j], events[j + 1]);
        }
    }
}

}  // namespace Ondra
