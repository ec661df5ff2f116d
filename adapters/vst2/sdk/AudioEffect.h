#pragma once
#include "adapters/vst2/sdk/AEffEditor.h"
#include "adapters/vst2/sdk/AEffect.h"

namespace Vst2 {

// A plug-in object behind one AEffect, for the opcodes of interface version 1: the host's
// dispatcher calls become virtual operations, and the host's callback is wrapped in plain ones.
// The host's helpers are not virtual, so a derived class may reuse their names for its own
// interfaces and still reach them qualified.
class AudioEffect {
public:
    AudioEffect(audioMasterCallback host, VstInt32 programs, VstInt32 parameters);
    virtual ~AudioEffect() = default;
    AudioEffect(const AudioEffect&) = delete;
    AudioEffect& operator=(const AudioEffect&) = delete;

    AEffect* getAeffect() { return &cEffect; }
    static AudioEffect* fromAeffect(AEffect* effect);

    // effClose deletes the object: nothing may touch it after that call.
    virtual VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt);

    virtual void open() {}
    virtual void close() {}
    virtual void suspend() {}
    virtual void resume() {}
    virtual void setProgram(VstInt32 program) { curProgram = program; }
    virtual VstInt32 getProgram() { return curProgram; }
    virtual void setProgramName(char*) {}
    virtual void getProgramName(char* name);
    virtual void getParameterLabel(VstInt32 index, char* label);
    virtual void getParameterDisplay(VstInt32 index, char* text);
    virtual void getParameterName(VstInt32 index, char* text);
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual void setBlockSize(VstInt32 size) { blockSize = size; }
    virtual VstInt32 getChunk(void** data, bool isPreset);
    virtual VstInt32 setChunk(void* data, VstInt32 size, bool isPreset);
    virtual void setParameter(VstInt32, float) {}
    virtual float getParameter(VstInt32) { return 0; }
    virtual void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) = 0;
    virtual void processDoubleReplacing(double**, double**, VstInt32) {}

    // Towards the host; all answer 0 without a host callback.
    VstIntPtr callHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                       float opt = 0);
    VstInt32 getMasterVersion();
    VstInt32 getCurrentUniqueId();
    void masterIdle();
    audioMasterCallback getAudioMaster() const { return audioMaster; }

    // What the host reads from the AEffect record.
    void setUniqueID(VstInt32 id) { cEffect.uniqueID = id; }
    void setNumInputs(VstInt32 inputs) { cEffect.numInputs = inputs; }
    void setNumOutputs(VstInt32 outputs) { cEffect.numOutputs = outputs; }
    void setInitialDelay(VstInt32 delay) { cEffect.initialDelay = delay; }
    void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
    void canDoubleReplacing(bool state = true) { setFlag(effFlagsCanDoubleReplacing, state); }
    void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }
    void setNumParams(VstInt32 count) { numParams = cEffect.numParams = count; }
    void setNumPrograms(VstInt32 count) { numPrograms = cEffect.numPrograms = count; }

    // The editor the editor opcodes reach, not owned; the host learns of it from the flags.
    void setEditor(AEffEditor* newEditor) {
        editor = newEditor;
        setFlag(effFlagsHasEditor, editor != nullptr);
    }
    AEffEditor* getEditor() const { return editor; }

    float getSampleRate() const { return sampleRate; }
    VstInt32 getBlockSize() const { return blockSize; }

protected:
    void setFlag(VstInt32 flag, bool state) {
        if (state)
            cEffect.flags |= flag;
        else
            cEffect.flags &= ~flag;
    }

    AEffect cEffect{};
    audioMasterCallback audioMaster;
    AEffEditor* editor = nullptr;
    float sampleRate = 44100.0f;
    VstInt32 blockSize = 1024;
    VstInt32 numPrograms;
    VstInt32 numParams;
    VstInt32 curProgram = 0;
};

}  // namespace Vst2
