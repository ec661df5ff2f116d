#pragma once
#include <string>

namespace Ondra {

// Moves one opaque block between a path and memory. There is no result: a caller presets
// `data` to null and `size` to 0 and learns of success from `data` being set.
class CFileFormat {
public:
    virtual ~CFileFormat() = default;
    virtual void read(const std::string& path, void** data, int* size);
    virtual void write(const std::string& path, const void* data, int size);
    virtual const char* getExtension() const { return ".none"; }
    // Gives back a block that `read` made; null does nothing.
    virtual void freeData(void* data);

protected:
    static void* allocate(size_t size);
};

}  // namespace Ondra
