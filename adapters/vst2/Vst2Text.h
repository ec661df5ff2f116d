#pragma once
#include <cstring>

namespace Vst2Text {

// Hosts size their text buffers by the interface's limits, which plug-ins commonly read as a
// little wider for parameter texts; nothing longer than this goes into a parameter text.
constexpr int kParameterTextLimit = 24;

// Copies at most `maxCharacters` characters and always closes the text.
inline void copy(char* destination, const char* source, int maxCharacters) {
    if (!destination || maxCharacters < 0) return;
    const size_t length = source ? strnlen(source, static_cast<size_t>(maxCharacters)) : 0;
    if (length) std::memcpy(destination, source, length);
    destination[length] = 0;
}

}  // namespace Vst2Text
