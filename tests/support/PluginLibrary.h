#pragma once
#include <dlfcn.h>

#include <cstdlib>
#include <string>

// The built plug-in, loaded with dlopen the way a host loads it. The path comes from the
// ZONFRA_PLUGIN environment variable that CTest sets.
namespace TestSupport {

class PluginLibrary {
public:
    explicit PluginLibrary(const std::string& path = defaultPath())
        : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        const char* e = handle ? "" : dlerror();
        lastError = e ? e : "dlopen failed";
    }
    ~PluginLibrary() {
        if (handle) dlclose(handle);
    }
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    bool loaded() const { return handle != nullptr; }
    const std::string& error() const { return lastError; }
    void* symbol(const char* name) const { return handle ? dlsym(handle, name) : nullptr; }
    template <typename F> F function(const char* name) const { return reinterpret_cast<F>(symbol(name)); }

    static std::string defaultPath() {
        const char* path = std::getenv("ZONFRA_PLUGIN");
        return path ? path : "";
    }

private:
    void* handle = nullptr;
    std::string lastError;
};

}  // namespace TestSupport
