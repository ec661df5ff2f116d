#include "framework/parameters/ParameterProperty.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "framework/parameters/ParameterChangeListener.h"
#include "framework/parameters/ParameterCurve.h"

namespace Ondra {

void formatText(IPluginParameter* parameter, float value, char* out, bool withoutName, bool withUnit,
                bool precise) {
    if (!parameter || !out) return;
    int flags = 0;
    if (!withoutName) flags |= kDisplayWithName;
    if (withUnit) flags |= kDisplayWithUnit;
    if (!precise) flags |= kDisplayPlain;
    parameter->getDisplayText(value, out, flags);
}

void formatText(IPluginParameter* parameter, char* out, bool withoutName, bool withUnit, bool precise) {
    if (parameter) formatText(parameter, parameter->getValue(), out, withoutName, withUnit, precise);
}

double ParameterProperty::toNormalized(double v) {
    return normalizedFromPlain(static_cast<float>(v), minimum, maximum, curve);
}

double ParameterProperty::toValue(double normalized) {
    return plainFromNormalized(static_cast<float>(normalized), minimum, maximum, curve);
}

void ParameterProperty::textFromNormalized(double normalized, char* out) {
    getDisplayText(static_cast<float>(toValue(normalized)), out, 0);
}

void ParameterProperty::setUnitType(int type) {
    unitType = type;
    unitLabel.assign(unitLabelOf(type));
}

// A new limit clips the present value into the range, and only then tells the listeners.
void ParameterProperty::clipIntoRange() {
    const float v = getValue();
    const float low = std::min(minimum, maximum);
    const float high = std::max(minimum, maximum);
    if (v < low || v > high) {
        store(std::clamp(v, low, high));
        notify();
    }
}

void ParameterProperty::setMinimum(float limit) {
    if (limit == minimum) return;
    minimum = limit;
    clipIntoRange();
}

void ParameterProperty::setMaximum(float limit) {
    if (limit == maximum) return;
    maximum = limit;
    clipIntoRange();
}

void ParameterProperty::addListener(ParameterChangeListener* listener, bool notifyNow) {
    if (!listener) return;
    if (std::find(listeners.begin(), listeners.end(), listener) == listeners.end()) listeners.push_back(listener);
    if (notifyNow) listener->parameterChanged(this);
}

void ParameterProperty::removeListener(ParameterChangeListener* listener) {
    listeners.erase(std::remove(listeners.begin(), listeners.end(), listener), listeners.end());
}

void ParameterProperty::notify(ParameterChangeListener* except) {
    if (!isNotifyEnabled()) return;
    for (size_t i = listeners.size(); i-- > 0;) {
        if (i >= listeners.size()) continue;  // a listener removed itself or others
        ParameterChangeListener* listener = listeners[i];
        if (listener && listener != except) listener->parameterChanged(this);
    }
}

void ParameterProperty::setNormalized(ParameterChangeListener* except, float normalized) {
    store(static_cast<float>(toValue(std::clamp(normalized, 0.0f, 1.0f))));
    notify(except);
}

void ParameterProperty::setValue(ParameterChangeListener* except, float v) {
    const float low = std::min(minimum, maximum);
    const float high = std::max(minimum, maximum);
    store(std::clamp(v, low, high));
    notify(except);
}

void ParameterProperty::setFromText(const char* text) {
    if (!text) return;
    if (unitType == kUnitText) {
        if (linkedText) linkedText->assign(text);
        setValue(0.0f);
        return;
    }
    setValue(valueFromUnitText(unitType, text, minimum, maximum));
}

void ParameterProperty::resetToDefault() {
    const float low = std::min(minimum, maximum);
    const float high = std::max(minimum, maximum);
    store(std::clamp(defaultValue, low, high));
    notify();
}

void ParameterProperty::setDefault(float v) {
    defaultValue = std::clamp(v, std::min(minimum, maximum), std::max(minimum, maximum));
}

int ParameterProperty::getInt() {
    const float v = getValue();
    return static_cast<int>(v < 0 ? v - 0.02f : v + 0.02f);
}

void ParameterProperty::initFromRecord(const ParameterRecord& record) {
    id = record.id;
    key.assign(record.key);
    name.assign(record.name);
    automationName.assign(record.automationName);
    minimum = record.minimum;
    maximum = record.maximum;
    setUnitType(record.unitType);
    curve = record.curve;
    automatable = record.automatable;
    const float low = std::min(minimum, maximum);
    const float high = std::max(minimum, maximum);
    defaultValue = record.defaultValue;
    store(std::clamp(record.initialValue, low, high));
}

void ParameterProperty::getDisplayText(float v, char* out, int flags) {
    if (!out) return;
    char valueText[kParameterTextSize] = {0};
    const bool withUnit = flags & kDisplayWithUnit;
    if (formatValue) {
        formatValue(v, valueText, withUnit);
    } else if (formatParameter) {
        formatParameter(this, v, valueText, withUnit, linkedParameter);
    } else if (formatter) {
        formatter->format(v, valueText, withUnit);
    } else {
        formatUnitValue(unitType, v, minimum, maximum, !(flags & kDisplayPlain), valueText);
        if (unitType == kUnitText && linkedText) std::snprintf(valueText, sizeof valueText, "%s", linkedText->c_str());
        if (withUnit && unitLabel.c_str()[0]) {
            const size_t used = std::strlen(valueText);
            std::snprintf(valueText + used, sizeof valueText - used, " %s", unitLabel.c_str());
        }
    }
    if (flags & kDisplayWithName)
        std::snprintf(out, kParameterTextSize, "%s %s", name.c_str(), valueText);
    else
        std::snprintf(out, kParameterTextSize, "%s", valueText);
}

void ParameterProperty::copyFrom(ParameterProperty& other) {
    id = other.id;
    automationIndex = other.automationIndex;
    key.assign(other.key.c_str());
    name.assign(other.name.c_str());
    automationName.assign(other.automationName.c_str());
    unitLabel.assign(other.unitLabel.c_str());
    unitType = other.unitType;
    minimum = other.minimum;
    maximum = other.maximum;
    defaultValue = other.defaultValue;
    store(other.getValue());
    curve = other.curve;
    automatable = other.automatable;
    formatValue = other.formatValue;
    formatParameter = other.formatParameter;
    formatter = other.formatter;
    linkedParameter = other.linkedParameter;
    linkedText = other.linkedText;
}

}  // namespace Ondra
