#pragma once
#include <cstddef>
#include <cstdint>

namespace Ondra {

// Files that don't shrink are stored plain, with two key bytes XORed alternately over them so
// they don't read as-is from the library. Its own inverse.
constexpr uint8_t kResourceKey[2] = {0xA7, 0x3C};

inline void scrambleResource(uint8_t* data, size_t size) {
    for (size_t i = 0; i < size; ++i) data[i] ^= kResourceKey[i & 1];
}

}  // namespace Ondra
