#pragma once
#include <cstdint>

#include "framework/presets/CFileFormat.h"

namespace Ondra {

// The VST bank file of the chunk kind ("FBCh"); only files with our id are read.
class CPresetFormatFXB : public CFileFormat {
public:
    void read(const std::string& path, void** data, int* size) override;
    void write(const std::string& path, const void* data, int size) override;
    const char* getExtension() const override { return ".fxb"; }

    uint32_t fxID = 0;  // set once when the plug-in list is filled
};

CPresetFormatFXB& presetFormatFXB();

}  // namespace Ondra
