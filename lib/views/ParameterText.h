#pragma once
// The text of a parameter as the controls show it.
#include <cstddef>

namespace Ondra {
class IPluginParameter;
}

namespace Vinta {

// Text parameters give their text; others their value with name and unit, in the precise form.
void copyParameterText(Ondra::IPluginParameter* parameter, char* out, size_t capacity, bool withName = true,
                       bool withUnit = true, bool precise = true);
bool isTextParameter(Ondra::IPluginParameter* parameter);

} // namespace Vinta
