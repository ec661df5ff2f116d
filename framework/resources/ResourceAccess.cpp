#include "framework/resources/ResourceAccess.h"

#include <cstring>
#include <memory>

#include "framework/resources/CLegacyResourceArchive.h"
#include "framework/resources/CResourceArchive.h"

namespace Ondra {

namespace {
// The two forms each have their global; a new image of one form replaces that form's archive.
std::unique_ptr<CResourceArchive> openArchive;
std::unique_ptr<CLegacyResourceArchive> openLegacyArchive;
}  // namespace

bool openResources(const void* data, size_t size) {
    if (data && size >= 8 && std::memcmp(data, "RESOURCE", 8) == 0) {
        openArchive = std::make_unique<CResourceArchive>();
        return openArchive->open(data, size);
    }
    openLegacyArchive = std::make_unique<CLegacyResourceArchive>();
    return openLegacyArchive->open(data, size);
}

void* getResource(const char* name, int* size) {
    if (size) *size = 0;
    if (!name) return nullptr;
    if (openArchive) return openArchive->getResource(name, size);
    // The older form hands out pointers into its own block; callers don't write to them.
    if (openLegacyArchive) return const_cast<void*>(openLegacyArchive->getResource(name, size));
    return nullptr;
}

void freeResource(void* block) {
    if (openArchive) openArchive->freeResource(block);
}

void closeResources() {
    openArchive.reset();
    openLegacyArchive.reset();
}

int getResourceCount() {
    if (openArchive) return openArchive->getCount();
    if (openLegacyArchive) return openLegacyArchive->getCount();
    return -1;
}

const char* getResourceName(int index) {
    if (openArchive) return openArchive->getName(index);
    if (openLegacyArchive) return openLegacyArchive->getName(index);
    return nullptr;
}

}  // namespace Ondra
