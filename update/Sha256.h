#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Resko {

// SHA-256 of a block in memory, for checking a downloaded installer against the digest the update
// server names.
class CSha256 {
public:
    CSha256();
    void add(const void* data, size_t size);
    std::array<uint8_t, 32> finish();

    // Lower-case hex digest of the whole block.
    static std::string hexDigest(const void* data, size_t size);

private:
    void compress(const uint8_t* block);

    uint32_t state[8];
    uint8_t pending[64];
    size_t pendingSize = 0;
    uint64_t totalBytes = 0;
};

}  // namespace Resko
