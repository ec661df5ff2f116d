#pragma once
#include <atomic>
#include <cstdint>
#include <vector>

#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/UnitType.h"

namespace Ondra {

using FormatValueFunction = void (*)(float value, char* out, bool withUnit);
using FormatParameterFunction = void (*)(IPluginParameter* parameter, float value, char* out, bool withUnit,
                                         IPluginParameter* linked);

class IParameterFormatter {
public:
    virtual void format(float value, char* out, bool withUnit) = 0;
    virtual ~IParameterFormatter() = default;
};

// The one implementation of IPluginParameter. The value is written from any thread; listeners
// are told on the setter's thread, last added first.
class ParameterProperty : public IPluginParameter {
public:
    ParameterProperty() { setUnitType(kUnitFraction); }
    explicit ParameterProperty(const ParameterRecord& record) { initFromRecord(record); }
    ParameterProperty(const ParameterProperty&) = delete;
    ParameterProperty& operator=(const ParameterProperty&) = delete;

    Core::CString* keyBuffer() override { return &key; }
    Core::CString* nameBuffer() override { return &name; }
    Core::CString* unitBuffer() override { return &unitLabel; }
    double normalizedFromValue() override { return toNormalized(getValue()); }
    void setNormalized(double normalized) override { setNormalized(static_cast<float>(normalized)); }
    void textFromNormalized(double normalized, char* out) override;
    double toNormalized(double value) override;
    double toValue(double normalized) override;
    double defaultNormalizedDouble() override { return toNormalized(defaultValue); }
    void setName(const char* text) override { name.assign(text); }
    const char* getName() override { return name.c_str(); }
    void copyName(char* out) override { name.copyTo(out); }
    void setAutomationName(const char* text) override { automationName.assign(text); }
    const char* getAutomationName() override { return automationName.c_str(); }
    void copyAutomationName(char* out) override { automationName.copyTo(out); }
    void setKey(const char* text) override { key.assign(text); }
    const char* getKey() override { return key.c_str(); }
    const char* getUnitLabel() override { return unitLabel.c_str(); }
    void copyUnitLabel(char* out) override { unitLabel.copyTo(out); }
    void setUnitType(int type) override;
    int getUnitType() override { return unitType; }
    float getMinimum() override { return minimum; }
    float getMaximum() override { return maximum; }
    void setMinimum(float limit) override;
    void setMaximum(float limit) override;
    void addListener(ParameterChangeListener* listener, bool notifyNow) override;
    void removeListener(ParameterChangeListener* listener) override;
    void setNormalized(ParameterChangeListener* except, float normalized) override;
    void setNormalized(float normalized) override { setNormalized(nullptr, normalized); }
    void setFromText(const char* text) override;
    void setValue(ParameterChangeListener* except, float v) override;
    void setValue(float v) override { setValue(nullptr, v); }
    void resetToDefault() override;
    void setDefault(float v) override;
    float getDefaultNormalized() override { return static_cast<float>(toNormalized(defaultValue)); }
    float defaultNormalized() override { return getDefaultNormalized(); }
    float getDefault() override { return defaultValue; }
    void setCurve(float shaping) override { curve = shaping; }
    float getCurve() override { return curve; }
    int getInt() override;
    bool getBool() override { return getValue() >= 0.5f; }
    float getNormalized() override { return static_cast<float>(toNormalized(getValue())); }
    float getValue() override { return value.load(std::memory_order_relaxed); }
    void setAutomatable(bool on) override { automatable = on; }
    bool isAutomatable() override { return automatable; }
    void initFromRecord(const ParameterRecord& record) override;
    IPluginParameter* getLinked() override { return linkedParameter; }
    void getDisplayText(float v, char* out, int flags) override;

    int32_t getId() const { return id; }
    void setId(int32_t newId) { id = newId; }
    int32_t getAutomationIndex() const { return automationIndex; }
    void setAutomationIndex(int32_t index) { automationIndex = index; }
    void setFormatValue(FormatValueFunction f) { formatValue = f; }
    void setFormatParameter(FormatParameterFunction f) { formatParameter = f; }
    void setFormatter(IParameterFormatter* f) { formatter = f; }
    void setLinked(IPluginParameter* parameter) { linkedParameter = parameter; }
    // A text parameter keeps its text in a buffer of its owner's.
    void setLinkedText(Core::CString* text) { linkedText = text; }
    Core::CString* getLinkedText() const { return linkedText; }
    void setNotifyEnabled(bool on) { notifyEnabled.store(on, std::memory_order_relaxed); }
    bool isNotifyEnabled() const { return notifyEnabled.load(std::memory_order_relaxed); }
    // Tells every listener but `except`, last added first, if notification is on.
    void notify(ParameterChangeListener* except = nullptr);
    // Id, names and numbers of another parameter; not its listeners.
    void copyFrom(ParameterProperty& other);
    size_t listenerCount() const { return listeners.size(); }

private:
    void store(float v) { value.store(v, std::memory_order_relaxed); }
    void clipIntoRange();

    int32_t id = 0;
    int32_t automationIndex = -1;
    FormatValueFunction formatValue = nullptr;
    FormatParameterFunction formatParameter = nullptr;
    IParameterFormatter* formatter = nullptr;
    Core::CStringBufferd<64> key;
    Core::CStringBufferd<128> name;
    Core::CStringBufferd<64> automationName;
    Core::CStringBufferd<64> unitLabel;
    int32_t unitType = kUnitFraction;
    float minimum = 0.0f;
    float maximum = 1.0f;
    float defaultValue = 0.0f;
    std::atomic<float> value{0.0f};
    float curve = 0.0f;
    std::vector<ParameterChangeListener*> listeners;
    bool automatable = true;
    IPluginParameter* linkedParameter = nullptr;
    Core::CString* linkedText = nullptr;
    std::atomic<bool> notifyEnabled{true};
};

}  // namespace Ondra
