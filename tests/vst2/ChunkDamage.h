#pragma once
// Damaged copies of a saved state chunk, as a host might hand them back: each must be refused whole
// through every plug-in door, leaving the state as it was.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "support/ChunkLayoutReader.h"

namespace ChunkDamage {

using Bytes = std::vector<char>;

// The outer header: its size, then the stored and the unpacked size of the body that follows.
constexpr size_t kHeaderSize = 44, kStoredSizeAt = 36, kPlainSizeAt = 40;

inline int32_t field(const Bytes& chunk, size_t at) {
    int32_t value = 0;
    std::memcpy(&value, chunk.data() + at, 4);
    return value;
}

inline Bytes withField(Bytes chunk, size_t at, int32_t delta) {
    const int32_t value = field(chunk, at) + delta;
    std::memcpy(chunk.data() + at, &value, 4);
    return chunk;
}

inline Bytes cut(Bytes chunk, size_t keep) {
    chunk.resize(keep);
    return chunk;
}

struct Case {
    std::string name;
    Bytes chunk;
};

// Wrong size fields and cut bodies.
inline std::vector<Case> sizeDamages(const Bytes& chunk) {
    const size_t whole = chunk.size(), body = whole - kHeaderSize;
    return {{"stated size one more", withField(chunk, kPlainSizeAt, 1)},
            {"stated size one less", withField(chunk, kPlainSizeAt, -1)},
            {"stored size one more", withField(chunk, kStoredSizeAt, 1)},
            {"stored size one less", withField(chunk, kStoredSizeAt, -1)},
            {"body cut by one byte", cut(chunk, whole - 1)},
            {"body cut in half", cut(chunk, kHeaderSize + body / 2)},
            {"header alone", cut(chunk, kHeaderSize)}};
}

// One bit flipped in byte `at` of the stored body; the bit moves along with the byte.
inline Bytes bitFlipped(Bytes chunk, size_t at) {
    chunk[kHeaderSize + at] = static_cast<char>(chunk[kHeaderSize + at] ^ (1 << (at % 8)));
    return chunk;
}

// zlib does not see every bit: a flip that only moves a copy within a run of zeros, or touches the
// padding after the last code, unpacks to the very same payload. Such a block holds the same state.
inline bool unpacksAlike(const Bytes& damaged, const Bytes& original) {
    ChunkLayout::Outer a, b;
    const auto bytes = [](const Bytes& c) { return reinterpret_cast<const uint8_t*>(c.data()); };
    return ChunkLayout::readOuter(bytes(damaged), damaged.size(), a) &&
           ChunkLayout::readOuter(bytes(original), original.size(), b) && a.plain == b.plain;
}

}  // namespace ChunkDamage
