#pragma once
#include <atomic>
#include <vector>

#include "adapters/vst3/OndraVST3Parameter.h"
#include "adapters/vst3/sdk-helpers/SingleComponentEffect.h"
#include "adapters/vst3/sdk-helpers/Unit.h"
#include "dsp/StereoBuffer.h"
#include "framework/plugin/OndraCallback.h"
#include "framework/plugin/OndraMidiEvent.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/parameters/ParameterProperty.h"

class Ondra_VST3_EditorView;

namespace Vinta {
class CVintariaEditor;
}

// One effect instance as a single VST 3 component: component, processor, controller, unit
// information, program list data and MIDI mapping in one object.
class Ondra_VST3 : public Steinberg::Vst::SingleComponentEffect,
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

    // FUnknown, for every interface of the object.
    Steinberg::tresult queryInterface(const Steinberg::TUID interfaceId, void** object) override;
    Steinberg::uint32 addRef() override { return SingleComponentEffect::addRef(); }
    Steinberg::uint32 release() override { return SingleComponentEffect::release(); }

    // IPluginBase
    Steinberg::tresult initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult terminate() override;

    // IComponent
    Steinberg::tresult setActive(Steinberg::TBool state) override;
    Steinberg::tresult setState(Steinberg::IBStream* state) override;
    Steinberg::tresult getState(Steinberg::IBStream* state) override;

    // IAudioProcessor
    Steinberg::uint32 getLatencySamples() override;
    // Mono or stereo on every bus; anything else is refused and the buses stay as they were.
    Steinberg::tresult setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs, Steinberg::int32 numIns,
                                          Steinberg::Vst::SpeakerArrangement* outputs, Steinberg::int32 numOuts) override;
    Steinberg::tresult setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
    Steinberg::tresult process(Steinberg::Vst::ProcessData& data) override;
    Steinberg::uint32 getTailSamples() override;

    // IEditController
    // Only "editor" names a view.
    Steinberg::IPlugView* createView(Steinberg::FIDString name) override;
    Steinberg::tresult setComponentState(Steinberg::IBStream* state) override;
    Steinberg::Vst::ParamValue getParamNormalized(Steinberg::Vst::ParamID id) override;
    Steinberg::tresult setParamNormalized(Steinberg::Vst::ParamID id, Steinberg::Vst::ParamValue value) override;

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
    // The editor's new size goes to the host through each open view's frame.
    bool sizeWindow(int width, int height) override;
    int getPluginType() override { return Ondra::kPluginTypeVST3; }
    void updateDisplay() override;

    // ParameterChangeListener: the wrappers keep the host's values; the controller's bypass follows
    // the effect's.
    void parameterChanged(Ondra::IPluginParameter* property) override;

    Ondra::OndraOS* getPlugin() const { return plugin; }
    // The effect's editor; null once the effect is gone.
    Vinta::CVintariaEditor* getEditor() const;
    // Views register while they live.
    void addView(Ondra_VST3_EditorView* view);
    void removeView(Ondra_VST3_EditorView* view);

private:
    // Views that outlive the effect keep nothing of it.
    void closeViews();
    void addBuses();
    void buildParameters();
    void clearParameters();
    // The wrapper of a plug-in parameter; null for unknown ids and the adapter's own list parameters.
    OndraVST3Parameter* findWrapper(Steinberg::Vst::ParamID id) const;
    void fillTransport(Ondra::OndraAudioBlock& block, const Steinberg::Vst::ProcessContext* context);
    // A call without audio still delivers its parameter changes, at once.
    void applyQueuedChanges();

    Ondra::OndraOS* plugin = nullptr;
    Ondra::OndraPluginInfo pluginInfo{};
    int classIndex;
    Steinberg::int32 uniqueId = 0;
    std::vector<Ondra::OndraMidiEvent> events;
    Ondra::ParameterProperty programChangeProperty;
    Ondra::IPluginParameter* bypassProperty = nullptr;
    Steinberg::int32 bypassParameterId = kMasterBypassId;
    // The bypass as the controller shows it: set by the host without reaching the effect, and
    // following the effect's bypass whenever that changes (processing, editor, a loaded state).
    std::atomic<double> shownBypass{0};
    int latencySamples = 0;
    Steinberg::int32 midiParameterIds[2080] = {};
    DSP::StereoBuffer inputScratch, outputScratch;
    float lastTempo = 10.0f;
    std::vector<Steinberg::Vst::Unit> units;
    std::vector<Ondra_VST3_EditorView*> views;
    Steinberg::Vst::UnitID selectedUnit = 0;
};
