#include "CORE/files/ModuleResources.h"

#include <cstring>

namespace Core {

namespace {
// Fixed room: registration runs from static initialisers, before anything else could be set up.
constexpr int kMaxResources = 16;
ModuleResource registered[kMaxResources];
int registeredCount = 0;
}  // namespace

bool addModuleResource(const char* name, const unsigned char* data, size_t size) {
    for (int i = 0; i < registeredCount; ++i)
        if (std::strcmp(registered[i].name, name) == 0) {
            registered[i] = {name, data, size};
            return true;
        }
    if (registeredCount < kMaxResources) registered[registeredCount++] = {name, data, size};
    return true;
}

const ModuleResource* findModuleResource(const char* name) {
    if (!name) return nullptr;
    for (int i = 0; i < registeredCount; ++i)
        if (std::strcmp(registered[i].name, name) == 0) return &registered[i];
    return nullptr;
}

}  // namespace Core
