#include "adapters/vst3/Ondra_VST3.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "adapters/vst3/Vst3Text.h"
#include "framework/plugin/ChunkedProcess.h"

extern "C" Ondra::OndraOS* createOndraInstance(Ondra::OndraCallback* callback, int uniqueId);
extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
template <typename Interface>
bool asks(const TUID interfaceId) {
    return sameUid(interfaceId, Interface::iid);
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
    clearParameters();
    if (componentHandler) componentHandler->release();
    delete plugin;
}

tresult Ondra_VST3::queryInterface(const TUID interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    if (asks<FUnknown>(interfaceId) || asks<IPluginBase>(interfaceId) || asks<IComponent>(interfaceId))
        *object = static_cast<IComponent*>(this);
    else if (asks<IAudioProcessor>(interfaceId))
        *object = static_cast<IAudioProcessor*>(this);
    else if (asks<IEditController>(interfaceId))
        *object = static_cast<IEditController*>(this);
    else if (asks<IEditController2>(interfaceId))
        *object = static_cast<IEditController2*>(this);
    else if (asks<IUnitInfo>(interfaceId))
        *object = static_cast<IUnitInfo*>(this);
    else if (asks<IProgramListData>(interfaceId))
        *object = static_cast<IProgramListData*>(this);
    else if (asks<IMidiMapping>(interfaceId))
        *object = static_cast<IMidiMapping*>(this);
    if (!*object) return kNoInterface;
    addRef();
    return kResultOk;
}

uint32 Ondra_VST3::addRef() { return references.fetch_add(1) + 1; }

uint32 Ondra_VST3::release() {
    const uint32 left = references.fetch_sub(1) - 1;
    if (left == 0) delete this;
    return left;
}

tresult Ondra_VST3::initialize(FUnknown*) {
    if (!plugin) plugin = createOndraInstance(this, uniqueId);
    if (!plugin) return static_cast<tresult>(0x80004005);
    inputBuses.clear();
    outputBuses.clear();
    if (pluginInfo.inputPairs > 0) inputBuses.push_back({"Stereo In", SpeakerArr::kStereo, true});
    if (pluginInfo.wantsExtraInputPair) inputBuses.push_back({"Sidechain", SpeakerArr::kStereo, true});
    std::snprintf(outputBusName, sizeof outputBusName, "%s Stereo Out %i", pluginInfo.name ? pluginInfo.name : "", 1);
    for (int i = 1; i <= pluginInfo.outputPairs; ++i) outputBuses.push_back({outputBusName, SpeakerArr::kStereo, true});
    buildParameters();
    latencySamples = plugin->getInitialDelay();
    if (setup.sampleRate > 0) plugin->setSampleRate(static_cast<float>(setup.sampleRate));
    if (setup.maxSamplesPerBlock > 0) plugin->setBlockSize(setup.maxSamplesPerBlock);
    return kResultOk;
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
        }
        parameters.push_back(std::make_unique<OndraVST3Parameter>(property, static_cast<ParamID>(index), false,
                                                                  isBypass ? 1 : 0, isBypass));
        property->addListener(parameters.back().get(), false);
        property->addListener(this, false);
    }
    // This effect always has a bypass of its own; a plug-in without one would get "MByp" here.
    parameters.push_back(std::make_unique<OndraVST3Parameter>(&programChangeProperty, kProgramListId, true,
                                                              pluginInfo.programCount, false));
    programChangeProperty.addListener(parameters.back().get(), false);
    programChangeProperty.addListener(this, false);
    // Effects expose no MIDI controller parameters: only channel 0's ids are noted, and the last
    // entry stays 0, so no id falls into the MIDI range.
    std::fill(std::begin(midiParameterIds), std::end(midiParameterIds), 0);
    for (int controller = 0; controller < 130; ++controller) midiParameterIds[controller] = kFirstMidiParameterId + controller;
}

void Ondra_VST3::clearParameters() {
    for (auto& wrapper : parameters)
        if (Ondra::IPluginParameter* property = wrapper->getProperty()) {
            property->removeListener(wrapper.get());
            property->removeListener(this);
        }
    parameters.clear();
    bypassProperty = nullptr;
}

tresult Ondra_VST3::terminate() {
    clearParameters();
    if (componentHandler) {
        componentHandler->release();
        componentHandler = nullptr;
    }
    delete plugin;
    plugin = nullptr;
    return kResultOk;
}

OndraVST3Parameter* Ondra_VST3::findWrapper(ParamID id) const {
    if (id < parameters.size() && parameters[id]->getId() == id) return parameters[id].get();
    for (const auto& wrapper : parameters)
        if (wrapper->getId() == id) return wrapper.get();
    return nullptr;
}

tresult Ondra_VST3::getControllerClassId(TUID) { return kNotImplemented; }
tresult Ondra_VST3::setIoMode(IoMode) { return kNotImplemented; }

int32 Ondra_VST3::getBusCount(MediaType type, BusDirection direction) {
    if (type != kAudio) return 0;
    return static_cast<int32>(direction == kInput ? inputBuses.size() : outputBuses.size());
}

int Ondra_VST3::channelsOf(const Bus& bus) const {
    int channels = 0;
    for (SpeakerArrangement a = bus.arrangement; a; a &= a - 1) ++channels;
    return channels;
}

tresult Ondra_VST3::getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& info) {
    const std::vector<Bus>& buses = direction == kInput ? inputBuses : outputBuses;
    if (type != kAudio || index < 0 || index >= static_cast<int32>(buses.size())) return kInvalidArgument;
    const Bus& bus = buses[static_cast<size_t>(index)];
    std::memset(&info, 0, sizeof info);
    info.mediaType = kAudio;
    info.direction = direction;
    info.channelCount = channelsOf(bus);
    Vst3Text::toUtf16(bus.name, info.name, 128);
    info.busType = index == 0 ? kMain : kAux;
    info.flags = BusInfo::kDefaultActive;
    return kResultOk;
}

tresult Ondra_VST3::getRoutingInfo(RoutingInfo&, RoutingInfo&) { return kNotImplemented; }

tresult Ondra_VST3::activateBus(MediaType type, BusDirection direction, int32 index, TBool state) {
    std::vector<Bus>& buses = direction == kInput ? inputBuses : outputBuses;
    if (type != kAudio || index < 0 || index >= static_cast<int32>(buses.size())) return kInvalidArgument;
    buses[static_cast<size_t>(index)].active = state != 0;
    return kResultOk;
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
    if (stream->read(&program, 4, &got) != kResultOk || got != 4) return kResultFalse;
    plugin->setProgram(program);
    if (size > 0 && size < (64 << 20)) {
        std::vector<char> chunk(static_cast<size_t>(size));
        if (stream->read(chunk.data(), size, &got) == kResultOk && got == size) plugin->setChunk(chunk.data(), size);
    }
    return kResultOk;
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

tresult Ondra_VST3::setBusArrangements(SpeakerArrangement* inputs, int32 numIns, SpeakerArrangement* outputs,
                                       int32 numOuts) {
    if (numIns != static_cast<int32>(inputBuses.size()) || numOuts != static_cast<int32>(outputBuses.size()))
        return kResultFalse;
    for (int32 i = 0; i < numIns; ++i) inputBuses[static_cast<size_t>(i)].arrangement = inputs[i];
    for (int32 i = 0; i < numOuts; ++i) outputBuses[static_cast<size_t>(i)].arrangement = outputs[i];
    return kResultTrue;
}

tresult Ondra_VST3::getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) {
    const std::vector<Bus>& buses = direction == kInput ? inputBuses : outputBuses;
    if (index < 0 || index >= static_cast<int32>(buses.size())) return kInvalidArgument;
    arrangement = buses[static_cast<size_t>(index)].arrangement;
    return kResultOk;
}

tresult Ondra_VST3::canProcessSampleSize(int32 size) { return size == kSample32 ? kResultTrue : kResultFalse; }

uint32 Ondra_VST3::getLatencySamples() { return static_cast<uint32>(latencySamples); }

tresult Ondra_VST3::setupProcessing(ProcessSetup& newSetup) {
    if (!plugin) return kNotInitialized;
    if (newSetup.sampleRate != setup.sampleRate && newSetup.sampleRate > 0)
        plugin->setSampleRate(static_cast<float>(newSetup.sampleRate));
    if (newSetup.maxSamplesPerBlock != setup.maxSamplesPerBlock && newSetup.maxSamplesPerBlock > 0) {
        inputScratch.allocate(newSetup.maxSamplesPerBlock);
        outputScratch.allocate(newSetup.maxSamplesPerBlock);
        plugin->setBlockSize(newSetup.maxSamplesPerBlock);
    }
    setup = newSetup;
    return kResultOk;
}

tresult Ondra_VST3::setProcessing(TBool) { return kNotImplemented; }

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
    // 1: only the last point of each parameter queue counts.
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

    // 3-4: note events reach the plug-in before the block; this effect uses none.
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

    // 2: the audio part needs output buses and, with inputs, input buses.
    if (data.numOutputs < 1 || !data.outputs || (pluginInfo.inputPairs > 0 && (data.numInputs < 1 || !data.inputs))) {
        plugin->endAutomationBlock();
        return kResultOk;
    }
    const int32 n = data.numSamples;
    if (n > setup.maxSamplesPerBlock || n > inputScratch.capacity) return kResultFalse;
    if (n <= 0) {
        plugin->endAutomationBlock();
        return kResultOk;
    }

    Ondra::OndraAudioBlock block;
    const int32 inputs = std::min<int32>(data.numInputs, Ondra::OndraAudioBlock::kMaxPairs);
    for (int32 bus = 0; bus < inputs; ++bus) {
        const AudioBusBuffers& b = data.inputs[bus];
        float* left = b.numChannels > 0 && b.channelBuffers32 && b.channelBuffers32[0] ? b.channelBuffers32[0] : inputScratch.left;
        float* right = b.numChannels > 1 && b.channelBuffers32[1] ? b.channelBuffers32[1] : inputScratch.right;
        if (b.numChannels == 1) std::memcpy(inputScratch.right, left, static_cast<size_t>(n) * sizeof(float));
        block.in[bus].refer(left, right, n);
    }
    block.inputCount = inputs;
    const int32 outputs = std::min<int32>(data.numOutputs, Ondra::OndraAudioBlock::kMaxPairs);
    for (int32 bus = 0; bus < outputs; ++bus) {
        const AudioBusBuffers& b = data.outputs[bus];
        float* left = b.numChannels > 0 && b.channelBuffers32 && b.channelBuffers32[0] ? b.channelBuffers32[0] : outputScratch.left;
        float* right = b.numChannels > 1 && b.channelBuffers32[1] ? b.channelBuffers32[1] : outputScratch.right;
        block.out[bus].refer(left, right, n);
    }
    block.outputCount = outputs;

    // 5-10: transport, then the block in control chunks cut at the queued points.
    fillTransport(block, data.processContext);
    Ondra::ChunkingRules rules;
    rules.sliceAutomation = true;
    rules.wholeBlockBelowTwoChunks = true;
    Ondra::processInChunks(*plugin, block, n, rules);
    return kResultOk;
}

tresult Ondra_VST3::setComponentState(IBStream* state) { return setState(state); }

int32 Ondra_VST3::getParameterCount() { return static_cast<int32>(parameters.size()); }

tresult Ondra_VST3::getParameterInfo(int32 index, ParameterInfo& info) {
    if (index < 0 || index >= static_cast<int32>(parameters.size())) return kInvalidArgument;
    info = parameters[static_cast<size_t>(index)]->getInfo();
    return kResultOk;
}

tresult Ondra_VST3::getParamStringByValue(ParamID id, ParamValue value, String128 string) {
    OndraVST3Parameter* wrapper = findWrapper(id);
    if (!wrapper) return kInvalidArgument;
    wrapper->toString(value, string);
    return kResultOk;
}

tresult Ondra_VST3::getParamValueByString(ParamID id, TChar* string, ParamValue& value) {
    OndraVST3Parameter* wrapper = findWrapper(id);
    if (!wrapper || !string) return kInvalidArgument;
    return wrapper->fromString(string, value) ? kResultOk : kResultFalse;
}

ParamValue Ondra_VST3::normalizedParamToPlain(ParamID id, ParamValue value) {
    OndraVST3Parameter* wrapper = findWrapper(id);
    return wrapper ? wrapper->toPlain(value) : value;
}

ParamValue Ondra_VST3::plainParamToNormalized(ParamID id, ParamValue plain) {
    OndraVST3Parameter* wrapper = findWrapper(id);
    return wrapper ? wrapper->toNormalized(plain) : plain;
}

ParamValue Ondra_VST3::getParamNormalized(ParamID id) {
    OndraVST3Parameter* wrapper = findWrapper(id);
    return wrapper ? wrapper->getNormalized() : 0.0;
}

tresult Ondra_VST3::setParamNormalized(ParamID id, ParamValue value) {
    // Ordinary parameters reach the plug-in through process and the editor only.
    if (static_cast<int32>(id) != kProgramListId || !plugin) return kResultOk;
    OndraVST3Parameter* wrapper = findWrapper(id);
    if (!wrapper) return kResultOk;
    wrapper->storeNormalized(value);
    plugin->setProgram(static_cast<int>(wrapper->toPlain(value)));
    if (componentHandler) componentHandler->restartComponent(kParamValuesChanged);
    return kResultOk;
}

tresult Ondra_VST3::setComponentHandler(IComponentHandler* handler) {
    if (handler == componentHandler) return kResultTrue;
    if (componentHandler) componentHandler->release();
    componentHandler = handler;
    if (componentHandler) componentHandler->addRef();
    return kResultTrue;
}

IPlugView* Ondra_VST3::createView(FIDString) { return nullptr; }  // the editor comes later

tresult Ondra_VST3::setKnobMode(KnobMode) { return kResultFalse; }
tresult Ondra_VST3::openHelp(TBool) { return kResultFalse; }
tresult Ondra_VST3::openAboutBox(TBool) { return kResultFalse; }

int32 Ondra_VST3::getUnitCount() { return 1; }

tresult Ondra_VST3::getUnitInfo(int32 unitIndex, UnitInfo& info) {
    if (unitIndex != 0) return kInvalidArgument;
    std::memset(&info, 0, sizeof info);
    info.id = kRootUnitId;
    info.parentUnitId = kNoParentUnitId;
    Vst3Text::toUtf16("Root", info.name, 128);
    info.programListId = kProgramListId;
    return kResultOk;
}

int32 Ondra_VST3::getProgramListCount() { return pluginInfo.programCount > 1 ? 1 : 0; }

tresult Ondra_VST3::getProgramListInfo(int32 listIndex, ProgramListInfo& info) {
    if (listIndex != 0 || pluginInfo.programCount < 2) return kResultFalse;
    info.id = kProgramListId;
    info.programCount = pluginInfo.programCount;
    Vst3Text::toUtf16("Presets", info.name, 128);
    return kResultOk;
}

tresult Ondra_VST3::getProgramName(ProgramListID listId, int32 programIndex, String128 name) {
    if (listId != kProgramListId || !plugin) return kResultFalse;
    char text[256] = {0};
    plugin->getProgramNameIndexed(programIndex, text);
    Vst3Text::toUtf16(text, name, 128);
    return kResultOk;
}

tresult Ondra_VST3::getProgramInfo(ProgramListID, int32, CString attributeId, String128 attributeValue) {
    if (!attributeId || std::strcmp(attributeId, "MusicalInstrument") != 0) return kResultFalse;
    Vst3Text::toUtf16("Musical FX|Other", attributeValue, 128);
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
    if (!componentHandler) return;
    void* object = nullptr;
    if (componentHandler->queryInterface(IUnitHandler::iid.bytes, &object) == kResultOk && object) {
        auto* units = static_cast<IUnitHandler*>(object);
        units->notifyUnitSelection(0);
        units->notifyProgramListChange(kProgramListId, -1);
        units->release();
    }
}

void Ondra_VST3::notifyIoChanged() {
    if (componentHandler) componentHandler->restartComponent(kIoChanged | kLatencyChanged | kParamTitlesChanged);
}

void Ondra_VST3::beginEdit(int index) {
    OndraVST3Parameter* wrapper = index >= 0 ? findWrapper(static_cast<ParamID>(index)) : nullptr;
    if (!wrapper) return;
    wrapper->editing = true;
    if (componentHandler) componentHandler->beginEdit(static_cast<ParamID>(index));
}

void Ondra_VST3::endEdit(int index) {
    OndraVST3Parameter* wrapper = index >= 0 ? findWrapper(static_cast<ParamID>(index)) : nullptr;
    if (!wrapper) return;
    wrapper->editing = false;
    if (componentHandler) componentHandler->endEdit(static_cast<ParamID>(index));
}

void Ondra_VST3::automate(int index, float value) {
    if (index >= 0 && componentHandler) componentHandler->performEdit(static_cast<ParamID>(index), value);
}

void Ondra_VST3::updateDisplay() {
    if (componentHandler) componentHandler->restartComponent(kParamValuesChanged | kParamTitlesChanged);
}
