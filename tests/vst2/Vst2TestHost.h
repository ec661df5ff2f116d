#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "adapters/vst2/sdk/AEffect.h"
#include "adapters/vst2/sdk/EffectOpcodes.h"
#include "adapters/vst2/sdk/HostOpcodes.h"
#include "adapters/vst2/sdk/VstTimeInfo.h"
#include "support/PluginLibrary.h"

// A small VST 2 host: loads the built library with dlopen, makes the plug-in through its entry
// point with its own audioMaster, and drives the AEffect through its function pointers only.
namespace Vst2Test {

struct Automation {
    int index;
    float value;
};

// What the host answers and what it saw. The callback has no user pointer before the plug-in
// exists, so one state serves the host in use.
struct HostState {
    Vst2::VstIntPtr version = 2400;
    bool giveTime = true;
    Vst2::VstTimeInfo time{};
    // On audioMasterAutomate the host sets the parameter back, to this value when it is not below 0,
    // as some hosts do with the value they were told.
    float echoValue = -1.0f;
    std::vector<Automation> automated;
    int calls[64] = {};

    int count(Vst2::VstInt32 opcode) const { return opcode >= 0 && opcode < 64 ? calls[opcode] : 0; }
};

HostState& host();
Vst2::VstIntPtr audioMaster(Vst2::AEffect* effect, Vst2::VstInt32 opcode, Vst2::VstInt32 index,
                            Vst2::VstIntPtr value, void* ptr, float opt);

using EntryPoint = Vst2::AEffect* (*)(Vst2::audioMasterCallback);

class Plugin {
public:
    // Loads the library and makes the plug-in; `entry` names the exported function to use.
    explicit Plugin(const char* entry = "VSTPluginMain");
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    Vst2::VstIntPtr dispatch(Vst2::VstInt32 opcode, Vst2::VstInt32 index = 0, Vst2::VstIntPtr value = 0,
                             void* ptr = nullptr, float opt = 0);
    // Open, sample rate, block size and resume, as hosts start a plug-in.
    void start(float rate, int blockSize);
    void process(float** inputs, float** outputs, int frames);
    void setParameter(int index, float value);
    float getParameter(int index);
    std::string text(Vst2::VstInt32 opcode, Vst2::VstInt32 index = 0);
    int canDo(const char* what);

    Vst2::AEffect* effect = nullptr;
    TestSupport::PluginLibrary library;
};

// A plug-in started at 44.1 kHz with blocks of 512, as hosts start it; fails at once when it is not made.
class Started : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(plugin.effect, nullptr);
        plugin.start(44100, 512);
    }
    Plugin plugin;
};

}  // namespace Vst2Test
