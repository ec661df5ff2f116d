#include "framework/presets/CPresetFormatFXB.h"

#include <cstdio>

#include "framework/presets/VstPresetFiles.h"

namespace Ondra {

void CPresetFormatFXB::read(const std::string& path, void** data, int* size) {
    VstPresetFiles::readChunk(path, VstPresetFiles::kBankHeader, VstPresetFiles::kBankHeader, "FBCh", fxID,
                              &CFileFormat::allocate, data, size);
}

void CPresetFormatFXB::write(const std::string& path, const void* data, int size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    uint8_t header[VstPresetFiles::kBankHeader];
    VstPresetFiles::writeHeader(header, sizeof header, "FBCh", fxID, nullptr, size);
    std::fwrite(header, 1, sizeof header, file);
    if (size > 0) std::fwrite(data, 1, static_cast<size_t>(size), file);
    std::fclose(file);
}

CPresetFormatFXB& presetFormatFXB() {
    static CPresetFormatFXB format;
    return format;
}

}  // namespace Ondra
