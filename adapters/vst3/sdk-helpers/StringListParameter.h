#pragma once
#include <string>
#include <vector>

#include "adapters/vst3/sdk-helpers/Parameter.h"

namespace Steinberg::Vst {

// A parameter with one text per step: the plain value is the index of the entry.
class StringListParameter : public Parameter {
public:
    StringListParameter(const char* title, ParamID id, const char* units = nullptr,
                        int32 flags = ParameterInfo::kCanAutomate | ParameterInfo::kIsList, UnitID unitId = kRootUnitId,
                        const char* shortTitle = nullptr);

    // UTF-8; each entry adds a step.
    void appendString(const char* utf8);
    int32 getEntryCount() const { return static_cast<int32>(entries.size()); }

    void toString(ParamValue normalized, String128 text) const override;
    // The entry's text, exactly; false for any other text.
    bool fromString(const TChar* text, ParamValue& normalized) const override;
    ParamValue toPlain(ParamValue normalized) const override;
    ParamValue toNormalized(ParamValue plain) const override;

private:
    std::vector<std::u16string> entries;
};

}  // namespace Steinberg::Vst
