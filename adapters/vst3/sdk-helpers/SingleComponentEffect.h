#pragma once
#include <atomic>

#include "adapters/vst3/sdk-helpers/AudioBus.h"
#include "adapters/vst3/sdk-helpers/BusList.h"
#include "adapters/vst3/sdk-helpers/EventBus.h"
#include "adapters/vst3/sdk-helpers/ParameterContainer.h"
#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"

namespace Steinberg::Vst {

// Component, processor and edit controller in one object: the bus lists, the parameter
// container, the stored process setup, the component handler and the plain answers of every
// operation. A subclass adds the processing and the state; one that implements further
// interfaces answers them in its own queryInterface and hands the rest to this one.
class SingleComponentEffect : public IComponent, public IAudioProcessor, public IEditController, public IEditController2 {
public:
    SingleComponentEffect();
    virtual ~SingleComponentEffect();
    SingleComponentEffect(const SingleComponentEffect&) = delete;
    SingleComponentEffect& operator=(const SingleComponentEffect&) = delete;

    // FUnknown: the four interfaces of this class; deletes itself at a count of zero.
    tresult queryInterface(const TUID interfaceId, void** object) override;
    uint32 addRef() override;
    uint32 release() override;

    // IPluginBase
    tresult initialize(FUnknown* context) override;
    // Removes parameters and buses and lets go of the component handler.
    tresult terminate() override;

    // IComponent
    tresult getControllerClassId(TUID classId) override;
    tresult setIoMode(IoMode mode) override;
    int32 getBusCount(MediaType type, BusDirection direction) override;
    tresult getBusInfo(MediaType type, BusDirection direction, int32 index, BusInfo& bus) override;
    tresult getRoutingInfo(RoutingInfo& inInfo, RoutingInfo& outInfo) override;
    tresult activateBus(MediaType type, BusDirection direction, int32 index, TBool state) override;
    tresult setActive(TBool state) override;
    tresult setState(IBStream* state) override;
    tresult getState(IBStream* state) override;

    // IAudioProcessor
    // One arrangement per audio bus, both lists complete.
    tresult setBusArrangements(SpeakerArrangement* inputs, int32 numIns, SpeakerArrangement* outputs,
                               int32 numOuts) override;
    tresult getBusArrangement(BusDirection direction, int32 index, SpeakerArrangement& arrangement) override;
    tresult canProcessSampleSize(int32 symbolicSampleSize) override;
    uint32 getLatencySamples() override;
    // Stores the setup.
    tresult setupProcessing(ProcessSetup& setup) override;
    tresult setProcessing(TBool state) override;
    tresult process(ProcessData& data) override;
    uint32 getTailSamples() override;

    // IEditController: the parameters answer from the container.
    tresult setComponentState(IBStream* state) override;
    int32 getParameterCount() override;
    tresult getParameterInfo(int32 paramIndex, ParameterInfo& info) override;
    tresult getParamStringByValue(ParamID id, ParamValue valueNormalized, String128 string) override;
    tresult getParamValueByString(ParamID id, TChar* string, ParamValue& valueNormalized) override;
    // An unknown id gives the value back.
    ParamValue normalizedParamToPlain(ParamID id, ParamValue valueNormalized) override;
    ParamValue plainParamToNormalized(ParamID id, ParamValue plainValue) override;
    // 0 for an unknown id.
    ParamValue getParamNormalized(ParamID id) override;
    tresult setParamNormalized(ParamID id, ParamValue value) override;
    // Counted: the old handler is released, the new one kept.
    tresult setComponentHandler(IComponentHandler* handler) override;
    IPlugView* createView(FIDString name) override;

    // IEditController2
    tresult setKnobMode(KnobMode mode) override;
    tresult openHelp(TBool onlyCheck) override;
    tresult openAboutBox(TBool onlyCheck) override;

protected:
    // The names in UTF-8.
    AudioBus* addAudioInput(const char* name, SpeakerArrangement arrangement, BusType busType = kMain,
                            uint32 flags = BusInfo::kDefaultActive);
    AudioBus* addAudioOutput(const char* name, SpeakerArrangement arrangement, BusType busType = kMain,
                             uint32 flags = BusInfo::kDefaultActive);
    EventBus* addEventInput(const char* name, int32 channels, BusType busType = kMain,
                            uint32 flags = BusInfo::kDefaultActive);
    void removeAllBusses();
    // Null for another media type or direction.
    BusList* getBusList(MediaType type, BusDirection direction);

    // To the component handler; kResultFalse without one.
    tresult beginEdit(ParamID id);
    tresult performEdit(ParamID id, ParamValue valueNormalized);
    tresult endEdit(ParamID id);
    tresult restartComponent(int32 flags);
    IComponentHandler* getComponentHandler() const { return componentHandler; }

    ParameterContainer parameters;
    ProcessSetup processSetup{kRealtime, kSample32, 0, 0};

private:
    std::atomic<uint32> references{1};
    BusList audioInputs{kAudio, kInput};
    BusList audioOutputs{kAudio, kOutput};
    BusList eventInputs{kEvent, kInput};
    BusList eventOutputs{kEvent, kOutput};
    IComponentHandler* componentHandler = nullptr;
};

}  // namespace Steinberg::Vst
