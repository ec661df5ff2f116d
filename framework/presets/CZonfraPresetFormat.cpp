#include "framework/presets/CZonfraPresetFormat.h"

#include <cstdio>

#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/VstPresetFiles.h"
#include "framework/state/ByteOrder.h"

namespace Ondra {

void CZonfraPresetFormat::read(const std::string& path, void** data, int* size) {
    VstPresetFiles::readChunk(path, VstPresetFiles::kProgramHeader, 24, "FPCh",
                              static_cast<uint32_t>(fourCharacterId("Vzon")), &CFileFormat::allocate, data, size);
}

void CZonfraPresetFormat::write(const std::string& path, const void* data, int size) {
    const std::string extension = getExtension();
    const bool hasExtension =
        path.size() >= extension.size() && path.compare(path.size() - extension.size(), extension.size(), extension) == 0;
    FILE* file = std::fopen((hasExtension ? path : path + extension).c_str(), "wb");
    if (!file) return;
    uint8_t header[16] = {0x4F, 0x70, 0x66, 0x00, 0x00, 0x20, 0x0C, 0xE9};
    putBE32(header + 8, 16);
    putBE32(header + 12, static_cast<uint32_t>(size));
    std::fwrite(header, 1, sizeof header, file);
    if (size > 0) std::fwrite(data, 1, static_cast<size_t>(size), file);
    std::fclose(file);
}

CZonfraPresetFormat& zonfraPresetFormat() {
    static CZonfraPresetFormat format;
    return format;
}

}  // namespace Ondra
