#include "framework/presets/CFileFormat.h"

#include <cstdio>
#include <cstdlib>

namespace Ondra {

void* CFileFormat::allocate(size_t size) { return std::malloc(size > 0 ? size : 1); }

void CFileFormat::freeData(void* data) { std::free(data); }

void CFileFormat::read(const std::string& path, void** data, int* size) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return;
    std::fseek(file, 0, SEEK_END);
    const long length = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);
    if (length >= 0) {
        void* block = allocate(static_cast<size_t>(length));
        const size_t got = block ? std::fread(block, 1, static_cast<size_t>(length), file) : 0;
        if (block) {
            *data = block;
            *size = static_cast<int>(got);
        }
    }
    std::fclose(file);
}

void CFileFormat::write(const std::string& path, const void* data, int size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    if (size > 0) std::fwrite(data, 1, static_cast<size_t>(size), file);
    std::fclose(file);
}

}  // namespace Ondra
