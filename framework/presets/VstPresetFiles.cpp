#include "framework/presets/VstPresetFiles.h"

#include <cstdio>
#include <cstring>

#include "CORE/files/FileNames.h"
#include "framework/state/ByteOrder.h"

namespace Ondra::VstPresetFiles {

namespace {
constexpr size_t kProgramNameOffset = 28;
constexpr size_t kProgramNameRoom = 28;
}  // namespace

std::string programNameOf(const std::string& path) {
    std::string name = Core::fileTitle(path.c_str());
    if (name.size() > kProgramNameRoom - 1) name.resize(kProgramNameRoom - 1);
    return name;
}

void writeHeader(uint8_t* header, size_t headerSize, const char* fxMagic, uint32_t fxID, const char* programName,
                 int chunkSize) {
    std::memset(header, 0, headerSize);
    std::memcpy(header, "CcnK", 4);
    putBE32(header + 4, static_cast<uint32_t>(chunkSize) + static_cast<uint32_t>(headerSize - 8));
    std::memcpy(header + 8, fxMagic, 4);
    putBE32(header + 12, 1);
    putBE32(header + 16, fxID);
    putBE32(header + 20, 1);
    putBE32(header + 24, 0);
    if (programName) std::strncpy(reinterpret_cast<char*>(header + kProgramNameOffset), programName, kProgramNameRoom - 1);
    putBE32(header + headerSize - 4, static_cast<uint32_t>(chunkSize));
}

void writeWrapped(const std::string& path, const uint8_t* header, size_t headerSize, const void* data, int size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    std::fwrite(header, 1, headerSize, file);
    if (size > 0) std::fwrite(data, 1, static_cast<size_t>(size), file);
    std::fclose(file);
}

bool readChunk(const std::string& path, size_t headerSize, size_t firstRead, const char* fxMagic, uint32_t fxID,
               void* (*allocate)(size_t), void** data, int* size) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    uint8_t header[kBankHeader] = {};
    bool ok = std::fread(header, 1, firstRead, file) == firstRead && std::memcmp(header, "CcnK", 4) == 0 &&
              std::memcmp(header + 8, fxMagic, 4) == 0 && getBE32(header + 16) == fxID;
    if (ok && firstRead < headerSize)
        ok = std::fread(header + firstRead, 1, headerSize - firstRead, file) == headerSize - firstRead;
    if (ok) {
        const uint32_t chunkSize = getBE32(header + headerSize - 4);
        // A size beyond the file is a damaged header: nothing to allocate for.
        const long here = std::ftell(file);
        std::fseek(file, 0, SEEK_END);
        const long end = std::ftell(file);
        std::fseek(file, here, SEEK_SET);
        ok = chunkSize <= 0x7fffffffu && static_cast<long>(chunkSize) <= end - here;
        void* block = ok ? allocate(chunkSize) : nullptr;
        if (block) {
            const size_t got = std::fread(block, 1, chunkSize, file);
            *data = block;
            *size = static_cast<int>(got);
        }
        ok = block != nullptr;
    }
    std::fclose(file);
    return ok;
}

}  // namespace Ondra::VstPresetFiles
