#pragma once
#include "framework/presets/CFileFormat.h"

namespace Ondra {

// The native preset file. Its writer puts out the short "Opf" layout while its reader takes the
// FXP layout with the fixed id "Vzon": a file it writes is not one it reads. Nothing in the
// product calls it; presets go through the FXP format.
class CZonfraPresetFormat : public CFileFormat {
public:
    void read(const std::string& path, void** data, int* size) override;
    void write(const std::string& path, const void* data, int size) override;
    const char* getExtension() const override { return ".zonfraPreset"; }
};

CZonfraPresetFormat& zonfraPresetFormat();

}  // namespace Ondra
