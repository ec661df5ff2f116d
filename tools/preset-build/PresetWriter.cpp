#include "PresetWriter.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include "CORE/files/FileNames.h"
#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXP.h"

namespace {
struct SilentCallback : Ondra::OndraCallback {};

const PresetEntry* findInit(const PresetTable& table) {
    for (const PresetEntry& entry : table.entries)
        if (entry.folder.empty()) return &entry;
    return nullptr;
}

std::string applyAll(CZonfra& effect, const PresetEntry& entry) {
    for (const auto& [key, value] : entry.values) {
        Ondra::IPluginParameter* parameter = effect.findParameter(key.c_str());
        const std::string where = "line " + std::to_string(entry.line) + " (" + entry.name + "): ";
        if (!parameter) return where + "no parameter '" + key + "'";
        const std::string error = applyPresetValue(*parameter, value);
        if (!error.empty()) return where + key + ": " + error;
    }
    return "";
}

bool legalName(const std::string& name) {
    for (char c : name)
        if (!Core::isLegalFileNameChar(c)) return false;
    return !name.empty();
}
}  // namespace

std::string applyPresetValue(Ondra::IPluginParameter& parameter, const std::string& value) {
    char* end = nullptr;
    const double number = std::strtod(value.c_str(), &end);
    if (*end == 0) {
        const float plain = static_cast<float>(number);
        if (plain < parameter.getMinimum() || plain > parameter.getMaximum()) return value + " is out of range";
        parameter.setValue(plain);
        return "";
    }
    // A display text. Texts cover ranges of values ("Notch" is anything above 0), so the first run
    // of grid positions showing it is taken, and within it a whole plain value if there is one,
    // else the middle.
    constexpr int kSteps = 4600;
    char text[64];
    int first = -1;
    int last = -1;
    int whole = -1;
    for (int i = 0; i <= kSteps; ++i) {
        const double normalized = static_cast<double>(i) / kSteps;
        parameter.textFromNormalized(normalized, text);
        if (value != text) {
            if (first >= 0) break;
            continue;
        }
        if (first < 0) first = i;
        last = i;
        const double plain = parameter.toValue(normalized);
        if (whole < 0 && std::fabs(plain - std::round(plain)) < 1e-6) whole = i;
    }
    if (first >= 0) {
        const int chosen = whole >= 0 ? whole : (first + last) / 2;
        parameter.setNormalized(static_cast<float>(static_cast<double>(chosen) / kSteps));
        return "";
    }
    return "'" + value + "' is none of its texts";
}

std::string writeFactoryPresets(const PresetTable& table, const std::string& outRoot) {
    namespace fs = std::filesystem;
    const PresetEntry* init = findInit(table);
    if (!init || init->name != "Init Preset") return "the table needs an [Init Preset]";

    Ondra::presetFormatFXP().fxID = static_cast<uint32_t>(Ondra::fourCharacterId("Vzon"));
    std::set<std::string> written;
    for (const PresetEntry& entry : table.entries) {
        const std::string where = "line " + std::to_string(entry.line) + ": ";
        if (!legalName(entry.name))
            return where + "'" + entry.name + "' can't be a file name";
        const fs::path folder = fs::path(outRoot) / "presets" / entry.folder;
        const fs::path path = folder / (entry.name + ".fxp");
        if (!written.insert(path.string()).second) return where + "a second preset called '" + entry.name + "'";

        SilentCallback callback;
        auto effect = std::make_unique<CZonfra>(&callback);
        // As a state load does: values go in as written, without the side effects of a user's edit
        // (a filter-mode change exchanging the filters, linked cutoffs following).
        effect->beginParameterBatch();
        std::string error = applyAll(*effect, *init);
        if (error.empty() && &entry != init) error = applyAll(*effect, entry);
        effect->endParameterBatch();
        if (!error.empty()) return error;
        effect->setProgramName(entry.name.c_str());

        // Presets stay out of the project's global limiter switch.
        effect->setWriteGlobalLimiter(0);
        void* chunk = nullptr;
        const int size = effect->getChunk(&chunk);
        effect->setWriteGlobalLimiter(1);
        std::error_code ignored;
        fs::create_directories(folder, ignored);
        Ondra::presetFormatFXP().write(path.string(), chunk, size);
        if (!fs::exists(path)) return where + "can't write " + path.string();
    }
    return "";
}
