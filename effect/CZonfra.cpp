#include "effect/CZonfra.h"

#include <algorithm>
#include <cstring>

#include "framework/plugin/FloatingPointGuard.h"
#include "framework/plugin/OndraPluginInfo.h"

using Ondra::FloatingPointGuard;
using Ondra::IPluginParameter;
using Ondra::ParameterRecord;

namespace {
constexpr int kStartBlockSize = 512;
constexpr float kLookaheadMs = 5.0f;
constexpr float kStartSampleRate = 44100.0f;
}  // namespace

CZonfra::CZonfra(Ondra::OndraCallback* hostCallback) : OndraOS(hostCallback) {
    FloatingPointGuard guard;
    control.setStateLoading(true);
    presetName.assign("Init Preset");
    chunk.setTag("MMK-zonfra-Preset");
    chunk.setCompress(true);

    buildParameters();
    if (editorFactory) editor = editorFactory(*this);
    editorTap = dynamic_cast<IEditorTap*>(editor);
    setBlockSize(kStartBlockSize);
    // The LFO's start settings hold until the init preset reports its own.
    control.startLfo(kStartSampleRate);
    resetInternal();
    setPresetNameText("Init Preset");
    loadInitPreset(*this);

    globalLimiter.initFromRecord(ParameterRecord{"GLOBAL.LIMITER", "Global", "Global", 0, 1, 1, 1, false, 0,
                                                 Ondra::kUnitSwitch, kGlobalLimiterId});
    globalLimiter.setFormatValue(formatGlobalLimiter);
    globalLimiter.addListener(this, true);

    chain.limiter.setLookahead(kLookaheadMs);
    chain.updateLatency();
    control.setStateLoading(false);
    setSampleRate(kStartSampleRate);
}

CZonfra::EditorFactory CZonfra::editorFactory = nullptr;

// The editor's views listen to the parameters: it goes while they still exist.
CZonfra::~CZonfra() {
    delete editor;
    editor = nullptr;
}

void CZonfra::buildParameters() {
    parameters.setTag(kManagerTag);
    parameters.setCompress(false);
    parameters.setMinVersion(0);
    for (int id = 0; id < kZonfraParameterCount; ++id) {
        const ZonfraParameterRow& row = zonfraParameterRow(id);
        Ondra::ParameterProperty* p = parameters.addParameter(row.record);
        if (row.formatValue) p->setFormatValue(row.formatValue);
        if (row.formatParameter) p->setFormatParameter(row.formatParameter);
        p->addListener(this, true);
    }
    parameters.getParameter(kLfoRate)->setLinked(parameters.getParameter(kLfoSync));

    presetNameParameter.initFromRecord(ParameterRecord{"PRESETNAME", "", "", 0, 1, 0, 0, false, 0, Ondra::kUnitText,
                                                       Ondra::fourCharacterId("PNAM")});
    presetNameParameter.setLinkedText(&presetName);
}

void CZonfra::setPresetNameText(const char* text) {
    presetName.assign(text);
    presetNameParameter.notify();
}

void CZonfra::setProgramName(const char* text) { setPresetNameText(text); }

void CZonfra::getProgramName(char* text) {
    if (text) presetName.copyTo(text);
}

IPluginParameter* CZonfra::findParameter(const char* key) { return parameters.findByKey(key); }
IPluginParameter* CZonfra::getParameter(int index) { return parameters.getParameter(index); }
IPluginParameter* CZonfra::getParameterById(int id) { return parameters.getParameterById(id); }
IPluginParameter* CZonfra::getAutomatableParameter(int index) { return parameters.getAutomatable(index); }
int CZonfra::getParameterCount() { return parameters.getCount(); }
int CZonfra::getAutomatableCount() { return parameters.getAutomatableCount(); }

int CZonfra::getControlChunkSize() { return static_cast<int>(sampleRate) / 500; }

void CZonfra::setSampleRate(float rate) {
    FloatingPointGuard guard;
    if (!(rate > 0)) return;
    OndraOS::setSampleRate(rate);
    control.setSampleRate(rate);
    chain.setSampleRate(rate);
    // The limiter's delay keeps its length in time, so the latency follows the rate.
    chain.updateLatency();
    setInitialDelay(chain.latency());
}

void CZonfra::setBlockSize(int samples) {
    if (samples <= 0) return;
    OndraOS::setBlockSize(samples);
    chain.setBlockSize(samples);
}

void CZonfra::reset() {
    FloatingPointGuard guard;
    resetInternal();
    if (editorTap) editorTap->resetDisplays();
}

// The stages clear, the control values take their parameters, and one control step sets the stages.
void CZonfra::resetInternal() {
    chain.resetBeforeControl();
    control.reset();
    chain.resetAfterControl();
}

void CZonfra::setBypass(bool on) {
    if (on != bypassed) chain.startBypassFade(on, sampleRate);
    OndraOS::setBypass(on);
}

void CZonfra::parameterChanged(IPluginParameter* parameter) {
    FloatingPointGuard guard;
    if (!parameter) return;
    if (static_cast<Ondra::ParameterProperty*>(parameter)->getId() == kBypass)
        setBypass(parameter->getBool());
    else
        control.parameterChanged(*parameter);
}

void CZonfra::process(Ondra::OndraAudioBlock& audio) {
    FloatingPointGuard guard;
    const int n = audio.numSamples;
    if (n <= 0 || audio.inputCount < 1 || audio.outputCount < 1) return;
    // Grows before anything else so that the delays' scratch is large enough.
    if (n > maxBlockSize) setBlockSize(n);
    const bool cleaned = chain.takeFiniteInput(audio, n);
    runBlock(audio, n);
    if (cleaned) chain.restoreHostInput(audio);
    if (chain.silenceIfNotFinite(audio, n)) control.requestReset();
    // The editor reads the block's peaks; they start afresh for the next one.
    if (editorTap) {
        editorTap->audioTap(*this, audio.out[0].left, audio.out[0].right, n);
        chain.clearPeaks();
    }
}

void CZonfra::runBlock(Ondra::OndraAudioBlock& audio, int n) {
    if (chain.passBypassed(audio, n, bypassed)) return;
    if (control.isResetRequested()) resetInternal();
    if (chain.process(audio, n, bypassed, control)) control.clearAfterBypass();
}

void CZonfra::beginParameterBatch() {
    control.setStateLoading(true);
    parameters.beginBatch();
}

void CZonfra::endParameterBatch() {
    parameters.endBatch();
    control.setStateLoading(false);
}

int CZonfra::getChunk(void** data) {
    FloatingPointGuard guard;
    chunk.clear();
    chunk.setPresetName(presetName.c_str());
    void* table = nullptr;
    const int tableSize = parameters.serialize(&table);
    chunk.addChunk("Parameters", table, tableSize);
    if (writeGlobalLimiter == 1) chunk.addChunk("GLOBAL.LIMITER.ON", chain.isGlobalLimiterOn() ? "TRUE" : "FALSE");
    chunk.addChunk("isNewFilterPreset", "TRUE");
    return chunk.finish(data);
}

bool CZonfra::setChunk(void* data, int size) {
    FloatingPointGuard guard;
    if (!data || size < 10) return false;
    chunk.clear();
    if (chunk.read(data, size) != 0) return false;
    beginParameterBatch();
    setPresetNameText("Init");
    for (int id = 0; id < kZonfraParameterCount; ++id) parameters.getParameter(id)->resetToDefault();

    void* table = nullptr;
    const int tableSize = chunk.find("Parameters", &table);
    if (table) parameters.load(table, tableSize, -1);

    void* name = nullptr;
    const int nameSize = chunk.find("PRESETNAME", &name);
    if (name && nameSize > 0 && strnlen(static_cast<const char*>(name), static_cast<size_t>(nameSize)) <=
                                    static_cast<size_t>(Ondra::COndraChunk::kMaxPresetName))
        setPresetNameText(static_cast<const char*>(name));
    else if (chunk.getPresetName()[0])
        setPresetNameText(chunk.getPresetName());

    void* limiterRecord = nullptr;
    const int limiterSize = chunk.find("GLOBAL.LIMITER.ON", &limiterRecord);
    if (limiterRecord)
        globalLimiter.setValue(limiterSize >= 4 && std::memcmp(limiterRecord, "TRUE", 4) == 0 ? 1.0f : 0.0f);

    // Links that are off leave no amount behind.
    if (!parameters.getParameter(kRingModLinkFreq)->getBool())
        parameters.getParameter(kRingModLinkFreqPercent)->setValue(0.0f);
    if (!parameters.getParameter(kFreqModLinkFreq)->getBool())
        parameters.getParameter(kFreqModLinkFreqPercent)->setValue(0.0f);

    endParameterBatch();
    resetInternal();
    chain.clearFilterDesigns();
    control.requestLfoResync();
    return true;
}

void CZonfra::getEditorRect(EditorRect& rect) {
    if (auto* door = dynamic_cast<ISamplerEffect*>(editor)) door->getEditorRect(rect);
}

void CZonfra::openEditor(void* parent) {
    if (auto* door = dynamic_cast<ISamplerEffect*>(editor)) door->openEditor(parent);
}

void CZonfra::closeEditor() {
    if (auto* door = dynamic_cast<ISamplerEffect*>(editor)) door->closeEditor();
}
