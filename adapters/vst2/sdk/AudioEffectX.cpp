#include "adapters/vst2/sdk/AudioEffectX.h"

#include "adapters/vst2/sdk/EffectOpcodes.h"
#include "adapters/vst2/sdk/HostOpcodes.h"

namespace Vst2 {

bool AudioEffectX::getProgramNameIndexed(VstInt32, VstInt32, char* text) {
    if (text) text[0] = 0;
    return false;
}

VstInt32 AudioEffectX::getPlugCategory() {
    return (cEffect.flags & effFlagsIsSynth) ? kPlugCategSynth : kPlugCategUnknown;
}

bool AudioEffectX::getSpeakerArrangement(VstSpeakerArrangement** input, VstSpeakerArrangement** output) {
    if (input) *input = nullptr;
    if (output) *output = nullptr;
    return false;
}

VstInt32 AudioEffectX::getNextShellPlugin(char* name) {
    if (name) name[0] = 0;
    return 0;
}

VstIntPtr AudioEffectX::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
    char* text = static_cast<char*>(ptr);
    switch (opcode) {
        case effProcessEvents:
            return ptr ? processEvents(static_cast<VstEvents*>(ptr)) : 0;
        case effCanBeAutomated:
            return canParameterBeAutomated(index) ? 1 : 0;
        case effString2Parameter:
            return string2parameter(index, text) ? 1 : 0;
        case effGetProgramNameIndexed:
            return text && getProgramNameIndexed(static_cast<VstInt32>(value), index, text) ? 1 : 0;
        case effGetInputProperties:
            return ptr && getInputProperties(index, static_cast<VstPinProperties*>(ptr)) ? 1 : 0;
        case effGetOutputProperties:
            return ptr && getOutputProperties(index, static_cast<VstPinProperties*>(ptr)) ? 1 : 0;
        case effGetPlugCategory:
            return getPlugCategory();
        case effSetSpeakerArrangement:
            return setSpeakerArrangement(reinterpret_cast<VstSpeakerArrangement*>(value),
                                         static_cast<VstSpeakerArrangement*>(ptr))
                       ? 1
                       : 0;
        case effGetSpeakerArrangement:
            return getSpeakerArrangement(reinterpret_cast<VstSpeakerArrangement**>(value),
                                         static_cast<VstSpeakerArrangement**>(ptr))
                       ? 1
                       : 0;
        case effSetBypass:
            return setBypass(value != 0) ? 1 : 0;
        case effGetEffectName:
            return text && getEffectName(text) ? 1 : 0;
        case effGetVendorString:
            return text && getVendorString(text) ? 1 : 0;
        case effGetProductString:
            return text && getProductString(text) ? 1 : 0;
        case effGetVendorVersion:
            return getVendorVersion();
        case effVendorSpecific:
            return vendorSpecific(index, value, ptr, opt);
        case effCanDo:
            return text ? canDo(text) : 0;
        case effGetTailSize:
            return getGetTailSize();
        case effGetParameterProperties:
            return ptr && getParameterProperties(index, static_cast<VstParameterProperties*>(ptr)) ? 1 : 0;
        case effGetVstVersion:
            return getVstVersion();
        case effBeginSetProgram:
            return beginSetProgram();
        case effEndSetProgram:
            return endSetProgram();
        case effShellGetNextPlugin:
            return text ? getNextShellPlugin(text) : 0;
        case effStartProcess:
            return startProcess();
        case effStopProcess:
            return stopProcess();
        case effSetProcessPrecision:
            return setProcessPrecision(static_cast<VstInt32>(value));
        case effGetNumMidiInputChannels:
            return getNumMidiInputChannels();
        case effGetNumMidiOutputChannels:
            return getNumMidiOutputChannels();
        case effEditKeyDown:
        case effEditKeyUp: {
            if (!editor) return 0;
            VstKeyCode key{index, static_cast<unsigned char>(value), static_cast<unsigned char>(opt)};
            return (opcode == effEditKeyDown ? editor->onKeyDown(key) : editor->onKeyUp(key)) ? 1 : 0;
        }
        default:
            return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
    }
}

VstTimeInfo* AudioEffectX::getTimeInfo(VstInt32 filter) {
    return reinterpret_cast<VstTimeInfo*>(callHost(audioMasterGetTime, 0, filter));
}

bool AudioEffectX::wantEvents(VstInt32 filter) { return callHost(audioMasterWantMidi, 0, filter) != 0; }

bool AudioEffectX::ioChanged() { return callHost(audioMasterIOChanged) != 0; }

bool AudioEffectX::updateDisplay() { return callHost(audioMasterUpdateDisplay) != 0; }

bool AudioEffectX::sizeWindow(VstInt32 width, VstInt32 height) {
    return callHost(audioMasterSizeWindow, width, height) != 0;
}

bool AudioEffectX::beginEdit(VstInt32 index) { return callHost(audioMasterBeginEdit, index) != 0; }

bool AudioEffectX::endEdit(VstInt32 index) { return callHost(audioMasterEndEdit, index) != 0; }

VstInt32 AudioEffectX::canHostDo(const char* text) {
    return static_cast<VstInt32>(callHost(audioMasterCanDo, 0, 0, const_cast<char*>(text)));
}

bool AudioEffectX::getHostVendorString(char* text) {
    if (!text) return false;
    text[0] = 0;
    return callHost(audioMasterGetVendorString, 0, 0, text) != 0;
}

bool AudioEffectX::getHostProductString(char* text) {
    if (!text) return false;
    text[0] = 0;
    return callHost(audioMasterGetProductString, 0, 0, text) != 0;
}

VstInt32 AudioEffectX::getHostVendorVersion() {
    return static_cast<VstInt32>(callHost(audioMasterGetVendorVersion));
}

}  // namespace Vst2
