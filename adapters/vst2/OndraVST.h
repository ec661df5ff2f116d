#pragma once
#include <vector>

#include "adapters/vst2/COndraVST2_Editor.h"
#include "adapters/vst2/sdk/AudioEffectX.h"
#include "framework/parameters/ParameterChangeListener.h"
#include "framework/plugin/CNChannelBuffer.h"
#include "framework/plugin/OndraAudioBlock.h"
#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraMidiEvent.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"

// One effect instance as a VST 2.4 plug-in. The host's buffers are copied into channel buffers
// of its own, so the effect never sees host memory and in-place processing is safe.
class OndraVST : public Vst2::AudioEffectX, public Ondra::ParameterChangeListener, public Ondra::OndraCallback {
public:
    explicit OndraVST(Vst2::audioMasterCallback host);
    ~OndraVST() override;

    // AudioEffect
    void suspend() override;
    void resume() override;
    void setSampleRate(float rate) override;
    void setBlockSize(Vst2::VstInt32 size) override;
    void processReplacing(float** inputs, float** outputs, Vst2::VstInt32 frames) override;
    void setParameter(Vst2::VstInt32 index, float value) override;
    float getParameter(Vst2::VstInt32 index) override;
    Vst2::VstInt32 getProgram() override;
    void setProgram(Vst2::VstInt32 program) override;
    void setProgramName(char* name) override;
    void getProgramName(char* name) override;
    void getParameterLabel(Vst2::VstInt32 index, char* label) override;
    void getParameterDisplay(Vst2::VstInt32 index, char* text) override;
    void getParameterName(Vst2::VstInt32 index, char* text) override;
    Vst2::VstInt32 getChunk(void** data, bool isPreset) override;
    Vst2::VstInt32 setChunk(void* data, Vst2::VstInt32 size, bool isPreset) override;

    // AudioEffectX
    bool canParameterBeAutomated(Vst2::VstInt32 index) override;
    bool getParameterProperties(Vst2::VstInt32 index, Vst2::VstParameterProperties* properties) override;
    bool getProgramNameIndexed(Vst2::VstInt32 category, Vst2::VstInt32 index, char* text) override;
    Vst2::VstInt32 beginSetProgram() override { return 1; }
    Vst2::VstInt32 endSetProgram() override { return 1; }
    bool getInputProperties(Vst2::VstInt32 index, Vst2::VstPinProperties* properties) override;
    bool getOutputProperties(Vst2::VstInt32 index, Vst2::VstPinProperties* properties) override;
    bool setSpeakerArrangement(Vst2::VstSpeakerArrangement* input, Vst2::VstSpeakerArrangement* output) override;
    bool getSpeakerArrangement(Vst2::VstSpeakerArrangement** input, Vst2::VstSpeakerArrangement** output) override;
    bool setBypass(bool on) override;
    Vst2::VstInt32 getNumMidiInputChannels() override;
    Vst2::VstInt32 getNumMidiOutputChannels() override;
    Vst2::VstInt32 processEvents(Vst2::VstEvents* events) override;
    bool getEffectName(char* name) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    Vst2::VstInt32 getVendorVersion() override;
    Vst2::VstIntPtr vendorSpecific(Vst2::VstInt32 index, Vst2::VstIntPtr value, void* ptr, float opt) override;
    Vst2::VstInt32 canDo(char* text) override;
    Vst2::VstInt32 getVstVersion() override { return Vst2::kVstVersion; }
    Vst2::VstInt32 getPlugCategory() override;
    Vst2::VstInt32 getNextShellPlugin(char* name) override;

    // OndraCallback
    void hostIdle() override { masterIdle(); }
    void getHostVendorString(char* text) override { AudioEffectX::getHostVendorString(text); }
    void getHostProductString(char* text) override { AudioEffectX::getHostProductString(text); }
    int getHostVendorVersion() override { return AudioEffectX::getHostVendorVersion(); }
    void notifyDisplayChanged() override { AudioEffectX::updateDisplay(); }
    void notifyIoChanged() override { ioChanged(); }
    void setNumInputs(int count) override;
    void setNumOutputs(int count) override;
    void setInitialDelay(int samples) override;
    void beginEdit(int index) override;
    void endEdit(int index) override;
    void automate(int index, float value) override;
    float getHostTempo() override;
    bool sizeWindow(int width, int height) override { return AudioEffectX::sizeWindow(width, height); }
    int getPluginType() override { return Ondra::kPluginTypeVST2; }
    void updateDisplay() override;

    // ParameterChangeListener
    void parameterChanged(Ondra::IPluginParameter* property) override;

    Ondra::OndraOS* getPlugin() const { return plugin; }

private:
    bool isMidiKind() const;
    Ondra::IPluginParameter* automatable(Vst2::VstInt32 index) const;
    void reportToHost(int index, float normalized);
    void resizeChannelBuffers();
    void copyInputs(float** inputs, int frames);
    void copyOutputs(float** outputs, int frames);
    bool buffersHold(int frames) const;
    void silence(float** outputs, int frames) const;
    void referChannels(Ondra::OndraAudioBlock& block, int frames);
    void fillTimeLine(Ondra::OndraAudioBlock& block, const Vst2::VstTimeInfo& time) const;

    Ondra::OndraOS* plugin = nullptr;
    COndraVST2_Editor* editorWrapper = nullptr;
    bool hostIsSetting = false;
    bool tellingHost = false;
    bool settingParameter = false;
    Vst2::VstTimeInfo defaultTime{};
    bool bypassState = false;
    int inputPairs = 1;
    int outputPairs = 1;
    int shellIndex = 0;
    int category = Vst2::kPlugCategShell;
    Ondra::OndraPluginInfo info{};
    Ondra::OndraPluginList pluginList;
    std::vector<Ondra::OndraMidiEvent> midiEvents;
    int hostInputChannels = 2;
    int hostOutputChannels = 2;
    Ondra::CNChannelBuffer inputBuffer;
    Ondra::CNChannelBuffer outputBuffer;
};
