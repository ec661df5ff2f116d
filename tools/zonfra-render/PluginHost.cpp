#include "PluginHost.h"

#include <dlfcn.h>

#include <cstdio>

#include "framework/plugin/OndraPluginInfo.h"

PluginHost::~PluginHost() {
    delete instance;
    if (library) dlclose(library);
}

std::string PluginHost::load(const std::string& libraryPath) {
    library = dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* why = dlerror();
        return "cannot load the plug-in " + libraryPath + ": " + (why ? why : "unknown error");
    }
    using GetList = Ondra::OndraPluginList* (*)();
    using Create = Ondra::OndraOS* (*)(Ondra::OndraCallback*, int);
    auto getList = reinterpret_cast<GetList>(dlsym(library, "getOndraPluginListPTR"));
    auto create = reinterpret_cast<Create>(dlsym(library, "createOndraInstance"));
    if (!getList || !create) return libraryPath + " is not a Zonfra plug-in library";
    Ondra::OndraPluginList* list = getList();
    if (!list || list->getCount() < 1) return libraryPath + " holds no plug-in";
    instance = create(this, list->get(0)->uniqueId);
    if (!instance) return "the plug-in made no instance";
    return "";
}

void PluginHost::getHostProductString(char* text) {
    if (text) std::snprintf(text, 64, "zonfra-render");
}
