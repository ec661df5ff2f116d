#include "support/PluginLibrary.h"

#include <dlfcn.h>

#include <cstdlib>

namespace TestSupport {

std::string PluginLibrary::defaultPath() {
    const char* path = std::getenv("ZONFRA_PLUGIN");
    return path ? path : "";
}

PluginLibrary::PluginLibrary(const std::string& path) {
    handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* e = dlerror();
        lastError = e ? e : "dlopen failed";
    }
}

PluginLibrary::~PluginLibrary() {
    if (handle) dlclose(handle);
}

void* PluginLibrary::symbol(const char* name) const { return handle ? dlsym(handle, name) : nullptr; }

}  // namespace TestSupport
