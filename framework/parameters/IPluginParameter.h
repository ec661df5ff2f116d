#pragma once
#include "CORE/strings/CString.h"
#include "framework/parameters/ParameterRecord.h"

namespace Ondra {

class ParameterChangeListener;

// The one view of a parameter that adapters, editor and effect share. The slot order is part of
// the embedding interface: programs compiled against it call through this table.
class IPluginParameter {
public:
    virtual Core::CString* keyBuffer() = 0;
    virtual Core::CString* nameBuffer() = 0;
    virtual Core::CString* unitBuffer() = 0;
    virtual double normalizedFromValue() = 0;
    virtual void setNormalized(double normalized) = 0;
    virtual void textFromNormalized(double normalized, char* out) = 0;
    virtual void reservedSlot6() {}
    virtual double toNormalized(double value) = 0;
    virtual double toValue(double normalized) = 0;
    virtual int query(int, void*) { return 0; }
    virtual double defaultNormalizedDouble() = 0;
    virtual ~IPluginParameter() = default;
    virtual void setName(const char* text) = 0;
    virtual const char* getName() = 0;
    virtual void copyName(char* out) = 0;
    virtual void setAutomationName(const char* text) = 0;
    virtual const char* getAutomationName() = 0;
    virtual void copyAutomationName(char* out) = 0;
    virtual void setKey(const char* text) = 0;
    virtual const char* getKey() = 0;
    virtual const char* getUnitLabel() = 0;
    virtual void copyUnitLabel(char* out) = 0;
    virtual void setUnitType(int type) = 0;
    virtual int getUnitType() = 0;
    virtual float getMinimum() = 0;
    virtual float getMaximum() = 0;
    virtual void setMinimum(float minimum) = 0;
    virtual void setMaximum(float maximum) = 0;
    virtual void addListener(ParameterChangeListener* listener, bool notifyNow) = 0;
    virtual void removeListener(ParameterChangeListener* listener) = 0;
    virtual void setNormalized(ParameterChangeListener* except, float normalized) = 0;
    virtual void setNormalized(float normalized) = 0;
    virtual void setFromText(const char* text) = 0;
    virtual void setValue(ParameterChangeListener* except, float value) = 0;
    virtual void setValue(float value) = 0;
    virtual void resetToDefault() = 0;
    virtual void setDefault(float value) = 0;
    virtual float getDefaultNormalized() = 0;
    virtual float defaultNormalized() = 0;
    virtual float getDefault() = 0;
    virtual void setCurve(float curve) = 0;
    virtual float getCurve() = 0;
    virtual int getInt() = 0;
    virtual bool getBool() = 0;
    virtual float getNormalized() = 0;
    virtual float getValue() = 0;
    virtual void setAutomatable(bool automatable) = 0;
    virtual bool isAutomatable() = 0;
    virtual void initFromRecord(const ParameterRecord& record) = 0;
    virtual IPluginParameter* getLinked() = 0;
    // flags: bit 0 append the unit, bit 1 start with the name, bit 2 plain form (no decimals).
    virtual void getDisplayText(float value, char* out, int flags) = 0;
};

enum DisplayFlags : int { kDisplayWithUnit = 1, kDisplayWithName = 2, kDisplayPlain = 4 };

// Text of the present (or a given) value with the usual flag combination.
void formatText(IPluginParameter* parameter, char* out, bool withoutName, bool withUnit, bool precise);
void formatText(IPluginParameter* parameter, float value, char* out, bool withoutName, bool withUnit, bool precise);

}  // namespace Ondra
