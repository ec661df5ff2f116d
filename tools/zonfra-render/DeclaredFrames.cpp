#include "DeclaredFrames.h"

#include <cstdio>
#include <cstring>

namespace {
uint32_t littleEndian(const uint8_t* at, int bytes) {
    uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = v << 8 | at[i];
    return v;
}

uint32_t bigEndian(const uint8_t* at, int bytes) {
    uint32_t v = 0;
    for (int i = 0; i < bytes; ++i) v = v << 8 | at[i];
    return v;
}
}  // namespace

int64_t declaredFrameCount(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return -1;
    uint8_t head[12];
    bool wav = false, aiff = false;
    if (std::fread(head, 1, sizeof head, file) == sizeof head) {
        wav = std::memcmp(head, "RIFF", 4) == 0 && std::memcmp(head + 8, "WAVE", 4) == 0;
        aiff = std::memcmp(head, "FORM", 4) == 0 &&
               (std::memcmp(head + 8, "AIFF", 4) == 0 || std::memcmp(head + 8, "AIFC", 4) == 0);
    }
    // Chunk headers are walked up to the one that states the length: WAV's "data" (bytes, with the
    // frame size from "fmt "), AIFF's "COMM" (frames).
    int64_t frames = -1;
    uint32_t frameBytes = 0;
    uint8_t chunk[8 + 14];
    for (bool found = false; (wav || aiff) && !found;) {
        const long start = std::ftell(file);
        if (std::fread(chunk, 1, sizeof chunk, file) < 8) break;
        const uint32_t size = wav ? littleEndian(chunk + 4, 4) : bigEndian(chunk + 4, 4);
        if (wav && std::memcmp(chunk, "fmt ", 4) == 0) frameBytes = littleEndian(chunk + 8 + 12, 2);
        if (wav && std::memcmp(chunk, "data", 4) == 0) {
            found = true;
            if (frameBytes > 0 && size != 0xFFFFFFFFu) frames = size / frameBytes;
        }
        if (aiff && std::memcmp(chunk, "COMM", 4) == 0) {
            found = true;
            frames = bigEndian(chunk + 8 + 2, 4);
        }
        if (std::fseek(file, start + 8 + static_cast<long>(size) + (size & 1), SEEK_SET) != 0) break;
    }
    std::fclose(file);
    return frames;
}
