#include "adapters/vst3/OndraVST3Parameter.h"

#include "adapters/vst3/sdk-helpers/StringConvert.h"
#include "framework/parameters/ParameterCurve.h"
#include "framework/parameters/UnitType.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
ParameterInfo describe(Ondra::IPluginParameter* property, ParamID id, bool isProgramChange, int stepCount,
                       bool isBypass) {
    ParameterInfo info{};
    info.id = id;
    info.stepCount = stepCount;
    info.unitId = kRootUnitId;
    if (property) {
        info.defaultNormalizedValue = property->normalizedFromValue();
        StringConvert::toString128(property->getAutomationName(), info.title);
        StringConvert::toString128(property->getName(), info.shortTitle);
        StringConvert::toString128(property->getUnitLabel(), info.units);
        if (property->isAutomatable()) info.flags |= ParameterInfo::kCanAutomate;
    }
    if (isProgramChange) {
        info.defaultNormalizedValue = 0;
        info.flags = ParameterInfo::kIsProgramChange | ParameterInfo::kIsList;
    }
    if (isBypass) {
        info.defaultNormalizedValue = 0;
        info.flags |= ParameterInfo::kIsBypass;
    }
    return info;
}
}  // namespace

OndraVST3Parameter::OndraVST3Parameter(Ondra::IPluginParameter* prop, ParamID id, bool isProgramChangeParameter,
                                       int stepCount, bool isBypass)
    : Parameter(describe(prop, id, isProgramChangeParameter, stepCount, isBypass)),
      property(prop),
      programChange(isProgramChangeParameter) {
    if (property) storeNormalized(property->normalizedFromValue());
}

OndraVST3Parameter::~OndraVST3Parameter() = default;

bool OndraVST3Parameter::setNormalized(ParamValue v) {
    if (!editing && property) property->setNormalized(this, static_cast<float>(v));
    storeNormalized(v);
    return true;
}

ParamValue OndraVST3Parameter::toPlain(ParamValue v) const {
    if (!property) return v;
    return Ondra::plainFromNormalized(static_cast<float>(v), property->getMinimum(), property->getMaximum(),
                                      property->getCurve());
}

ParamValue OndraVST3Parameter::toNormalized(ParamValue plain) const {
    if (!property) return plain;
    return Ondra::normalizedFromPlain(static_cast<float>(plain), property->getMinimum(), property->getMaximum(),
                                      property->getCurve());
}

void OndraVST3Parameter::toString(ParamValue v, String128 text) const {
    char out[Ondra::kParameterTextSize] = {0};
    if (property) property->getDisplayText(static_cast<float>(toPlain(v)), out, Ondra::kDisplayWithUnit);
    StringConvert::toString128(out, text);
}

void OndraVST3Parameter::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed != property || !property) return;
    storeNormalized(property->normalizedFromValue());
    lastEditing = editing;
}
