#include <algorithm>

#include "CORE/files/Paths.h"
#include "CORE/files/Settings.h"
#include "effect/CZonfra.h"

namespace {
const char* const kSettingVendor = "MORVANDEL";
const char* const kSettingProduct = "zonfraQT";
const char* const kPresetFolderName = "PresetFolder";
}  // namespace

std::string CZonfra::getPresetFolder() {
    if (!presetFolder.empty()) return presetFolder;
    const std::string fallback = Core::getSpecialFolder(2, "Morvandel") + "/zonfra QT/Presets/";
    std::string stored;
    Core::readSetting(Core::makeKeyName(kSettingVendor, kSettingProduct), kPresetFolderName, stored, fallback.c_str());
    presetFolder = stored;  // paths keep "/" on this platform
    return presetFolder;
}

void CZonfra::setPresetFolder(const std::string& folder) {
    std::string normalised = folder;
    std::replace(normalised.begin(), normalised.end(), '\\', '/');
    presetFolder = Core::addTrailingSlash(normalised);
    Core::writeSetting(Core::makeKeyName(kSettingVendor, kSettingProduct), kPresetFolderName, folder);
}
