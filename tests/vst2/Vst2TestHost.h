#pragma once
#include <gtest/gtest.h>
#include <cstring>
#include <vector>

#include "adapters/vst2/sdk/AEffect.h"
#include "adapters/vst2/sdk/EffectOpcodes.h"
#include "adapters/vst2/sdk/HostOpcodes.h"
#include "adapters/vst2/sdk/VstTimeInfo.h"
#include "support/PluginLibrary.h"

// A small VST 2 host: loads the built library with dlopen, makes the plug-in through its entry
// point with its own audioMaster, and drives the AEffect through its function pointers only.
namespace Vst2Test {

using namespace Vst2;

// What the host answers and what it saw. The callback has no user pointer before the plug-in
// exists, so one state serves the host in use.
struct HostState {
    VstIntPtr version = 2400;
    bool giveTime = true;
    VstTimeInfo time{};
    // On audioMasterAutomate the host sets the parameter back, to this value when it is not below 0,
    // as some hosts do with the value they were told.
    float echoValue = -1.0f;
    std::vector<std::pair<int, float>> automated;  // index and value
    int calls[64] = {};

    int count(VstInt32 opcode) const { return opcode >= 0 && opcode < 64 ? calls[opcode] : 0; }
};

inline HostState& host() {
    static HostState state;
    return state;
}

inline VstIntPtr audioMaster(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr, void*, float opt) {
    HostState& state = host();
    if (opcode >= 0 && opcode < 64) ++state.calls[opcode];
    switch (opcode) {
        case audioMasterVersion:
            return state.version;
        case audioMasterGetTime:
            return state.giveTime ? reinterpret_cast<VstIntPtr>(&state.time) : 0;
        case audioMasterAutomate:
            state.automated.push_back({index, opt});
            if (state.echoValue >= 0 && effect && effect->setParameter) effect->setParameter(effect, index, state.echoValue);
            return 0;
        default:
            return 0;
    }
}

using EntryPoint = AEffect* (*)(audioMasterCallback);

class Plugin {
public:
    // Loads the library and makes the plug-in; `entry` names the exported function to use.
    explicit Plugin(const char* entry = "VSTPluginMain") {
        host() = HostState{};
        host().time = {.sampleRate = 44100, .tempo = 120, .timeSigNumerator = 4, .timeSigDenominator = 4,
                       .flags = kVstTempoValid | kVstPpqPosValid | kVstTransportPlaying};
        auto make = library.function<EntryPoint>(entry);
        effect = make ? make(audioMaster) : nullptr;
    }
    ~Plugin() {
        if (effect) dispatch(effClose);
    }

    VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr, float opt = 0) {
        return effect->dispatcher(effect, opcode, index, value, ptr, opt);
    }
    // Open, sample rate, block size and resume, as hosts start a plug-in.
    void start(float rate, int blockSize) {
        dispatch(effOpen);
        dispatch(effSetSampleRate, 0, 0, nullptr, rate);
        dispatch(effSetBlockSize, 0, blockSize);
        dispatch(effMainsChanged, 0, 1);
        host().time.sampleRate = rate;
    }
    void process(float** inputs, float** outputs, int frames) {
        effect->processReplacing(effect, inputs, outputs, frames);
        host().time.samplePos += frames;
        host().time.ppqPos += frames / (60.0 / host().time.tempo * host().time.sampleRate);
    }
    void setParameter(int index, float value) { effect->setParameter(effect, index, value); }
    float getParameter(int index) { return effect->getParameter(effect, index); }
    std::string text(VstInt32 opcode, VstInt32 index = 0) {
        char buffer[256];
        std::memset(buffer, 'x', sizeof buffer);
        buffer[255] = 0;
        dispatch(opcode, index, 0, buffer);
        return buffer;
    }
    int canDo(const char* what) { return static_cast<int>(dispatch(effCanDo, 0, 0, const_cast<char*>(what))); }

    AEffect* effect = nullptr;
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
