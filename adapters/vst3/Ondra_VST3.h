#pragma once
#include <atomic>
#include <memory>
#include <vector>

#include "adapters/vst3/OndraVST3Parameter.h"
#include "adapters/vst3/sdk/Vst3Controller.h"
#include "adapters/vst3/sdk/Vst3Processor.h"
#include "framework/StereoBuffer.h"
#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraMidiEvent.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/parameters/ParameterProperty.h"

// One effect instance as a single VST 3 component: component, processor, controller, unit
// information, program list data and MIDI mapping in one object.
class Ondra_VST3 : public Steinberg::Vst::IComponent,
                   public Steinberg::Vst::IAudioProcessor,
                   public Steinberg::Vst::IEditController,
                   public Steinberg::Vst::IEditController2,
                   public Ondra::OndraCallback,
                   public Ondra::ParameterChangeListener,
                   public Steinberg::Vst::IUnitInfo,
                   public Steinberg::Vst::IProgramListData,
                   public Steinberg::Vst::IMidiMapping {
public:
    static constexpr Steinberg::int32 kProgramListId = 0x506C7374;  // "Plst"
    static constexpr Steinberg::int32 kMasterBypassId = 0x4D427970;  // "MByp"
    static constexpr Steinberg::int32 kFirstMidiParameterId = 0x43303030;  // "C000"
    static constexpr Steinberg::uint32 kTailSamples = 44100;

    explicit Ondra_VST3(int classIndex);
    ~Ondra_VST3() override;

    // FUnknown
    Steinberg::tresult queryInterface(const Steinberg::TUID interfaceId, void** object) override;
    Steinberg::uint32 addRef() override;
    Steinberg::uint32 release() override;

    // IPluginBase
    Steinberg::tresult initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult terminate() override;

    // IComponent
    Steinberg::tresult getControllerClassId(Steinberg::TUID classId) override;
    Steinberg::tresult setIoMode(Steinberg::Vst::IoMode mode) override;
    Steinberg::int32 getBusCount(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection direction) override;
    Steinberg::tresult getBusInfo(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection direction,
                                  Steinberg::int32 index, Steinberg::Vst::BusInfo& bus) override;
    Steinberg::tresult getRoutingInfo(Steinberg::Vst::RoutingInfo& inInfo, Steinberg::Vst::RoutingInfo& outInfo) override;
    Steinberg::tresult activateBus(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection direction,
                                   Steinberg::int32 index, Steinberg::TBool state) override;
    Steinberg::tresult setActive(Steinberg::TBool state) override;
    Steinberg::tresult setState(Steinberg::IBStream* state) override;
    Steinberg::tresult getState(Steinberg::IBStream* state) override;

    // IAudioProcessor
    Steinberg::tresult setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs, Steinberg::int32 numIns,
                                          Steinberg::Vst::SpeakerArrangement* outputs, Steinberg::int32 numOuts) override;
    Steinberg::tresult getBusArrangement(Steinberg::Vst::BusDirection direction, Steinberg::int32 index,
                                         Steinberg::Vst::SpeakerArrangement& arrangement) override;
    Steinberg::tresult canProcessSampleSize(Steinberg::int32 symbolicSampleSize) override;
    Steinberg::uint32 getLatencySamples() override;
    Steinberg::tresult setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
    Steinberg::tresult setProcessing(Steinberg::TBool state) override;
    Steinberg::tresult process(Steinberg::Vst::ProcessData& data) override;
    Steinberg::uint32 getTailSamples() override;

    // IEditController
    Steinberg::tresult setComponentState(Steinberg::IBStream* state) override;
    Steinberg::int32 getParameterCount() override;
    Steinberg::tresult getParameterInfo(Steinberg::int32 paramIndex, Steinberg::Vst::ParameterInfo& info) override;
    Steinberg::tresult getParamStringByValue(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue valueNormalized,
                                             Steinberg::String128 string) override;
    Steinberg::tresult getParamValueByString(Steinberg::Vst::ParamID id, Steinberg::TChar* string,
                                             Steinberg::Vst::ParamValue& valueNormalized) override;
    Steinberg::Vst::ParamValue normalizedParamToPlain(Steinberg::Vst::ParamID id,
                                                      Steinberg::Vst::ParamValue valueNormalized) override;
    Steinberg::Vst::ParamValue plainParamToNormalized(Steinberg::Vst::ParamID id,
                                                      Steinberg::Vst::ParamValue plainValue) override;
    Steinberg::Vst::ParamValue getParamNormalized(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult setParamNormalized(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value) override;
    Steinberg::tresult setComponentHandler(Steinberg::Vst::IComponentHandler* handler) override;
    Steinberg::IPlugView* createView(Steinberg::FIDString name) override;

    // IEditController2
    Steinberg::tresult setKnobMode(Steinberg::Vst::KnobMode mode) override;
    Steinberg::tresult openHelp(Steinberg::TBool onlyCheck) override;
    Steinberg::tresult openAboutBox(Steinberg::TBool onlyCheck) override;

    // IUnitInfo
    Steinberg::int32 getUnitCount() override;
    Steinberg::tresult getUnitInfo(Steinberg::int32 unitIndex, Steinberg::Vst::UnitInfo& info) override;
    Steinberg::int32 getProgramListCount() override;
    Steinberg::tresult getProgramListInfo(Steinberg::int32 listIndex, Steinberg::Vst::ProgramListInfo& info) override;
    Steinberg::tresult getProgramName(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex,
                                      Steinberg::String128 name) override;
    Steinberg::tresult getProgramInfo(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex,
                                      Steinberg::CString attributeId, Steinberg::String128 attributeValue) override;
    Steinberg::tresult hasProgramPitchNames(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex) override;
    Steinberg::tresult getProgramPitchName(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex,
                                           Steinberg::int16 midiPitch, Steinberg::String128 name) override;
    Steinberg::Vst::UnitID getSelectedUnit() override;
    Steinberg::tresult selectUnit(Steinberg::Vst::UnitID unitId) override;
    Steinberg::tresult getUnitByBus(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection direction,
                                    Steinberg::int32 busIndex, Steinberg::int32 channel,
                                    Steinberg::Vst::UnitID& unitId) override;
    Steinberg::tresult setUnitProgramData(Steinberg::int32 listOrUnitId, Steinberg::int32 programIndex,
                                          Steinberg::IBStream* data) override;

    // IProgramListData
    Steinberg::tresult programDataSupported(Steinberg::Vst::ProgramListID listId) override;
    Steinberg::tresult getProgramData(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex,
                                      Steinberg::IBStream* data) override;
    Steinberg::tresult setProgramData(Steinberg::Vst::ProgramListID listId, Steinberg::int32 programIndex,
                                      Steinberg::IBStream* data) override;

    // IMidiMapping
    Steinberg::tresult getMidiControllerAssignment(Steinberg::int32 busIndex, Steinberg::int16 channel,
                                                   Steinberg::Vst::CtrlNumber midiControllerNumber,
                                                   Steinberg::Vst::ParamID& id) override;

    // OndraCallback
    void getHostVendorString(char* text) override;
    void getHostProductString(char* text) override;
    int getHostVendorVersion() override { return -1; }
    void notifyDisplayChanged() override;
    void notifyIoChanged() override;
    void setNumInputs(int) override {}
    void setNumOutputs(int) override {}
    void setInitialDelay(int samples) override { latencySamples = samples; }
    void beginEdit(int index) override;
    void endEdit(int index) override;
    void automate(int index, float value) override;
    float getHostTempo() override { return lastTempo; }
    bool sizeWindow(int, int) override { return true; }
    int getPluginType() override { return 2; }
    void updateDisplay() override;

    // ParameterChangeListener: the wrappers keep the host's values; nothing to do here.
    void parameterChanged(Ondra::IPluginParameter*) override {}

    Ondra::OndraOS* getPlugin() const { return plugin; }

private:
    struct Bus {
        const char* name;
        Steinberg::Vst::SpeakerArrangement arrangement;
        bool active;
    };

    void buildParameters();
    void clearParameters();
    OndraVST3Parameter* findWrapper(Steinberg::Vst::ParamID id) const;
    int channelsOf(const Bus& bus) const;
    void fillTransport(Ondra::OndraAudioBlock& block, const Steinberg::Vst::ProcessContext* context);

    std::atomic<Steinberg::uint32> references{1};
    Ondra::OndraOS* plugin = nullptr;
    Ondra::OndraPluginInfo pluginInfo{};
    int classIndex;
    Steinberg::int32 uniqueId = 0;
    std::vector<Ondra::OndraMidiEvent> events;
    Ondra::ParameterProperty programChangeProperty;
    Steinberg::Vst::IComponentHandler* componentHandler = nullptr;
    Ondra::IPluginParameter* bypassProperty = nullptr;
    Steinberg::int32 bypassParameterId = kMasterBypassId;
    int latencySamples = 0;
    Steinberg::int32 midiParameterIds[2080] = {};
    Ondra::StereoBuffer inputScratch, outputScratch;
    float lastTempo = 10.0f;
    std::vector<std::unique_ptr<OndraVST3Parameter>> parameters;
    std::vector<Bus> inputBuses, outputBuses;
    Steinberg::Vst::ProcessSetup setup{Steinberg::Vst::kRealtime, Steinberg::Vst::kSample32, 0, 0};
    Steinberg::Vst::UnitID selectedUnit = 0;
    char outputBusName[128] = {};
};
