#include "WavWriter.h"

#include <cstdint>
#include <cstdio>

namespace {
void put32(std::FILE* f, uint32_t v) {
    const unsigned char b[4] = {static_cast<unsigned char>(v), static_cast<unsigned char>(v >> 8),
                                static_cast<unsigned char>(v >> 16), static_cast<unsigned char>(v >> 24)};
    std::fwrite(b, 1, 4, f);
}
void put16(std::FILE* f, uint16_t v) {
    const unsigned char b[2] = {static_cast<unsigned char>(v), static_cast<unsigned char>(v >> 8)};
    std::fwrite(b, 1, 2, f);
}
}  // namespace

bool writeStereoWav(const std::string& path, const std::vector<float>& left, const std::vector<float>& right,
                    int sampleRate) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    const uint32_t frames = static_cast<uint32_t>(left.size());
    const uint32_t dataBytes = frames * 2 * 4;
    std::fwrite("RIFF", 1, 4, f);
    put32(f, 36 + dataBytes);
    std::fwrite("WAVEfmt ", 1, 8, f);
    put32(f, 16);
    put16(f, 3);  // IEEE float
    put16(f, 2);
    put32(f, static_cast<uint32_t>(sampleRate));
    put32(f, static_cast<uint32_t>(sampleRate) * 8);
    put16(f, 8);
    put16(f, 32);
    std::fwrite("data", 1, 4, f);
    put32(f, dataBytes);
    for (uint32_t i = 0; i < frames; ++i) {
        std::fwrite(&left[i], 4, 1, f);
        std::fwrite(&right[i], 4, 1, f);
    }
    return std::fclose(f) == 0;
}
