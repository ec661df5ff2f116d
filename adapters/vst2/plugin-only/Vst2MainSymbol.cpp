// Old Linux VST 2 hosts look for a symbol named "main". A C++ function cannot carry that name, so
// this one gets it through its assembler name. It is compiled into the plug-in library alone: in
// a static library it would take the place of a program's own main.
#include "adapters/vst2/sdk/AEffect.h"

extern "C" Vst2::AEffect* VSTPluginMain(Vst2::audioMasterCallback audioMaster);

extern "C" __attribute__((visibility("default"))) Vst2::AEffect* vst2MainSymbol(Vst2::audioMasterCallback audioMaster)
    __asm__("main");

Vst2::AEffect* vst2MainSymbol(Vst2::audioMasterCallback audioMaster) { return VSTPluginMain(audioMaster); }
