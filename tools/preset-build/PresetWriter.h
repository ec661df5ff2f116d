#pragma once
#include <string>

#include "PresetTable.h"

namespace Ondra {
class IPluginParameter;
}

// Sets one parameter from a table value: a number is the plain value, anything else must be one
// of the parameter's display texts. Empty on success, else what is wrong.
std::string applyPresetValue(Ondra::IPluginParameter& parameter, const std::string& value);

// Writes "presets/Init Preset.fxp" and "presets/<Folder>/<Name>.fxp" under `outRoot` through the
// effect's own chunk writer. Empty on success, else "line N: what is wrong".
std::string writeFactoryPresets(const PresetTable& table, const std::string& outRoot);
