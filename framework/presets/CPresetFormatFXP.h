#pragma once
#include <cstdint>

#include "framework/presets/CFileFormat.h"

namespace Ondra {

// The VST preset file of the chunk kind ("FPCh"); only files with our id are read.
class CPresetFormatFXP : public CFileFormat {
public:
    void read(const std::string& path, void** data, int* size) override;
    void write(const std::string& path, const void* data, int size) override;
    const char* getExtension() const override { return ".fxp"; }

    uint32_t fxID = 0;  // set once when the plug-in list is filled
};

// The process-wide object.
CPresetFormatFXP& presetFormatFXP();

}  // namespace Ondra
