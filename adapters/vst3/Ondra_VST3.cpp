#include "adapters/vst3/Ondra_VST3.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "adapters/vst3/Ondra_VST3_EditorView.h"
#include "adapters/vst3/sdk-helpers/StringConvert.h"
#include "adapters/vst3/sdk-helpers/StringListParameter.h"
#include "framework/parameters/UnitType.h"
#include "framework/plugin/ChunkedProcess.h"
#include "lib/editor-base/CVintariaEditor.h"

extern "C" Ondra::OndraOS* createOndraInstance(Ondra::OndraCallback* callback, int uniqueId);
extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
template <typename Interface>
bool asks(const TUID interfaceId) {
    return sameUid(interfaceId, Interface::iid);
}

// Switches and whole numbers move in steps of one, so that hosts show them as toggles and lists.
int32 stepsOf(Ondra::IPluginParameter* property) {
    const int unit = property->getUnitType();
    if (unit != Ondra::kUnitSwitch && unit != Ondra::kUnitWhole) return 0;
    return static_cast<int32>(std::max(0L, std::lround(property->getMaximum() - property->getMinimum())));
}

// The host's buffer of a channel, or `missing` where the bus has no such channel or no buffer.
float* channelOr(const AudioBusBuffers& bus, int32 channel, float* missing) {
    float* given = bus.numChannels > channel && bus.channelBuffers32 ? bus.channelBuffers32[channel] : nullptr;
    return given ? given : missing;
}

// The output channels that came out entirely silent, which the host may then skip.
uint64 silentChannels(const AudioBusBuffers& bus, int32 samples) {
    uint64 flags = 0;
    for (int32 c = 0; c < std::min<int32>(bus.numChannels, 64); ++c) {
        const float* channel = bus.channelBuffers32 ? bus.channelBuffers32[c] : nullptr;
        if (channel && std::all_of(channel, channel + samples, [](float x) { return x == 0.0f; }))
            flags |= uint64{1} << c;
    }
    return flags;
}
}  // namespace

Ondra_VST3::Ondra_VST3(int index) : classIndex(index) {
    Ondra::OndraPluginList* list = getOndraPluginListPTR();
    if (Ondra::OndraPluginInfo* info = list ? list->get(classIndex) : nullptr) pluginInfo = *info;
    uniqueId = pluginInfo.uniqueId;
    programChangeProperty.initFromRecord(Ondra::ParameterRecord{"VST3PrgChange", "VST3PrgChange", "VST3PrgChange", 0,
                                                                static_cast<float>(pluginInfo.programCount), 0, 0,
                                                                false, 0, Ondra::kUnitWhole, kProgramListId});
    plugin = createOndraInstance(this, uniqueId);
    inputScratch.allocate(4096);
    outputScratch.allocate(4096);
    events.reserve(512);
}

Ondra_VST3::~Ondra_VST3() {
    closeViews();
    clearParameters();
    setComponentHandler(nullptr);
    delete plugin;
}

tresult Ondra_VST3::queryInterface(const TUID interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    if (asks<IUnitInfo>(interfaceId))
        *object = static_cast<IUnitInfo*>(this);
    else if (asks<IProgramListData>(interfaceId))
        *object = static_cast<IProgramListData*>(this);
    else if (asks<IMidiMapping>(interfaceId))
        *object = static_cast<IMidiMapping*>(this);
    if (!*object) return SingleComponentEffect::queryInterface(interfaceId, object);
    addRef();
    return kResultOk;
}

tresult Ondra_VST3::initialize(FUnknown* context) {
    const tresult result = SingleComponentEffect::initialize(context);
    if (result != kResultOk) return result;
    if (!plugin) plugin = createOndraInstance(this, uniqueId);
    if (!plugin) return static_cast<tresult>(0x80004005);
    units.clear();
    units.emplace_back("Root", kRootUnitId, kNoParentUnitId, kProgramListId);
    addBuses();
    buildParameters();
    latencySamples = plugin->getInitialDelay();
    if (processSetup.sampleRate > 0) plugin->setSampleRate(static_cast<float>(processSetup.sampleRate));
    if (processSetup.maxSamplesPerBlock > 0) plugin->setBlockSize(processSetup.maxSamplesPerBlock);
    return kResultOk;
}

void Ondra_VST3::addBuses() {
    removeAllBusses();
    if (pluginInfo.inputPairs > 0) addAudioInput("Stereo In", SpeakerArr::kStereo, kMain);
    if (pluginInfo.wantsExtraInputPair) addAudioInput("Sidechain", SpeakerArr::kStereo, kAux);
    for (int i = 1; i <= pluginInfo.outputPairs; ++i) {
        char name[128];
        std::snprintf(name, sizeof name, "%s Stereo Out %i", pluginInfo.name ? pluginInfo.name : "", i);
        addAudioOutput(name, SpeakerArr::kStereo, kMain);
    }
    // The last field of the entry is the MIDI channel count.
    if (pluginInfo.category == Ondra::kCategoryMidiEffect || pluginInfo.category == Ondra::kCategoryInstrument)
        addEventInput("Midi In", pluginInfo.flag, kMain);
}

void Ondra_VST3::buildParameters() {
    clearParameters();
    const int count = plugin->getAutomatableCount();
    for (int index = 0; index < count; ++index) {
        Ondra::IPluginParameter* property = plugin->getAutomatableParameter(index);
        if (!property) continue;
        std::string key = property->getKey();
        std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        const bool isBypass = !bypassProperty && (key == "BYPASS" || key == "KBYPASS");
        if (isBypass) {
            bypassProperty = property;
            bypassParameterId = index;
            shownBypass = property->normalizedFromValue();
        }
        auto wrapper = std::make_unique<OndraVST3Parameter>(property, static_cast<ParamID>(index), false,
                                                            isBypass ? 1 : stepsOf(property), isBypass);
        property->addListener(wrapper.get(), false);
        property->addListener(this, false);
        parameters.addParameter(std::move(wrapper));
    }
    if (!bypassProperty) {
        auto bypass = std::make_unique<StringListParameter>(
            "Bypass", kMasterBypassId, nullptr, ParameterInfo::kCanAutomate | ParameterInfo::kIsBypass, kRootUnitId);
        bypass->appendString("Off");
        bypass->appendString("On");
        parameters.addParameter(std::move(bypass));
        bypassParameterId = kMasterBypassId;
    }
    auto programChange = std::make_unique<OndraVST3Parameter>(&programChangeProperty, kProgramListId, true,
                                                              pluginInfo.programCount, false);
    programChangeProperty.addListener(programChange.get(), false);
    programChangeProperty.addListener(this, false);
    parameters.addParameter(std::move(programChange));
    // Effects expose no MIDI controller parameters: only channel 0's ids are noted, and the last
    // entry stays 0, so no id falls into the MIDI range.
    std::fill(std::begin(midiParameterIds), std::end(midiParameterIds), 0);
    for (int controller = 0; controller < 130; ++controller) midiParameterIds[controller] = kFirstMidiParameterId + controller;
}

void Ondra_VST3::clearParameters() {
    for (int32 i = 0; i < parameters.getParameterCount(); ++i)
        if (auto* wrapper = dynamic_cast<OndraVST3Parameter*>(parameters.getParameterByIndex(i)))
            if (Ondra::IPluginParameter* property = wrapper->getProperty()) {
                property->removeListener(wrapper);
                property->removeListener(this);
            }
    parameters.removeAll();
    bypassProperty = nullptr;
}

tresult Ondra_VST3::terminate() {
    closeViews();
    clearParameters();
    units.clear();
    setComponentHandler(nullptr);
    delete plugin;
    plugin = nullptr;
    return SingleComponentEffect::terminate();
}

OndraVST3Parameter* Ondra_VST3::findWrapper(ParamID id) const {
    return dynamic_cast<OndraVST3Parameter*>(parameters.getParameter(id));
}

tresult Ondra_VST3::setActive(TBool state) {
    if (!plugin) return kResultOk;
    if (state) {
        plugin->resume();
        plugin->reset();
    } else {
        plugin->suspend();
    }
    return kResultOk;
}

tresult Ondra_VST3::setState(IBStream* stream) {
    if (!stream || !plugin) return kResultOk;
    int32 size = 0, program = 0, got = 0;
    if (stream->read(&size, 4, &got) != kResultOk || got != 4) return kResultFalse;
    // The effect has one program: any other number in a state is not ours to keep.
    if (stream->read(&program, 4, &got) != kResultOk || got != 4) return kResultFalse;
    if (size <= 0 || size >= (64 << 20)) return kResultFalse;
    std::vector<char> chunk(static_cast<size_t>(size));
    if (stream->read(chunk.data(), size, &got) != kResultOk || got != size) return kResultFalse;
    return plugin->setChunk(chunk.data(), size) ? kResultOk : kResultFalse;
}

tresult Ondra_VST3::getState(IBStream* stream) {
    if (!plugin) return kResultFalse;
    int32 program = plugin->getProgram();
    void* chunk = nullptr;
    int32 size = plugin->getChunk(&chunk);
    if (!stream || size == 0 || !chunk) return kResultFalse;
    int32 written = 0;
    tresult result = stream->write(&size, 4, &written);
    if (result != kResultOk) return result;
    result = stream->write(&program, 4, &written);
    if (result != kResultOk) return result;
    result = stream->write(chunk, size, &written);
    if (result != kResultOk) return result;
    return written < size ? kResultFalse : kResultOk;
}

uint32 Ondra_VST3::getLatencySamples() { return static_cast<uint32>(latencySamples); }

tresult Ondra_VST3::setBusArrangements(SpeakerArrangement* inputs, int32 numIns, SpeakerArrangement* outputs,
                                       int32 numOuts) {
    // The effect works in stereo: a mono input is doubled, a mono output takes the left channel.
    auto monoOrStereo = [](const SpeakerArrangement* list, int32 count) {
        return std::all_of(list, list + count,
                           [](SpeakerArrangement a) { return a == SpeakerArr::kMono || a == SpeakerArr::kStereo; });
    };
    if (numIns < 0 || numOuts < 0 || (numIns > 0 && !inputs) || (numOuts > 0 && !outputs)) return kInvalidArgument;
    if (!monoOrStereo(inputs, numIns) || !monoOrStereo(outputs, numOuts)) return kResultFalse;
    return SingleComponentEffect::setBusArrangements(inputs, numIns, outputs, numOuts);
}

tresult Ondra_VST3::setupProcessing(ProcessSetup& newSetup) {
    if (!plugin) return kNotInitialized;
    if (newSetup.sampleRate != processSetup.sampleRate && newSetup.sampleRate > 0)
        plugin->setSampleRate(static_cast<float>(newSetup.sampleRate));
    if (newSetup.maxSamplesPerBlock != processSetup.maxSamplesPerBlock && newSetup.maxSamplesPerBlock > 0) {
        inputScratch.allocate(newSetup.maxSamplesPerBlock);
        outputScratch.allocate(newSetup.maxSamplesPerBlock);
        plugin->setBlockSize(newSetup.maxSamplesPerBlock);
    }
    return SingleComponentEffect::setupProcessing(newSetup);
}

uint32 Ondra_VST3::getTailSamples() { return kTailSamples; }

void Ondra_VST3::fillTransport(Ondra::OndraAudioBlock& block, const ProcessContext* context) {
    if (context) {
        block.samplePos = static_cast<double>(context->projectTimeSamples);
        block.ppqPos = context->projectTimeMusic;
        block.barStartPos = context->barPositionMusic;
        block.tempo = static_cast<float>(context->tempo);
        block.transportPlaying = (context->state & ProcessContext::kPlaying) != 0;
        block.cycleActive = (context->state & ProcessContext::kCycleActive) != 0;
        block.recording = (context->state & ProcessContext::kRecording) != 0;
    } else {
        block.samplePos = block.ppqPos = block.barStartPos = 0;
        block.tempo = 1.0f;
    }
    block.transportChanged = true;
    block.automationWriting = block.automationReading = true;
    lastTempo = block.tempo;
}

tresult Ondra_VST3::process(ProcessData& data) {
    if (!plugin) return kNotInitialized;
    // Only the last point of each parameter queue counts.
    if (IParameterChanges* changes = data.inputParameterChanges) {
        const int32 queues = changes->getParameterCount();
        for (int32 q = 0; q < queues; ++q) {
            IParamValueQueue* queue = changes->getParameterData(q);
            if (!queue || queue->getPointCount() <= 0) continue;
            int32 offset = 0;
            ParamValue value = 0;
            if (queue->getPoint(queue->getPointCount() - 1, offset, value) != kResultOk) continue;
            const ParamID id = queue->getParameterId();
            if (static_cast<int32>(id) >= midiParameterIds[0] && static_cast<int32>(id) <= midiParameterIds[2079]) {
                continue;  // effects have no MIDI controller parameters
            }
            if (static_cast<int32>(id) == kMasterBypassId) setActive(value == 0);
            OndraVST3Parameter* wrapper = findWrapper(id);
            if (!wrapper || wrapper->editing || wrapper->isProgramChange() || value == wrapper->getNormalized()) continue;
            plugin->queueAutomation(wrapper->getProperty(), static_cast<float>(value), offset);
            wrapper->storeNormalized(value);
        }
    }

    // Note events reach the plug-in before the block; this effect uses none.
    if (IEventList* list = data.inputEvents) {
        const int32 count = list->getEventCount();
        for (int32 i = 0; i < count && events.size() < events.capacity(); ++i) {
            Event e{};
            if (list->getEvent(i, e) != kResultOk) continue;
            Ondra::OndraMidiEvent record;
            record.delta = e.sampleOffset;
            if (e.type == Event::kNoteOnEvent) {
                record.status = static_cast<uint8>(0x90 | (e.noteOn.channel & 15));
                record.data1 = static_cast<uint8>(e.noteOn.pitch);
                record.data2 = static_cast<uint8>(static_cast<int>(e.noteOn.velocity * 127) & 127);
            } else if (e.type == Event::kNoteOffEvent) {
                record.status = static_cast<uint8>(0x80 | (e.noteOff.channel & 15));
                record.data1 = static_cast<uint8>(e.noteOff.pitch);
            } else if (e.type == Event::kDataEvent && e.data.bytes) {
                record.status = e.data.size > 0 ? e.data.bytes[0] : 0;
                record.data1 = e.data.size > 1 ? e.data.bytes[1] : 0;
                record.data2 = e.data.size > 2 ? e.data.bytes[2] : 0;
            } else {
                continue;
            }
            events.push_back(record);
        }
    }
    if (!events.empty()) {
        plugin->processMidiEvents(events);
        events.clear();
    }

    // The audio part needs samples, output buses and, with inputs, input buses.
    const int32 n = data.numSamples;
    if (n <= 0 || data.numOutputs < 1 || !data.outputs ||
        (pluginInfo.inputPairs > 0 && (data.numInputs < 1 || !data.inputs))) {
        applyQueuedChanges();
        return kResultOk;
    }
    if (n > processSetup.maxSamplesPerBlock || n > inputScratch.capacity) return kResultFalse;

    Ondra::OndraAudioBlock block;
    const int32 inputs = std::min<int32>(data.numInputs, Ondra::OndraAudioBlock::kMaxPairs);
    for (int32 bus = 0; bus < inputs; ++bus) {
        const AudioBusBuffers& b = data.inputs[bus];
        float* left = channelOr(b, 0, inputScratch.left);
        float* right = channelOr(b, 1, inputScratch.right);
        if (b.numChannels == 1) std::memcpy(inputScratch.right, left, static_cast<size_t>(n) * sizeof(float));
        block.in[bus].refer(left, right, n);
    }
    block.inputCount = inputs;
    const int32 outputs = std::min<int32>(data.numOutputs, Ondra::OndraAudioBlock::kMaxPairs);
    for (int32 bus = 0; bus < outputs; ++bus) {
        const AudioBusBuffers& b = data.outputs[bus];
        float* left = channelOr(b, 0, outputScratch.left);
        float* right = channelOr(b, 1, outputScratch.right);
        block.out[bus].refer(left, right, n);
    }
    block.outputCount = outputs;

    // Transport, then the block in control chunks cut at the queued points.
    fillTransport(block, data.processContext);
    Ondra::ChunkingRules rules;
    rules.sliceAutomation = true;
    rules.wholeBlockBelowTwoChunks = true;
    // Without a process context the beat arithmetic runs at a nominal 44.1 kHz.
    if (!data.processContext) rules.positionSampleRate = 44100.0f;
    Ondra::processInChunks(*plugin, block, n, rules);
    for (int32 bus = 0; bus < data.numOutputs; ++bus)
        data.outputs[bus].silenceFlags = silentChannels(data.outputs[bus], n);
    return kResultOk;
}

void Ondra_VST3::applyQueuedChanges() {
    int32 none = 0;
    plugin->beginAutomationBlock(Ondra::OndraAudioBlock{}, none);
    plugin->sliceAutomation(none);
    plugin->endAutomationBlock();
}

tresult Ondra_VST3::setComponentState(IBStream* state) { return setState(state); }

void Ondra_VST3::parameterChanged(Ondra::IPluginParameter* property) {
    if (property && property == bypassProperty) shownBypass = property->normalizedFromValue();
}

ParamValue Ondra_VST3::getParamNormalized(ParamID id) {
    if (bypassProperty && static_cast<int32>(id) == bypassParameterId) return shownBypass;
    return SingleComponentEffect::getParamNormalized(id);
}

tresult Ondra_VST3::setParamNormalized(ParamID id, ParamValue value) {
    // The host's bypass is shown at once; the effect is bypassed when process brings it.
    if (bypassProperty && static_cast<int32>(id) == bypassParameterId) {
        shownBypass = std::clamp(value, 0.0, 1.0);
        return kResultOk;
    }
    // Ordinary parameters reach the plug-in through process and the editor only.
    if (static_cast<int32>(id) != kProgramListId || !plugin) return kResultOk;
    OndraVST3Parameter* wrapper = findWrapper(id);
    if (!wrapper) return kResultOk;
    wrapper->storeNormalized(value);
    plugin->setProgram(static_cast<int>(wrapper->toPlain(value)));
    restartComponent(kParamValuesChanged);
    return kResultOk;
}

int32 Ondra_VST3::getUnitCount() { return static_cast<int32>(units.size()); }

tresult Ondra_VST3::getUnitInfo(int32 unitIndex, UnitInfo& info) {
    if (unitIndex < 0 || unitIndex >= getUnitCount()) return kInvalidArgument;
    info = units[static_cast<size_t>(unitIndex)].getInfo();
    return kResultOk;
}

int32 Ondra_VST3::getProgramListCount() { return pluginInfo.programCount > 1 ? 1 : 0; }

tresult Ondra_VST3::getProgramListInfo(int32 listIndex, ProgramListInfo& info) {
    if (listIndex != 0 || pluginInfo.programCount < 2) return kResultFalse;
    info.id = kProgramListId;
    info.programCount = pluginInfo.programCount;
    StringConvert::toString128("Presets", info.name);
    return kResultOk;
}

tresult Ondra_VST3::getProgramName(ProgramListID listId, int32 programIndex, String128 name) {
    if (listId != kProgramListId || !plugin) return kResultFalse;
    char text[256] = {0};
    plugin->getProgramNameIndexed(programIndex, text);
    StringConvert::toString128(text, name);
    return kResultOk;
}

tresult Ondra_VST3::getProgramInfo(ProgramListID, int32, CString attributeId, String128 attributeValue) {
    if (!attributeId || std::strcmp(attributeId, "MusicalInstrument") != 0) return kResultFalse;
    StringConvert::toString128("Musical FX|Other", attributeValue);
    return kResultOk;
}

tresult Ondra_VST3::hasProgramPitchNames(ProgramListID, int32) { return kResultFalse; }
tresult Ondra_VST3::getProgramPitchName(ProgramListID, int32, int16, String128) { return kResultFalse; }
UnitID Ondra_VST3::getSelectedUnit() { return selectedUnit; }

tresult Ondra_VST3::selectUnit(UnitID unitId) {
    selectedUnit = unitId;
    return kResultOk;
}

tresult Ondra_VST3::getUnitByBus(MediaType, BusDirection, int32, int32, UnitID&) { return kResultFalse; }
tresult Ondra_VST3::setUnitProgramData(int32, int32, IBStream*) { return kResultFalse; }
tresult Ondra_VST3::programDataSupported(ProgramListID) { return kResultOk; }
tresult Ondra_VST3::getProgramData(ProgramListID, int32, IBStream*) { return kResultFalse; }
tresult Ondra_VST3::setProgramData(ProgramListID, int32, IBStream*) { return kResultFalse; }

tresult Ondra_VST3::getMidiControllerAssignment(int32 busIndex, int16 channel, CtrlNumber controller, ParamID& id) {
    if (busIndex != 0 || controller < 0 || controller > 129 || pluginInfo.category == Ondra::kCategoryEffect)
        return kResultFalse;
    const int slot = channel * 130 + controller;
    if (slot >= 2080 || slot < 0) return kResultOk;
    id = static_cast<ParamID>(midiParameterIds[slot]);
    return kResultOk;
}

void Ondra_VST3::getHostVendorString(char* text) {
    if (text) text[0] = 0;
}

void Ondra_VST3::getHostProductString(char* text) {
    if (text) text[0] = 0;
}

void Ondra_VST3::notifyDisplayChanged() {
    IComponentHandler* handler = getComponentHandler();
    if (!handler) return;
    void* object = nullptr;
    if (handler->queryInterface(IUnitHandler::iid.bytes, &object) == kResultOk && object) {
        auto* unitHandler = static_cast<IUnitHandler*>(object);
        unitHandler->notifyUnitSelection(0);
        unitHandler->notifyProgramListChange(kProgramListId, -1);
        unitHandler->release();
    }
}

void Ondra_VST3::notifyIoChanged() { restartComponent(kIoChanged | kLatencyChanged | kParamTitlesChanged); }

void Ondra_VST3::beginEdit(int index) {
    OndraVST3Parameter* wrapper = index >= 0 ? findWrapper(static_cast<ParamID>(index)) : nullptr;
    if (!wrapper) return;
    wrapper->editing = true;
    SingleComponentEffect::beginEdit(static_cast<ParamID>(index));
}

void Ondra_VST3::endEdit(int index) {
    OndraVST3Parameter* wrapper = index >= 0 ? findWrapper(static_cast<ParamID>(index)) : nullptr;
    if (!wrapper) return;
    wrapper->editing = false;
    SingleComponentEffect::endEdit(static_cast<ParamID>(index));
}

void Ondra_VST3::automate(int index, float value) {
    if (index >= 0) performEdit(static_cast<ParamID>(index), value);
}

Vinta::CVintariaEditor* Ondra_VST3::getEditor() const {
    return plugin ? dynamic_cast<Vinta::CVintariaEditor*>(plugin->getEditor()) : nullptr;
}

IPlugView* Ondra_VST3::createView(FIDString name) {
    Vinta::CVintariaEditor* editor = getEditor();
    if (!name || std::strcmp(name, "editor") != 0 || !editor) return nullptr;
    int32_t width = 0, height = 0;
    editor->getRect(width, height);
    const ViewRect size{0, 0, width, height};
    return new Ondra_VST3_EditorView(this, size);
}

void Ondra_VST3::addView(Ondra_VST3_EditorView* view) { views.push_back(view); }

void Ondra_VST3::closeViews() {
    for (Ondra_VST3_EditorView* view : views) view->closeEditor();
}

void Ondra_VST3::removeView(Ondra_VST3_EditorView* view) {
    views.erase(std::remove(views.begin(), views.end(), view), views.end());
}

bool Ondra_VST3::sizeWindow(int width, int height) {
    for (Ondra_VST3_EditorView* view : views) view->requestSize(width, height);
    return true;
}

void Ondra_VST3::updateDisplay() { restartComponent(kParamValuesChanged | kParamTitlesChanged); }
