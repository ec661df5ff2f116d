#include "adapters/vst3/sdk-helpers/StringConvert.h"

#include <cstring>
#include <vector>

#include "CORE/strings/TextHelpers.h"

namespace Steinberg::StringConvert {

void toUtf16(const char* utf8, char16* out, int capacity) {
    if (!out || capacity <= 0) return;
    out[0] = 0;
    if (!utf8) return;
    const size_t length = std::strlen(utf8);
    char16_t local[512];
    std::vector<char16_t> big;  // only for texts longer than any field
    char16_t* wide = local;
    if (length * 2 + 2 > sizeof local / sizeof local[0]) {
        big.resize(length * 2 + 2);
        wide = big.data();
    }
    Core::utf8ToWide(utf8, wide, static_cast<int>(length));
    int i = 0;
    for (; i < capacity - 1 && wide[i]; ++i) out[i] = wide[i];
    out[i] = 0;
}

void toUtf8(const char16* text, char* out, int capacity) {
    if (!out || capacity <= 0) return;
    out[0] = 0;
    if (!text) return;
    char* converted = Core::wideToUtf8(text, nullptr);
    if (!converted) return;
    std::strncpy(out, converted, static_cast<size_t>(capacity - 1));
    out[capacity - 1] = 0;
    Core::releaseText(converted);
}

void copyField(char* field, int capacity, const char* text) {
    if (!field || capacity <= 0) return;
    std::memset(field, 0, static_cast<size_t>(capacity));
    if (text) std::strncpy(field, text, static_cast<size_t>(capacity - 1));
}

}  // namespace Steinberg::StringConvert
