#include "adapters/vst3/sdk-helpers/Parameter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "adapters/vst3/sdk-helpers/StringConvert.h"

namespace Steinberg::Vst {

Parameter::Parameter(const ParameterInfo& description) : info(description), value(description.defaultNormalizedValue) {}

Parameter::Parameter(const char* title, ParamID id, const char* units, ParamValue defaultNormalized, int32 stepCount,
                     int32 flags, UnitID unitId, const char* shortTitle)
    : value(defaultNormalized) {
    info.id = id;
    StringConvert::toString128(title, info.title);
    StringConvert::toString128(shortTitle ? shortTitle : title, info.shortTitle);
    StringConvert::toString128(units, info.units);
    info.stepCount = stepCount;
    info.defaultNormalizedValue = defaultNormalized;
    info.unitId = unitId;
    info.flags = flags;
}

bool Parameter::setNormalized(ParamValue normalized) {
    const ParamValue clamped = std::clamp(normalized, 0.0, 1.0);
    if (clamped == getNormalized()) return false;
    storeNormalized(clamped);
    return true;
}

void Parameter::toString(ParamValue normalized, String128 text) const {
    char out[64];
    std::snprintf(out, sizeof out, "%.4f", toPlain(normalized));
    StringConvert::toString128(out, text);
}

bool Parameter::fromString(const TChar* text, ParamValue& normalized) const {
    char utf8[256];
    StringConvert::toUtf8(text, utf8, sizeof utf8);
    char* end = nullptr;
    const double number = std::strtod(utf8, &end);
    if (end == utf8) return false;
    normalized = toNormalized(number);
    return true;
}

}  // namespace Steinberg::Vst
