#include "adapters/vst3/sdk-helpers/ParameterContainer.h"

namespace Steinberg::Vst {

Parameter* ParameterContainer::addParameter(std::unique_ptr<Parameter> parameter) {
    if (!parameter) return nullptr;
    parameters.push_back(std::move(parameter));
    return parameters.back().get();
}

Parameter* ParameterContainer::getParameter(ParamID id) const {
    // Ids are mostly list positions: try that first.
    if (id < parameters.size() && parameters[id]->getId() == id) return parameters[id].get();
    for (const auto& parameter : parameters)
        if (parameter->getId() == id) return parameter.get();
    return nullptr;
}

Parameter* ParameterContainer::getParameterByIndex(int32 index) const {
    if (index < 0 || index >= getParameterCount()) return nullptr;
    return parameters[static_cast<size_t>(index)].get();
}

}  // namespace Steinberg::Vst
