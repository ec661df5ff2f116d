#include "FactoryPresets.h"

#include <cstring>
#include <filesystem>
#include <fstream>

#include "CORE/files/ModuleResources.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/VstPresetFiles.h"
#include "framework/resources/ResourceAccess.h"
#include "framework/state/ByteOrder.h"

namespace {
constexpr char kPrefix[] = "presets/";
constexpr uintmax_t kLargestPresetFile = 64u << 20;

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

// The chunk of an FXP file image. The format's own reader is silent by design; here each
// refusal says why.
std::string chunkOfFxp(const uint8_t* bytes, size_t size, const std::string& what, std::vector<uint8_t>& chunk) {
    using Ondra::VstPresetFiles::kProgramHeader;
    if (size < kProgramHeader || std::memcmp(bytes, "CcnK", 4) != 0) return what + " is not an FXP preset file";
    if (std::memcmp(bytes + 8, "FPCh", 4) != 0 ||
        Ondra::getBE32(bytes + 16) != static_cast<uint32_t>(Ondra::fourCharacterId("Vzon")))
        return what + " is not a Zonfra QT preset";
    const uint32_t chunkSize = Ondra::getBE32(bytes + kProgramHeader - 4);
    if (chunkSize != size - kProgramHeader)
        return what + " is damaged: its header gives " + std::to_string(chunkSize) + " bytes of state, the file holds " +
               std::to_string(size - kProgramHeader);
    chunk.assign(bytes + kProgramHeader, bytes + size);
    return "";
}

std::string readPresetFile(const std::string& path, std::vector<uint8_t>& chunk) {
    const std::string what = "preset file '" + path + "'";
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error || !std::filesystem::is_regular_file(path)) return "no " + what;
    // Far beyond any state block: not worth reading.
    if (size > kLargestPresetFile) return what + " is not an FXP preset file";
    std::vector<uint8_t> bytes(size);
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
        return "cannot read " + what;
    return chunkOfFxp(bytes.data(), bytes.size(), what, chunk);
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
    if (!file) return "factory preset '" + preset + "' cannot be read from the archive";
    const std::string error =
        chunkOfFxp(static_cast<const uint8_t*>(file), static_cast<size_t>(size), "factory preset '" + preset + "'", chunk);
    Ondra::freeResource(file);
    return error;
}
