#include "effect/ZonfraHousekeeping.h"

#include <algorithm>

#include "CORE/files/ModuleResources.h"
#include "CORE/files/Paths.h"
#include "CORE/files/Settings.h"
#include "framework/plugin/OndraOS.h"
#include "framework/resources/ResourceAccess.h"

namespace {
const char* const kSettingVendor = "MORVANDEL";
const char* const kSettingProduct = "zonfraQT";
const char* const kPresetFolderName = "PresetFolder";
const char* const kInitPresetFile = "presets/Init Preset.fxp";
// An FXP file's chunk follows its header: seven 32-bit words, the 28-byte program name and the
// chunk's size.
constexpr int kFxpChunkOffset = 7 * 4 + 28 + 4;
}  // namespace

std::string PresetFolderSetting::get() {
    if (!folder.empty()) return folder;
    const std::string fallback = Core::getSpecialFolder(Core::kUserDataFolder, "Morvandel") + "/zonfra QT/Presets/";
    std::string stored;
    Core::readSetting(Core::makeKeyName(kSettingVendor, kSettingProduct), kPresetFolderName, stored, fallback.c_str());
    folder = stored;  // paths keep "/" on this platform
    return folder;
}

void PresetFolderSetting::set(const std::string& path) {
    std::string normalised = path;
    std::replace(normalised.begin(), normalised.end(), '\\', '/');
    folder = Core::addTrailingSlash(normalised);
    Core::writeSetting(Core::makeKeyName(kSettingVendor, kSettingProduct), kPresetFolderName, path);
}

void loadInitPreset(Ondra::OndraOS& effect) {
    // Without the archive (tools that build the presets link no image) the table's values stand.
    const Core::ModuleResource* image = Core::findModuleResource("main");
    if (!image) return;
    Ondra::openResources(image->data, image->size);
    int size = 0;
    void* file = Ondra::getResource(kInitPresetFile, &size);
    // The file is a whole FXP; its chunk starts after the header, which needs no checking here.
    if (file && size > kFxpChunkOffset)
        effect.setChunk(static_cast<char*>(file) + kFxpChunkOffset, size - kFxpChunkOffset);
    Ondra::freeResource(file);
    Ondra::closeResources();
}
