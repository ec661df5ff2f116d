#include "lib/drawing/PNGStreams.h"

#include <cstring>

#include "CORE/files/ModuleResources.h"
#include "lib/drawing/ArchiveFile.h"

namespace Vinta {

size_t PNGMemoryStream::read(uint8_t* buffer, size_t count) {
    if (data == nullptr || buffer == nullptr || position >= size || count > size - position)
        return 0;
    std::memcpy(buffer, data + position, count);
    position += count;
    return count;
}

PNGResourceStream::PNGResourceStream(const char* name) {
    const Core::ModuleResource* image = name != nullptr ? Core::findModuleResource(name) : nullptr;
    if (image == nullptr)
        return;
    memory = PNGMemoryStream(image->data, image->size);
    isFound = true;
}

PNGNewResourceStream::PNGNewResourceStream(const char* name) : bytes(readArchiveFile(kMainArchive, name)) {
    memory = PNGMemoryStream(bytes.data(), bytes.size());
}

PNGFileStream::PNGFileStream(const char* path) : file(path != nullptr ? std::fopen(path, "rb") : nullptr) {}

PNGFileStream::~PNGFileStream() {
    if (file != nullptr)
        std::fclose(file);
}

size_t PNGFileStream::read(uint8_t* buffer, size_t count) {
    return file != nullptr && buffer != nullptr ? std::fread(buffer, 1, count, file) : 0;
}

}  // namespace Vinta
