// Entry points that VST 3 hosts look up by name.
#include "adapters/vst3/Vst3Factory.h"

#define ZONFRA_EXPORT extern "C" __attribute__((visibility("default")))

ZONFRA_EXPORT Steinberg::IPluginFactory* GetPluginFactory() {
    Steinberg::CPluginFactory& factory = Vst3Factory::instance();
    factory.addRef();
    return &factory;
}

ZONFRA_EXPORT bool InitDll() { return true; }
ZONFRA_EXPORT bool ExitDll() { return true; }
// Linux hosts call these around the module's life.
ZONFRA_EXPORT bool ModuleEntry(void*) { return true; }
ZONFRA_EXPORT bool ModuleExit() { return true; }
