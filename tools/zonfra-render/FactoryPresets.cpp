#include "FactoryPresets.h"

#include <filesystem>

#include "CORE/files/ModuleResources.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "framework/resources/ResourceAccess.h"

namespace {
constexpr char kPrefix[] = "presets/";
constexpr size_t kFxpChunkOffset = 60;

std::string displayName(const std::string& entry) {
    std::string name = entry.substr(sizeof kPrefix - 1);
    return name.substr(0, name.size() - 4);  // ".fxp"
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Opens the main archive for the duration of one lookup.
struct OpenMainArchive {
    OpenMainArchive() {
        const Core::ModuleResource* image = Core::findModuleResource("main");
        open = image && Ondra::openResources(image->data, image->size);
    }
    ~OpenMainArchive() { Ondra::closeResources(); }
    bool open = false;
};

std::vector<std::string> presetEntries() {
    std::vector<std::string> entries;
    for (int i = 0; i < Ondra::getResourceCount(); ++i) {
        const std::string name = Ondra::getResourceName(i);
        if (name.rfind(kPrefix, 0) == 0 && endsWith(name, ".fxp")) entries.push_back(name);
    }
    return entries;
}

std::string readPresetFile(const std::string& path, std::vector<uint8_t>& chunk) {
    if (!std::filesystem::is_regular_file(path)) return "no preset file '" + path + "'";
    Ondra::presetFormatFXP().fxID = static_cast<uint32_t>(Ondra::fourCharacterId("Vzon"));
    void* data = nullptr;
    int size = 0;
    Ondra::presetFormatFXP().read(path, &data, &size);
    if (!data) return "'" + path + "' is not a Zonfra QT preset file";
    chunk.assign(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
    Ondra::presetFormatFXP().freeData(data);
    return "";
}
}  // namespace

std::vector<std::string> factoryPresetNames() {
    OpenMainArchive archive;
    std::vector<std::string> names;
    for (const std::string& entry : presetEntries()) names.push_back(displayName(entry));
    return names;
}

std::string loadPresetChunk(const std::string& preset, std::vector<uint8_t>& chunk) {
    if (endsWith(preset, ".fxp")) return readPresetFile(preset, chunk);
    OpenMainArchive archive;
    std::vector<std::string> matches;
    for (const std::string& entry : presetEntries()) {
        const std::string name = displayName(entry);
        if (name == preset) {
            matches = {entry};
            break;
        }
        if (endsWith(name, "/" + preset)) matches.push_back(entry);
    }
    if (matches.empty()) return "unknown preset '" + preset + "' (see --list-presets)";
    if (matches.size() > 1) return "preset name '" + preset + "' is ambiguous; give its folder too";
    int size = 0;
    void* file = Ondra::getResource(matches.front().c_str(), &size);
    if (!file || static_cast<size_t>(size) <= kFxpChunkOffset) return "preset '" + preset + "' is damaged";
    const auto* bytes = static_cast<const uint8_t*>(file);
    chunk.assign(bytes + kFxpChunkOffset, bytes + size);
    Ondra::freeResource(file);
    return "";
}
