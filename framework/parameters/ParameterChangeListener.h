#pragma once

namespace Ondra {

class IPluginParameter;

class ParameterChangeListener {
public:
    virtual ~ParameterChangeListener() = default;
    virtual void parameterChanged(IPluginParameter* parameter) = 0;
};

}  // namespace Ondra
