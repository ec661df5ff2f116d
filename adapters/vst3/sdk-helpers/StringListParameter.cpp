#include "adapters/vst3/sdk-helpers/StringListParameter.h"

#include <algorithm>

#include "adapters/vst3/sdk-helpers/StringConvert.h"

namespace Steinberg::Vst {

StringListParameter::StringListParameter(const char* title, ParamID id, const char* units, int32 flags, UnitID unitId,
                                         const char* shortTitle)
    : Parameter(title, id, units, 0, 0, flags, unitId, shortTitle) {}

void StringListParameter::appendString(const char* utf8) {
    String128 text;
    StringConvert::toString128(utf8, text);
    entries.emplace_back(text);
    info.stepCount = static_cast<int32>(entries.size()) - 1;
}

void StringListParameter::toString(ParamValue normalized, String128 text) const {
    text[0] = 0;
    const auto index = static_cast<size_t>(toPlain(normalized));
    if (index >= entries.size()) return;
    const std::u16string& entry = entries[index];
    const size_t n = std::min<size_t>(entry.size(), 127);
    std::copy_n(entry.begin(), n, text);
    text[n] = 0;
}

bool StringListParameter::fromString(const TChar* text, ParamValue& normalized) const {
    if (!text) return false;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i] == text) {
            normalized = toNormalized(static_cast<ParamValue>(i));
            return true;
        }
    }
    return false;
}

ParamValue StringListParameter::toPlain(ParamValue normalized) const {
    const int32 steps = info.stepCount;
    if (steps <= 0) return 0;
    const auto index = static_cast<int32>(std::clamp(normalized, 0.0, 1.0) * (steps + 1));
    return std::min(index, steps);
}

ParamValue StringListParameter::toNormalized(ParamValue plain) const {
    const int32 steps = info.stepCount;
    if (steps <= 0) return 0;
    return std::clamp(plain / steps, 0.0, 1.0);
}

}  // namespace Steinberg::Vst
