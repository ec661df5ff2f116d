#pragma once
#include <atomic>

#include "adapters/vst3/sdk-helpers/Parameter.h"
#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/ParameterChangeListener.h"

// The host's view of one effect parameter: its description and the normalised value the host last
// saw, kept in step with the parameter by listening to it.
class OndraVST3Parameter : public Steinberg::Vst::Parameter, public Ondra::ParameterChangeListener {
public:
    OndraVST3Parameter(Ondra::IPluginParameter* property, Steinberg::Vst::ParamID id, bool isProgramChange,
                       int stepCount, bool isBypass);
    ~OndraVST3Parameter() override;

    Ondra::IPluginParameter* getProperty() const { return property; }
    bool isProgramChange() const { return programChange; }

    // The host's value as it came, with nothing passed on.
    using Parameter::storeNormalized;
    // Gives the property the value unless the user holds the control.
    bool setNormalized(Steinberg::Vst::ParamValue v) override;
    Steinberg::Vst::ParamValue toPlain(Steinberg::Vst::ParamValue v) const override;
    Steinberg::Vst::ParamValue toNormalized(Steinberg::Vst::ParamValue plain) const override;
    void toString(Steinberg::Vst::ParamValue v, Steinberg::String128 text) const override;

    void parameterChanged(Ondra::IPluginParameter* changed) override;

    std::atomic<bool> editing{false};
    bool lastEditing = false;

private:
    Ondra::IPluginParameter* property;
    bool programChange;
};
