#pragma once
#include "adapters/vst2/sdk/AudioEffect.h"
#include "adapters/vst2/sdk/VstEvents.h"
#include "adapters/vst2/sdk/VstParameterProperties.h"
#include "adapters/vst2/sdk/VstPinProperties.h"
#include "adapters/vst2/sdk/VstSpeakerArrangement.h"
#include "adapters/vst2/sdk/VstTimeInfo.h"

namespace Vst2 {

// The opcodes that interface versions 2.0 to 2.4 added, as virtual operations with neutral
// answers, and the host's 2.x services.
class AudioEffectX : public AudioEffect {
public:
    using AudioEffect::AudioEffect;

    VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) override;

    // Hosts of version 2 learn here that the plug-in takes events.
    void resume() override { wantEvents(); }

    virtual VstInt32 processEvents(VstEvents*) { return 0; }
    virtual bool canParameterBeAutomated(VstInt32) { return true; }
    virtual bool string2parameter(VstInt32, char*) { return false; }
    virtual bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text);
    virtual bool getInputProperties(VstInt32, VstPinProperties*) { return false; }
    virtual bool getOutputProperties(VstInt32, VstPinProperties*) { return false; }
    virtual VstInt32 getPlugCategory();
    virtual bool setSpeakerArrangement(VstSpeakerArrangement*, VstSpeakerArrangement*) { return false; }
    virtual bool getSpeakerArrangement(VstSpeakerArrangement** input, VstSpeakerArrangement** output);
    virtual bool setBypass(bool) { return false; }
    virtual bool getEffectName(char*) { return false; }
    virtual bool getVendorString(char*) { return false; }
    virtual bool getProductString(char*) { return false; }
    virtual VstInt32 getVendorVersion() { return 0; }
    virtual VstIntPtr vendorSpecific(VstInt32, VstIntPtr, void*, float) { return 0; }
    virtual VstInt32 canDo(char*) { return 0; }
    virtual VstInt32 getGetTailSize() { return 0; }
    virtual bool getParameterProperties(VstInt32, VstParameterProperties*) { return false; }
    virtual VstInt32 getVstVersion() { return kVstVersion; }
    virtual VstInt32 beginSetProgram() { return 0; }
    virtual VstInt32 endSetProgram() { return 0; }
    virtual VstInt32 getNextShellPlugin(char* name);
    virtual VstInt32 startProcess() { return 0; }
    virtual VstInt32 stopProcess() { return 0; }
    virtual VstInt32 setProcessPrecision(VstInt32) { return 0; }
    virtual VstInt32 getNumMidiInputChannels() { return 0; }
    virtual VstInt32 getNumMidiOutputChannels() { return 0; }

    // Towards the host.
    VstTimeInfo* getTimeInfo(VstInt32 filter);
    bool wantEvents(VstInt32 filter = 1);
    bool ioChanged();
    bool updateDisplay();
    bool sizeWindow(VstInt32 width, VstInt32 height);
    bool beginEdit(VstInt32 index);
    bool endEdit(VstInt32 index);
    VstInt32 canHostDo(const char* text);
    bool getHostVendorString(char* text);
    bool getHostProductString(char* text);
    VstInt32 getHostVendorVersion();

    void isSynth(bool state = true) { setFlag(effFlagsIsSynth, state); }
    void noTail(bool state = true) { setFlag(effFlagsNoSoundInStop, state); }
};

}  // namespace Vst2
