#include "adapters/vst3/OndraVST3Parameter.h"

#include <cstdlib>

#include "adapters/vst3/Vst3Text.h"
#include "framework/parameters/ParameterCurve.h"
#include "framework/parameters/UnitType.h"

using namespace Steinberg;
using namespace Steinberg::Vst;

OndraVST3Parameter::OndraVST3Parameter(Ondra::IPluginParameter* prop, ParamID id, bool isProgramChangeParameter,
                                       int stepCount, bool isBypass)
    : property(prop), programChange(isProgramChangeParameter) {
    info.id = id;
    info.stepCount = stepCount;
    info.unitId = kRootUnitId;
    if (property) {
        info.defaultNormalizedValue = property->normalizedFromValue();
        Vst3Text::toUtf16(property->getAutomationName(), info.title, 128);
        Vst3Text::toUtf16(property->getName(), info.shortTitle, 128);
        Vst3Text::toUtf16(property->getUnitLabel(), info.units, 128);
        if (property->isAutomatable()) info.flags |= ParameterInfo::kCanAutomate;
        storeNormalized(property->normalizedFromValue());
    }
    if (programChange) {
        info.defaultNormalizedValue = 0;
        info.flags = ParameterInfo::kIsProgramChange | ParameterInfo::kIsList;
    }
    if (isBypass) {
        info.defaultNormalizedValue = 0;
        info.flags |= ParameterInfo::kIsBypass;
    }
}

OndraVST3Parameter::~OndraVST3Parameter() = default;

bool OndraVST3Parameter::setNormalized(double v) {
    if (!editing && property) property->setNormalized(this, static_cast<float>(v));
    storeNormalized(v);
    return true;
}

double OndraVST3Parameter::toPlain(double v) const {
    if (!property) return v;
    return Ondra::plainFromNormalized(static_cast<float>(v), property->getMinimum(), property->getMaximum(),
                                      property->getCurve());
}

double OndraVST3Parameter::toNormalized(double plain) const {
    if (!property) return plain;
    return Ondra::normalizedFromPlain(static_cast<float>(plain), property->getMinimum(), property->getMaximum(),
                                      property->getCurve());
}

void OndraVST3Parameter::toString(double v, String128 text) const {
    char out[Ondra::kParameterTextSize] = {0};
    if (property) property->getDisplayText(static_cast<float>(toPlain(v)), out, Ondra::kDisplayWithUnit);
    Vst3Text::toUtf16(out, text, 128);
}

bool OndraVST3Parameter::fromString(const TChar* text, double& v) const {
    char utf8[256];
    Vst3Text::toUtf8(text, utf8, sizeof utf8);
    char* end = nullptr;
    const double number = std::strtod(utf8, &end);
    if (end == utf8) return false;
    v = toNormalized(number);
    return true;
}

void OndraVST3Parameter::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed != property || !property) return;
    storeNormalized(property->normalizedFromValue());
    lastEditing = editing;
}
