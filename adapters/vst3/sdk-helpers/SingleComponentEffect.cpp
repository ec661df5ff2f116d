#include "adapters/vst3/sdk-helpers/SingleComponentEffect.h"

namespace Steinberg::Vst {

namespace {
template <typename Interface>
bool asks(const TUID interfaceId) {
    return sameUid(interfaceId, Interface::iid);
}

AudioBus* audioBusAt(BusList* list, int32 index) {
    return list ? dynamic_cast<AudioBus*>(list->at(index)) : nullptr;
}
}  // namespace

SingleComponentEffect::SingleComponentEffect() = default;

SingleComponentEffect::~SingleComponentEffect() {
    if (componentHandler) componentHandler->release();
}

tresult SingleComponentEffect::queryInterface(const TUID interfaceId, void** object) {
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
    if (!*object) return kNoInterface;
    addRef();
    return kResultOk;
}

uint32 SingleComponentEffect::addRef() { return references.fetch_add(1) + 1; }

uint32 SingleComponentEffect::release() {
    const uint32 left = references.fetch_sub(1) - 1;
    if (left == 0) delete this;
    return left;
}

tresult SingleComponentEffect::initialize(FUnknown*) { return kResultOk; }

tresult SingleComponentEffect::terminate() {
    parameters.removeAll();
    removeAllBusses();
    setComponentHandler(nullptr);
    return kResultOk;
}

tresult SingleComponentEffect::getControllerClassId(TUID) { return kNotImplemented; }
tresult SingleComponentEffect::setIoMode(IoMode) { return kNotImplemented; }

int32 SingleComponentEffect::getBusCount(MediaType type, BusDirection direction) {
    const BusList* list = getBusList(type, direction);
    return list ? list->count() : 0;
}

tresult SingleComponentEffect::getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& bus) {
    const BusList* list = getBusList(type, direction);
    return list && list->getInfo(index, bus) ? kResultOk : kInvalidArgument;
}

tresult SingleComponentEffect::getRoutingInfo(RoutingInfo&, RoutingInfo&) { return kNotImplemented; }

tresult SingleComponentEffect::activateBus(MediaType type, BusDirection direction, int32 index, TBool state) {
    const BusList* list = getBusList(type, direction);
    Bus* bus = list ? list->at(index) : nullptr;
    if (!bus) return kInvalidArgument;
    bus->setActive(state != 0);
    return kResultOk;
}

tresult SingleComponentEffect::setActive(TBool) { return kResultOk; }
tresult SingleComponentEffect::setState(IBStream*) { return kNotImplemented; }
tresult SingleComponentEffect::getState(IBStream*) { return kNotImplemented; }

tresult SingleComponentEffect::setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                                                  SpeakerArrangement* outputs, int32 numOuts) {
    if (numIns != audioInputs.count() || numOuts != audioOutputs.count()) return kResultFalse;
    if ((numIns > 0 && !inputs) || (numOuts > 0 && !outputs)) return kInvalidArgument;
    for (int32 i = 0; i < numIns; ++i)
        if (AudioBus* bus = audioBusAt(&audioInputs, i)) bus->setArrangement(inputs[i]);
    for (int32 i = 0; i < numOuts; ++i)
        if (AudioBus* bus = audioBusAt(&audioOutputs, i)) bus->setArrangement(outputs[i]);
    return kResultTrue;
}

tresult SingleComponentEffect::getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) {
    const AudioBus* bus = audioBusAt(getBusList(kAudio, direction), index);
    if (!bus) return kInvalidArgument;
    arrangement = bus->getArrangement();
    return kResultOk;
}

tresult SingleComponentEffect::canProcessSampleSize(int32 size) {
    return size == kSample32 ? kResultTrue : kResultFalse;
}

uint32 SingleComponentEffect::getLatencySamples() { return 0; }

tresult SingleComponentEffect::setupProcessing(ProcessSetup& setup) {
    processSetup = setup;
    return kResultOk;
}

tresult SingleComponentEffect::setProcessing(TBool) { return kNotImplemented; }
tresult SingleComponentEffect::process(ProcessData&) { return kNotImplemented; }
uint32 SingleComponentEffect::getTailSamples() { return 0; }

tresult SingleComponentEffect::setComponentState(IBStream*) { return kNotImplemented; }

int32 SingleComponentEffect::getParameterCount() { return parameters.getParameterCount(); }

tresult SingleComponentEffect::getParameterInfo(int32 index, ParameterInfo& info) {
    const Parameter* parameter = parameters.getParameterByIndex(index);
    if (!parameter) return kInvalidArgument;
    info = parameter->getInfo();
    return kResultOk;
}

tresult SingleComponentEffect::getParamStringByValue(ParamID id, ParamValue value, String128 string) {
    const Parameter* parameter = parameters.getParameter(id);
    if (!parameter || !string) return kInvalidArgument;
    parameter->toString(value, string);
    return kResultOk;
}

tresult SingleComponentEffect::getParamValueByString(ParamID id, TChar* string, ParamValue& value) {
    const Parameter* parameter = parameters.getParameter(id);
    if (!parameter || !string) return kInvalidArgument;
    return parameter->fromString(string, value) ? kResultOk : kResultFalse;
}

ParamValue SingleComponentEffect::normalizedParamToPlain(ParamID id, ParamValue value) {
    const Parameter* parameter = parameters.getParameter(id);
    return parameter ? parameter->toPlain(value) : value;
}

ParamValue SingleComponentEffect::plainParamToNormalized(ParamID id, ParamValue plain) {
    const Parameter* parameter = parameters.getParameter(id);
    return parameter ? parameter->toNormalized(plain) : plain;
}

ParamValue SingleComponentEffect::getParamNormalized(ParamID id) {
    const Parameter* parameter = parameters.getParameter(id);
    return parameter ? parameter->getNormalized() : 0.0;
}

tresult SingleComponentEffect::setParamNormalized(ParamID id, ParamValue value) {
    Parameter* parameter = parameters.getParameter(id);
    if (!parameter) return kResultFalse;
    parameter->setNormalized(value);
    return kResultOk;
}

tresult SingleComponentEffect::setComponentHandler(IComponentHandler* handler) {
    if (handler == componentHandler) return kResultTrue;
    if (componentHandler) componentHandler->release();
    componentHandler = handler;
    if (componentHandler) componentHandler->addRef();
    return kResultTrue;
}

IPlugView* SingleComponentEffect::createView(FIDString) { return nullptr; }

tresult SingleComponentEffect::setKnobMode(KnobMode) { return kResultFalse; }
tresult SingleComponentEffect::openHelp(TBool) { return kResultFalse; }
tresult SingleComponentEffect::openAboutBox(TBool) { return kResultFalse; }

AudioBus* SingleComponentEffect::addAudioInput(const char* name, SpeakerArrangement arrangement, BusType busType,
                                               uint32 flags) {
    return static_cast<AudioBus*>(audioInputs.add(std::make_unique<AudioBus>(name, busType, flags, arrangement)));
}

AudioBus* SingleComponentEffect::addAudioOutput(const char* name, SpeakerArrangement arrangement, BusType busType,
                                                uint32 flags) {
    return static_cast<AudioBus*>(audioOutputs.add(std::make_unique<AudioBus>(name, busType, flags, arrangement)));
}

EventBus* SingleComponentEffect::addEventInput(const char* name, int32 channels, BusType busType, uint32 flags) {
    return static_cast<EventBus*>(eventInputs.add(std::make_unique<EventBus>(name, busType, flags, channels)));
}

void SingleComponentEffect::removeAllBusses() {
    for (BusList* list : {&audioInputs, &audioOutputs, &eventInputs, &eventOutputs}) list->clear();
}

BusList* SingleComponentEffect::getBusList(MediaType type, BusDirection direction) {
    if (type == kAudio) return direction == kInput ? &audioInputs : direction == kOutput ? &audioOutputs : nullptr;
    if (type == kEvent) return direction == kInput ? &eventInputs : direction == kOutput ? &eventOutputs : nullptr;
    return nullptr;
}

tresult SingleComponentEffect::beginEdit(ParamID id) {
    return componentHandler ? componentHandler->beginEdit(id) : kResultFalse;
}

tresult SingleComponentEffect::performEdit(ParamID id, ParamValue valueNormalized) {
    return componentHandler ? componentHandler->performEdit(id, valueNormalized) : kResultFalse;
}

tresult SingleComponentEffect::endEdit(ParamID id) {
    return componentHandler ? componentHandler->endEdit(id) : kResultFalse;
}

tresult SingleComponentEffect::restartComponent(int32 flags) {
    return componentHandler ? componentHandler->restartComponent(flags) : kResultFalse;
}

}  // namespace Steinberg::Vst
