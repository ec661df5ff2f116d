#include "lib/drawing/ArchiveFile.h"

#include "CORE/files/ModuleResources.h"
#include "framework/resources/ResourceAccess.h"

namespace Vinta {

std::vector<uint8_t> readArchiveFile(const char* image, const char* name) {
    std::vector<uint8_t> bytes;
    const Core::ModuleResource* found = image != nullptr ? Core::findModuleResource(image) : nullptr;
    if (found == nullptr || name == nullptr || !Ondra::openResources(found->data, found->size))
        return bytes;
    int size = 0;
    if (void* block = Ondra::getResource(name, &size)) {
        const auto* data = static_cast<const uint8_t*>(block);
        bytes.assign(data, data + size);
        Ondra::freeResource(block);
    }
    Ondra::closeResources();
    return bytes;
}

}  // namespace Vinta
