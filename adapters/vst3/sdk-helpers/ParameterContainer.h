#pragma once
#include <memory>
#include <vector>

#include "adapters/vst3/sdk-helpers/Parameter.h"

namespace Steinberg::Vst {

// The controller's parameters in the order the host lists them; owns them. Ids must be unique.
// Look-up allocates nothing, so it may run on the audio thread.
class ParameterContainer {
public:
    // Takes the parameter and answers it; null for a null parameter.
    Parameter* addParameter(std::unique_ptr<Parameter> parameter);
    // Null for an unknown id.
    Parameter* getParameter(ParamID id) const;
    Parameter* getParameterByIndex(int32 index) const;
    int32 getParameterCount() const { return static_cast<int32>(parameters.size()); }
    void removeAll() { parameters.clear(); }

private:
    std::vector<std::unique_ptr<Parameter>> parameters;
};

}  // namespace Steinberg::Vst
