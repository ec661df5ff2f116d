#pragma once
// The files of a resource image compiled into the test program, read through the archive reader.
#include <string>
#include <vector>

#include "CORE/files/ModuleResources.h"
#include "framework/resources/ResourceAccess.h"

namespace TestSupport {

struct ArchiveFile {
    std::string name;
    std::vector<uint8_t> bytes;
};

// The files of `image` whose names start with `prefix`, in archive order; none without the image.
inline std::vector<ArchiveFile> archiveFiles(const char* image, const std::string& prefix = "") {
    const Core::ModuleResource* resource = Core::findModuleResource(image);
    if (!resource || !Ondra::openResources(resource->data, resource->size)) return {};
    std::vector<ArchiveFile> files;
    for (int i = 0; i < Ondra::getResourceCount(); ++i) {
        const std::string name = Ondra::getResourceName(i);
        int size = 0;
        void* block = name.rfind(prefix, 0) == 0 ? Ondra::getResource(name.c_str(), &size) : nullptr;
        if (!block) continue;
        const auto* bytes = static_cast<uint8_t*>(block);
        files.push_back({name, std::vector<uint8_t>(bytes, bytes + size)});
        Ondra::freeResource(block);
    }
    Ondra::closeResources();
    return files;
}

}  // namespace TestSupport
