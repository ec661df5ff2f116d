#pragma once
#include <atomic>

#include "adapters/vst3/sdk/Vst3Controller.h"
#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/ParameterChangeListener.h"

// The host's view of one effect parameter: its description and the normalised value the host last
// saw, kept in step with the parameter by listening to it.
class OndraVST3Parameter : public Ondra::ParameterChangeListener {
public:
    OndraVST3Parameter(Ondra::IPluginParameter* property, Steinberg::Vst::ParamID id, bool isProgramChange,
                       int stepCount, bool isBypass);
    ~OndraVST3Parameter() override;

    const Steinberg::Vst::ParameterInfo& getInfo() const { return info; }
    Steinberg::Vst::ParamID getId() const { return info.id; }
    Ondra::IPluginParameter* getProperty() const { return property; }
    bool isProgramChange() const { return programChange; }

    double getNormalized() const { return normalized.load(std::memory_order_relaxed); }
    void storeNormalized(double v) { normalized.store(v, std::memory_order_relaxed); }
    // Gives the property the value unless the user holds the control.
    bool setNormalized(double v);
    double toPlain(double v) const;
    double toNormalized(double plain) const;
    void toString(double v, Steinberg::String128 text) const;
    bool fromString(const Steinberg::TChar* text, double& v) const;

    void parameterChanged(Ondra::IPluginParameter* changed) override;

    std::atomic<bool> editing{false};
    bool lastEditing = false;

private:
    Ondra::IPluginParameter* property;
    Steinberg::Vst::ParameterInfo info{};
    std::atomic<double> normalized{0};
    bool programChange;
};
