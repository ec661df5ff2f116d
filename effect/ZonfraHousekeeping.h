#pragma once
#include <string>

namespace Ondra {
class OndraOS;
}

// The folder of user presets: the stored "PresetFolder", else a default in the user's data home.
class PresetFolderSetting {
public:
    std::string get();
    // Remembers the folder in the settings store.
    void set(const std::string& folder);

private:
    std::string folder;
};

// Loads "presets/Init Preset.fxp" of the main archive compiled into the library, if there is one.
void loadInitPreset(Ondra::OndraOS& effect);
