#pragma once
#include <cstdint>
#include <cstring>

namespace Ondra {

// Chunks and archives store little-endian numbers, FXP/FXB big-endian.
inline void putLE32(uint8_t* at, uint32_t v) {
    at[0] = static_cast<uint8_t>(v);
    at[1] = static_cast<uint8_t>(v >> 8);
    at[2] = static_cast<uint8_t>(v >> 16);
    at[3] = static_cast<uint8_t>(v >> 24);
}
inline uint32_t getLE32(const uint8_t* at) {
    return static_cast<uint32_t>(at[0]) | static_cast<uint32_t>(at[1]) << 8 | static_cast<uint32_t>(at[2]) << 16 |
           static_cast<uint32_t>(at[3]) << 24;
}
inline int32_t getLE32s(const uint8_t* at) { return static_cast<int32_t>(getLE32(at)); }
inline void putLEFloat(uint8_t* at, float v) {
    uint32_t bits;
    std::memcpy(&bits, &v, 4);
    putLE32(at, bits);
}
inline float getLEFloat(const uint8_t* at) {
    const uint32_t bits = getLE32(at);
    float v;
    std::memcpy(&v, &bits, 4);
    return v;
}
inline void putBE32(uint8_t* at, uint32_t v) {
    at[0] = static_cast<uint8_t>(v >> 24);
    at[1] = static_cast<uint8_t>(v >> 16);
    at[2] = static_cast<uint8_t>(v >> 8);
    at[3] = static_cast<uint8_t>(v);
}
inline uint32_t getBE32(const uint8_t* at) {
    return static_cast<uint32_t>(at[0]) << 24 | static_cast<uint32_t>(at[1]) << 16 | static_cast<uint32_t>(at[2]) << 8 |
           static_cast<uint32_t>(at[3]);
}

}  // namespace Ondra
