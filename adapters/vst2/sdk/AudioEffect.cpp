#include "adapters/vst2/sdk/AudioEffect.h"

#include "adapters/vst2/sdk/EffectOpcodes.h"
#include "adapters/vst2/sdk/HostOpcodes.h"

namespace Vst2 {

namespace {
VstIntPtr dispatchOf(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
    AudioEffect* self = AudioEffect::fromAeffect(effect);
    return self ? self->dispatcher(opcode, index, value, ptr, opt) : 0;
}

void setParameterOf(AEffect* effect, VstInt32 index, float value) {
    if (AudioEffect* self = AudioEffect::fromAeffect(effect)) self->setParameter(index, value);
}

float getParameterOf(AEffect* effect, VstInt32 index) {
    AudioEffect* self = AudioEffect::fromAeffect(effect);
    return self ? self->getParameter(index) : 0.0f;
}

void processReplacingOf(AEffect* effect, float** inputs, float** outputs, VstInt32 frames) {
    if (AudioEffect* self = AudioEffect::fromAeffect(effect)) self->processReplacing(inputs, outputs, frames);
}

void processDoubleReplacingOf(AEffect* effect, double** inputs, double** outputs, VstInt32 frames) {
    if (AudioEffect* self = AudioEffect::fromAeffect(effect)) self->processDoubleReplacing(inputs, outputs, frames);
}

// The accumulating form left the interface with 2.4; a host that still calls it gets its output
// unchanged rather than a jump through a null pointer.
void accumulateNothing(AEffect*, float**, float**, VstInt32) {}

constexpr VstInt32 kDefaultUniqueId = 0x4E6F4566;  // "NoEf", until the plug-in sets its own
}  // namespace

AudioEffect::AudioEffect(audioMasterCallback host, VstInt32 programs, VstInt32 parameters)
    : audioMaster(host), numPrograms(programs), numParams(parameters) {
    cEffect.magic = kEffectMagic;
    cEffect.dispatcher = dispatchOf;
    cEffect.process = accumulateNothing;
    cEffect.setParameter = setParameterOf;
    cEffect.getParameter = getParameterOf;
    cEffect.numPrograms = programs;
    cEffect.numParams = parameters;
    cEffect.numInputs = 1;
    cEffect.numOutputs = 2;
    cEffect.ioRatio = 1.0f;
    cEffect.object = this;
    cEffect.uniqueID = kDefaultUniqueId;
    cEffect.version = 1;
    cEffect.processReplacing = processReplacingOf;
    cEffect.processDoubleReplacing = processDoubleReplacingOf;
    canProcessReplacing();  // the only process form of version 2.4
}

AudioEffect* AudioEffect::fromAeffect(AEffect* effect) {
    return effect && effect->magic == kEffectMagic ? static_cast<AudioEffect*>(effect->object) : nullptr;
}

void AudioEffect::getProgramName(char* name) {
    if (name) name[0] = 0;
}

void AudioEffect::getParameterLabel(VstInt32, char* label) {
    if (label) label[0] = 0;
}

void AudioEffect::getParameterDisplay(VstInt32, char* text) {
    if (text) text[0] = 0;
}

void AudioEffect::getParameterName(VstInt32, char* text) {
    if (text) text[0] = 0;
}

VstInt32 AudioEffect::getChunk(void** data, bool) {
    if (data) *data = nullptr;
    return 0;
}

VstInt32 AudioEffect::setChunk(void*, VstInt32, bool) { return 0; }

VstIntPtr AudioEffect::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
    char* text = static_cast<char*>(ptr);
    switch (opcode) {
        case effOpen:
            open();
            return 0;
        case effClose:
            close();
            delete this;
            return 1;
        case effSetProgram:
            if (value >= 0 && value < numPrograms) setProgram(static_cast<VstInt32>(value));
            return 0;
        case effGetProgram:
            return getProgram();
        case effSetProgramName:
            if (text) setProgramName(text);
            return 0;
        case effGetProgramName:
            if (text) getProgramName(text);
            return 0;
        case effGetParamLabel:
            if (text) getParameterLabel(index, text);
            return 0;
        case effGetParamDisplay:
            if (text) getParameterDisplay(index, text);
            return 0;
        case effGetParamName:
            if (text) getParameterName(index, text);
            return 0;
        case effSetSampleRate:
            setSampleRate(opt);
            return 0;
        case effSetBlockSize:
            setBlockSize(static_cast<VstInt32>(value));
            return 0;
        case effMainsChanged:
            if (value)
                resume();
            else
                suspend();
            return 0;
        case effGetChunk:
            return ptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
        case effSetChunk:
            return ptr && value > 0 ? setChunk(ptr, static_cast<VstInt32>(value), index != 0) : 0;
        case effEditGetRect:
            return editor && ptr ? editor->getRect(static_cast<ERect**>(ptr)) : 0;
        case effEditOpen:
            return editor ? editor->open(ptr) : 0;
        case effEditClose:
            if (editor) editor->close();
            return 0;
        case effEditIdle:
            if (editor) editor->idle();
            return 0;
        default:
            return 0;
    }
}

VstIntPtr AudioEffect::callHost(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
    return audioMaster ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
}

VstInt32 AudioEffect::getMasterVersion() {
    const VstIntPtr version = callHost(audioMasterVersion);
    return version ? static_cast<VstInt32>(version) : 1;
}

VstInt32 AudioEffect::getCurrentUniqueId() { return static_cast<VstInt32>(callHost(audioMasterCurrentId)); }

void AudioEffect::masterIdle() { callHost(audioMasterIdle); }

}  // namespace Vst2
