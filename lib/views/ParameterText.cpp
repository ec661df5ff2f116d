#include "lib/views/ParameterText.h"

#include <cstdio>

#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/UnitType.h"

namespace Vinta {

bool isTextParameter(Ondra::IPluginParameter* parameter) {
    return parameter && parameter->getUnitType() == Ondra::kUnitText;
}

void copyParameterText(Ondra::IPluginParameter* parameter, char* out, size_t capacity, bool withName,
                       bool withUnit, bool precise) {
    if (!out || capacity == 0) return;
    out[0] = 0;
    if (!parameter) return;
    char text[Ondra::kParameterTextSize + 1] = {0};
    int flags = 0;
    if (!isTextParameter(parameter)) {
        if (withName) flags |= Ondra::kDisplayWithName;
        if (withUnit) flags |= Ondra::kDisplayWithUnit;
        if (!precise) flags |= Ondra::kDisplayPlain;
    }
    parameter->getDisplayText(parameter->getValue(), text, flags);
    std::snprintf(out, capacity, "%s", text);
}

} // namespace Vinta
