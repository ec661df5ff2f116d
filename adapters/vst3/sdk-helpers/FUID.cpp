#include "adapters/vst3/sdk-helpers/FUID.h"

#include <cstring>

namespace Steinberg {

namespace {
int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}
}  // namespace

FUID::FUID(uint32 l1, uint32 l2, uint32 l3, uint32 l4) : FUID(makeUid(l1, l2, l3, l4)) {}

FUID::FUID(const Uid& uid) { std::memcpy(bytes, uid.bytes, sizeof bytes); }

FUID FUID::fromTUID(const char* tuid) {
    FUID id;
    if (tuid) std::memcpy(id.bytes, tuid, sizeof id.bytes);
    return id;
}

void FUID::toTUID(TUID out) const { std::memcpy(out, bytes, sizeof bytes); }

uint32 FUID::getLong(int index) const {
    if (index < 0 || index > 3) return 0;
    uint32 word = 0;
    for (int b = 0; b < 4; ++b) word = (word << 8) | static_cast<unsigned char>(bytes[index * 4 + b]);
    return word;
}

bool FUID::isValid() const {
    for (char b : bytes)
        if (b) return true;
    return false;
}

void FUID::toString(char (&text)[kTextSize]) const {
    static const char digits[] = "0123456789ABCDEF";
    for (int i = 0; i < 16; ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        text[2 * i] = digits[b >> 4];
        text[2 * i + 1] = digits[b & 15];
    }
    text[32] = 0;
}

bool FUID::fromString(const char* text) {
    if (!text) return false;
    char parsed[16];
    for (int i = 0; i < 16; ++i) {
        const int high = hexValue(text[2 * i]);
        if (high < 0) return false;
        const int low = hexValue(text[2 * i + 1]);
        if (low < 0) return false;
        parsed[i] = static_cast<char>(high << 4 | low);
    }
    if (text[32] != 0) return false;
    std::memcpy(bytes, parsed, sizeof bytes);
    return true;
}

bool FUID::matches(const char* tuid) const { return tuid && std::memcmp(bytes, tuid, sizeof bytes) == 0; }

bool FUID::operator==(const FUID& other) const { return std::memcmp(bytes, other.bytes, sizeof bytes) == 0; }

}  // namespace Steinberg
