#pragma once
#include "framework/presets/CFileFormat.h"

namespace Ondra {

// Stands for C++ header files in format lists; reading and writing do nothing, because the
// archive builder writes the text form of binary data itself.
class CFileFormatCppHeader : public CFileFormat {
public:
    void read(const std::string&, void**, int*) override {}
    void write(const std::string&, const void*, int) override {}
    const char* getExtension() const override { return ".h"; }
};

}  // namespace Ondra
