#pragma once
#include <cstddef>
#include <cstdint>

namespace Ondra {

// The stored payload of a chunk is shuffled by overlapping four-byte reversals at every even
// offset; unshuffle runs the same reversals backwards.
void shufflePayload(uint8_t* data, size_t size);
void unshufflePayload(uint8_t* data, size_t size);

}  // namespace Ondra
