#pragma once
#include <cstdint>
#include <vector>

#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/ParameterChangeListener.h"
#include "framework/plugin/IdleClient.h"
#include "framework/plugin/OndraAudioBlock.h"
#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraMidiEvent.h"

namespace Ondra {

struct OndraAutomationEvent {
    int32_t delay;  // samples until it takes effect
    float value;    // plain
    int32_t extra;
    IPluginParameter* parameter;
    bool pending;
};

// The host-independent plug-in. Adapters and embedding programs see an effect only through this
// class; the slot order of its virtual operations is shared with them.
class OndraOS : public ParameterChangeListener {
public:
    explicit OndraOS(OndraCallback* callback);
    ~OndraOS() override;
    OndraOS(const OndraOS&) = delete;
    OndraOS& operator=(const OndraOS&) = delete;

    void parameterChanged(IPluginParameter*) override {}
    virtual void setProgramName(const char*) {}
    virtual void getProgramName(char* text) { if (text) text[0] = 0; }
    virtual int getProgramNameIndexed(int, char*) { return 0; }
    virtual IPluginParameter* findParameter(const char*) { return nullptr; }
    virtual IPluginParameter* getParameter(int) { return nullptr; }
    virtual IPluginParameter* getParameterById(int) { return nullptr; }
    virtual IPluginParameter* getAutomatableParameter(int index) { return getParameter(index); }
    virtual int getParameterIndex(IPluginParameter* parameter);
    virtual int getParameterCount() { return 0; }
    virtual int getAutomatableCount() { return getParameterCount(); }
    virtual void process(OndraAudioBlock&) {}
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual float getSampleRate() const { return sampleRate; }
    virtual void setBlockSize(int samples) { maxBlockSize = samples; }
    virtual int getBlockSize() { return maxBlockSize; }
    virtual void handleMidiEvent(OndraMidiEvent&) {}
    virtual void processMidiEvents(std::vector<OndraMidiEvent>& events);
    virtual int getChunk(void** data) {
        if (data) *data = nullptr;
        return 0;
    }
    // The block is modified while it is read: callers hand in a copy they can spare. False: the
    // block was refused and the state is as it was.
    virtual bool setChunk(void*, int) { return false; }
    virtual int getBankChunk(void** data) { return getChunk(data); }
    virtual bool setBankChunk(void* data, int size) { return setChunk(data, size); }
    virtual void setProgram(int program) { currentProgram = program; }
    virtual int getProgram() { return currentProgram; }
    virtual void setInitialDelay(int samples);
    virtual int getInitialDelay() { return latency; }
    virtual int query(int, void*) { return 0; }
    virtual void resume() {}
    virtual void suspend() {}
    virtual void reset() {
        suspend();
        resume();
    }
    virtual void beginEdit(IPluginParameter* parameter);
    virtual void beginEdit(int index) {
        if (callback) callback->beginEdit(index);
    }
    virtual void endEdit(IPluginParameter* parameter);
    virtual void endEdit(int index) {
        if (callback) callback->endEdit(index);
    }
    virtual void automate(IPluginParameter* parameter);
    virtual void automate(int index, float normalized) {
        if (callback) callback->automate(index, normalized);
    }
    virtual void beginParameterBatch() {}
    virtual void endParameterBatch() {}
    virtual void setBypass(bool on);
    virtual bool isBypassed() const { return bypassed; }
    virtual void setNumInputPairs(int pairs);
    virtual void setNumOutputPairs(int pairs);
    virtual int getNumInputPairs() { return numInputPairs; }
    virtual int getNumOutputPairs() { return numOutputPairs; }
    virtual void hostIdle() {
        if (callback) callback->hostIdle();
    }
    virtual float getHostTempo() { return callback ? callback->getHostTempo() : 10.0f; }
    // Samples per control step; -1 means the whole host block.
    virtual int getControlChunkSize() { return -1; }
    virtual const char* getHostedPluginTypeName();
    virtual bool handleAutomationEvent(int, int) { return false; }
    virtual void setAutomationGrid(int grid);
    virtual int getAutomationGrid();

    // Automation queue for adapters that deliver parameter points with sample offsets.
    bool queueAutomation(IPluginParameter* parameter, float normalized, int delay, int extra = 0);
    void beginAutomationBlock(const OndraAudioBlock& timeLine, int samples);
    void sliceAutomation(int& samples);
    void endAutomationBlock();
    bool hasQueuedAutomation() const { return !automationQueue.empty(); }

    OndraCallback* getCallback() const { return callback; }
    PluginEditor* getEditor() const { return editor; }

protected:
    int32_t latency = 0;
    int32_t maxBlockSize = 0;
    float sampleRate = 44100.0f;
    OndraAudioBlock block;
    PluginEditor* editor = nullptr;
    int32_t currentProgram = 0;
    OndraCallback* callback;
    bool bypassed = false;
    int32_t numInputPairs = 1;
    int32_t numOutputPairs = 1;
    std::vector<OndraAutomationEvent> automationQueue;
};

}  // namespace Ondra
