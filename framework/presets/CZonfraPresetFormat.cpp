#include "framework/presets/CZonfraPresetFormat.h"

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
    uint8_t header[16] = {0x4F, 0x70, 0x66, 0x00, 0x00, 0x20, 0x0C, 0xE9};
    putBE32(header + 8, 16);
    putBE32(header + 12, static_cast<uint32_t>(size));
    VstPresetFiles::writeWrapped(hasExtension ? path : path + extension, header, sizeof header, data, size);
}

CZonfraPresetFormat& zonfraPresetFormat() {
    static CZonfraPresetFormat format;
    return format;
}

}  // namespace Ondra
