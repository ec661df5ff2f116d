#include "framework/presets/CPresetFormatFXB.h"

#include "framework/presets/VstPresetFiles.h"

namespace Ondra {

void CPresetFormatFXB::read(const std::string& path, void** data, int* size) {
    VstPresetFiles::readChunk(path, VstPresetFiles::kBankHeader, VstPresetFiles::kBankHeader, "FBCh", fxID,
                              &CFileFormat::allocate, data, size);
}

void CPresetFormatFXB::write(const std::string& path, const void* data, int size) {
    uint8_t header[VstPresetFiles::kBankHeader];
    VstPresetFiles::writeHeader(header, sizeof header, "FBCh", fxID, nullptr, size);
    VstPresetFiles::writeWrapped(path, header, sizeof header, data, size);
}

CPresetFormatFXB& presetFormatFXB() {
    static CPresetFormatFXB format;
    return format;
}

}  // namespace Ondra
