#include "framework/presets/CPresetFormatFXP.h"

#include "framework/presets/VstPresetFiles.h"

namespace Ondra {

void CPresetFormatFXP::read(const std::string& path, void** data, int* size) {
    VstPresetFiles::readChunk(path, VstPresetFiles::kProgramHeader, 24, "FPCh", fxID, &CFileFormat::allocate, data,
                              size);
}

void CPresetFormatFXP::write(const std::string& path, const void* data, int size) {
    uint8_t header[VstPresetFiles::kProgramHeader];
    VstPresetFiles::writeHeader(header, sizeof header, "FPCh", fxID, VstPresetFiles::programNameOf(path).c_str(), size);
    VstPresetFiles::writeWrapped(path, header, sizeof header, data, size);
}

CPresetFormatFXP& presetFormatFXP() {
    static CPresetFormatFXP format;
    return format;
}

}  // namespace Ondra
