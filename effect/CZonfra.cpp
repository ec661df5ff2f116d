#include "effect/CZonfra.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "framework/plugin/FloatingPointGuard.h"

using Ondra::FloatingPointGuard;
using Ondra::IPluginParameter;
using Ondra::ParameterRecord;

namespace {
constexpr int kStartBlockSize = 512;
constexpr float kLookaheadMs = 5.0f;
constexpr float kStartSampleRate = 44100.0f;

// The bypass fades over 15 ms.
float bypassFadeStepAt(float rate) { return 1.0f / (15.0f * rate * 0.001f); }
}  // namespace

CZonfra::CZonfra(Ondra::OndraCallback* hostCallback) : OndraOS(hostCallback) {
    FloatingPointGuard guard;
    stateLoading = true;
    presetName.assign("Init Preset");
    chunk.setTag("MMK-zonfra-Preset");
    chunk.setCompress(true);

    // The filters start steep and wide open; the high-pass is a high-pass for good.
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->setSlope(96);
    highPassL.setType(1);
    highPassR.setType(1);
    lowPassL.setCutoff(22050);
    lowPassR.setCutoff(22050);
    highPassL.setCutoff(20);
    highPassR.setCutoff(20);
    resonanceLow.set(6, 1000, 0.2f, 0, true);
    resonanceHigh.set(6, 1000, 0.2f, 0, true);
    measureBand.set(3, 500, 0.1f, 0, false);

    buildParameters();
    if (editorFactory) editor = editorFactory(*this);
    editorTap = dynamic_cast<IEditorTap*>(editor);
    setBlockSize(kStartBlockSize);
    // The LFO's start settings hold until the init preset reports its own.
    lfo.setSampleRate(kStartSampleRate);
    lfo.setShape(0);
    lfo.setRate(1.0);
    lfo.setSyncIndex(0);
    resetInternal(false);
    setPresetNameText("Init Preset");
    loadInitPreset();

    globalLimiter.initFromRecord(ParameterRecord{"GLOBAL.LIMITER", "Global", "Global", 0, 1, 1, 1, false, 0, 8,
                                                 kGlobalLimiterId});
    globalLimiter.setFormatValue(formatGlobalLimiter);
    globalLimiter.addListener(this, true);

    limiter.setLookahead(kLookaheadMs);
    latencySamples = limiter.getDelaySamples();
    resizeDelayLines();
    stateLoading = false;
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

    presetNameParameter.initFromRecord(ParameterRecord{"PRESETNAME", "", "", 0, 1, 0, 0, false, 0, 11,
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
    lfo.setSampleRate(rate);
    distortion.setSampleRate(rate);
    limiter.setSampleRate(rate);
    const double integerRate = static_cast<int>(rate);
    for (DSP::CPeakBiquad* peak : {&measureBand, &resonanceLow, &resonanceHigh}) {
        peak->sampleRate = integerRate;
        peak->update();
    }
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->setSampleRate(rate);
    ringMod.setSampleRate(rate);
    freqMod.setSampleRate(rate);
    latencySamples = limiter.getDelaySamples();
    resizeDelayLines();
    setInitialDelay(latencySamples);
    // A fade that a state load started before the rate was known runs at the new rate.
    if (bypassFadeStep != 0.0f) bypassFadeStep = std::copysign(bypassFadeStepAt(rate), bypassFadeStep);
}

void CZonfra::resizeDelayLines() {
    for (Ondra::CNChannelBuffer* line : {&limiterDelay, &bypassDelay, &dryPathDelay}) line->resize(latencySamples, 2);
}

void CZonfra::setBlockSize(int samples) {
    if (samples <= 0) return;
    OndraOS::setBlockSize(samples);
    workBuffer.allocate(samples);
    secondBuffer.allocate(samples);
    dryPathBuffer.allocate(samples);
    finiteInput.allocate(samples);
    // Sized here too so that the first block after a size change allocates nothing.
    if (bypassDryBuffer.capacity < samples) bypassDryBuffer.allocate(samples);
    delayScratch.resize(samples, 1);
    limiter.setBlockSize(samples);
}

void CZonfra::reset() {
    FloatingPointGuard guard;
    resetInternal(true);
}

void CZonfra::resetInternal(bool tellEditor) {
    resetRequested = false;
    workBuffer.clear();
    secondBuffer.clear();
    dryPathBuffer.clear();
    lfoMean = 0;
    distortion.reset();
    rateReducer.reset();
    inputGain.snap();
    outputGain.snap();
    low.env = low.envOut = high.env = high.envOut = 0;
    for (FilterSide* side : {&low, &high}) {
        side->cutoff = side->modulated = side->target = side->cutoffParam;
        side->resonance = side->resonanceParam;
    }
    applyFilterSettings();
    lowPassL.setCutoff(low.cutoff);
    lowPassR.setCutoff(low.cutoff);
    highPassL.setCutoff(high.cutoff);
    highPassR.setCutoff(high.cutoff);
    resonanceLow.setFrequency(std::min(low.cutoff, 18000.0f));
    resonanceHigh.setFrequency(std::min(high.cutoff, 18000.0f));
    controlStep();
    clearFilterStates();
    limiter.reset();
    ringMod.reset();
    limiterDelay.clear();
    bypassDelay.clear();
    dryPathDelay.clear();
    mixCurrent = mixTarget;
    if (tellEditor && editorTap) editorTap->resetDisplays();
    freqMod.reset();
}

void CZonfra::setBypass(bool on) {
    if (on != bypassed) {
        const float step = bypassFadeStepAt(sampleRate);
        bypassFadeStep = on ? -step : step;
        bypassFade = on ? 1.0f : 0.0f;
        bypassSettled = false;
    }
    OndraOS::setBypass(on);
}

void CZonfra::beginParameterBatch() {
    stateLoading = true;
    parameters.beginBatch();
}

void CZonfra::endParameterBatch() {
    parameters.endBatch();
    stateLoading = false;
}

int CZonfra::getChunk(void** data) {
    FloatingPointGuard guard;
    chunk.clear();
    chunk.setPresetName(presetName.c_str());
    void* table = nullptr;
    const int tableSize = parameters.serialize(&table);
    chunk.addChunk("Parameters", table, tableSize);
    if (writeGlobalLimiter == 1) chunk.addChunk("GLOBAL.LIMITER.ON", globalLimiterOn ? "TRUE" : "FALSE");
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
    resetInternal(false);
    // A loaded state sounds the same whatever cutoffs the filters met before it, at this rate or
    // another: only the state's own cutoffs stay designed.
    for (DSP::CSlopeFilter* f : {&lowPassL, &lowPassR, &highPassL, &highPassR}) f->clearDesigns();
    lfoResync = true;
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
