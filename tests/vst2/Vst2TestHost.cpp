#include "Vst2TestHost.h"

#include <cstring>

using namespace Vst2;

namespace Vst2Test {

HostState& host() {
    static HostState state;
    return state;
}

VstIntPtr audioMaster(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr, void* ptr, float opt) {
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
        case audioMasterGetProductString:
            if (ptr) std::strcpy(static_cast<char*>(ptr), "Zonfra Test Host");
            return 1;
        case audioMasterGetVendorString:
            if (ptr) std::strcpy(static_cast<char*>(ptr), "Morvandel Tests");
            return 1;
        case audioMasterGetVendorVersion:
            return 1;
        default:
            return 0;
    }
}

Plugin::Plugin(const char* entry) {
    host() = HostState{};
    host().time.sampleRate = 44100;
    host().time.tempo = 120;
    host().time.timeSigNumerator = host().time.timeSigDenominator = 4;
    host().time.flags = kVstTempoValid | kVstPpqPosValid | kVstTransportPlaying;
    auto make = library.function<EntryPoint>(entry);
    effect = make ? make(audioMaster) : nullptr;
}

Plugin::~Plugin() {
    if (effect) effect->dispatcher(effect, effClose, 0, 0, nullptr, 0);
}

VstIntPtr Plugin::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

void Plugin::start(float rate, int blockSize) {
    dispatch(effOpen);
    dispatch(effSetSampleRate, 0, 0, nullptr, rate);
    dispatch(effSetBlockSize, 0, blockSize);
    dispatch(effMainsChanged, 0, 1);
    host().time.sampleRate = rate;
}

void Plugin::process(float** inputs, float** outputs, int frames) {
    effect->processReplacing(effect, inputs, outputs, frames);
    host().time.samplePos += frames;
    host().time.ppqPos += frames / (60.0 / host().time.tempo * host().time.sampleRate);
}

void Plugin::setParameter(int index, float value) { effect->setParameter(effect, index, value); }

float Plugin::getParameter(int index) { return effect->getParameter(effect, index); }

std::string Plugin::text(VstInt32 opcode, VstInt32 index) {
    char buffer[256];
    std::memset(buffer, 'x', sizeof buffer);
    buffer[255] = 0;
    dispatch(opcode, index, 0, buffer);
    return buffer;
}

int Plugin::canDo(const char* what) { return static_cast<int>(dispatch(effCanDo, 0, 0, const_cast<char*>(what))); }

}  // namespace Vst2Test
