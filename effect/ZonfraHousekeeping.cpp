#include <algorithm>

#include "CORE/files/ModuleResources.h"
#include "CORE/files/Paths.h"
#include "CORE/files/Settings.h"
#include "effect/CZonfra.h"
#include "framework/resources/ResourceAccess.h"

namespace {
const char* const kSettingVendor = "MORVANDEL";
const char* const kSettingProduct = "zonfraQT";
const char* const kPresetFolderName = "PresetFolder";
const char* const kInitPresetFile = "presets/Init Preset.fxp";
constexpr int kFxpChunkOffset = 60;
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

void CZonfra::loadInitPreset() {
    // Without the archive (tools that build the presets link no image) the table's values stand.
    const Core::ModuleResource* image = Core::findModuleResource("main");
    if (!image) return;
    Ondra::openResources(image->data, image->size);
    int size = 0;
    void* file = Ondra::getResource(kInitPresetFile, &size);
    // The file is a whole FXP; its chunk starts after the header, which needs no checking here.
    if (file && size > kFxpChunkOffset) setChunk(static_cast<char*>(file) + kFxpChunkOffset, size - kFxpChunkOffset);
    Ondra::freeResource(file);
    Ondra::closeResources();
}
