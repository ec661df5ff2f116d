// Entry points that VST 2 hosts look up by name. Hosts differ in the name they try, so the one
// function goes out under several; "main" is in plugin-only/.
#include <new>

#include "adapters/vst2/OndraVST.h"
#include "adapters/vst2/sdk/HostOpcodes.h"

#define ZONFRA_EXPORT extern "C" __attribute__((visibility("default")))

ZONFRA_EXPORT Vst2::AEffect* VSTPluginMain(Vst2::audioMasterCallback audioMaster) {
    if (!audioMaster || audioMaster(nullptr, Vst2::audioMasterVersion, 0, 0, nullptr, 0) == 0) return nullptr;
    OndraVST* effect = new (std::nothrow) OndraVST(audioMaster);
    return effect ? effect->getAeffect() : nullptr;
}

ZONFRA_EXPORT Vst2::AEffect* MAIN(Vst2::audioMasterCallback audioMaster) __attribute__((alias("VSTPluginMain")));

