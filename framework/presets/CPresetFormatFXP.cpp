#include "framework/presets/CPresetFormatFXP.h"

#include <cstdio>

#include "framework/presets/VstPresetFiles.h"

namespace Ondra {

void CPresetFormatFXP::read(const std::string& path, void** data, int* size) {
    VstPresetFiles::readChunk(path, VstPresetFiles::kProgramHeader, 24, "FPCh", fxID, &CFileFormat::allocate, data,
                              size);
}

void CPresetFormatFXP::write(const std::string& path, const void* data, int size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    uint8_t header[VstPresetFiles::kProgramHeader];
    VstPresetFiles::writeHeader(header, sizeof header, "FPCh", fxID, VstPresetFiles::programNameOf(path).c_str(),
                                size);
    std::fwrite(header, 1, sizeof header, file);
    if (size > 0) std::fwrite(data, 1, static_cast<size_t>(size), file);
    std::fclose(file);
}

CPresetFormatFXP& presetFormatFXP() {
    static CPresetFormatFXP format;
    return format;
}

}  // namespace Ondra
