#pragma once
// A fresh home with a preset folder, an effect and its preset interface; questions answer from a
// queue (yes once it runs out) and their titles are kept.
#include <gtest/gtest.h>

#include <deque>
#include <fstream>

#include "core_files/TempHome.h"
#include "editor/presets/CPresetInterface.h"
#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXP.h"

namespace fs = std::filesystem;

inline std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
inline void writeAll(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

struct PresetFolder : ::testing::Test {
    TempHome home;
    Ondra::OndraCallback callback;
    CZonfra effect{&callback};
    ZonfraPresets::CPresetInterface presets{&effect};
    fs::path folder = home.root / "Presets";
    std::deque<bool> answers;
    std::vector<std::string> titles;

    void SetUp() override {
        // Set when the plug-in list is filled; the archive's presets carry it.
        Ondra::presetFormatFXP().fxID = static_cast<uint32_t>(Ondra::fourCharacterId("Vzon"));
        presets.setQuestion([this](const std::string& title, const std::string&, const auto& answer) {
            titles.push_back(title);
            const bool yes = answers.empty() || answers.front();
            if (!answers.empty()) answers.pop_front();
            answer(yes);
        });
        presets.setFolder(folder.string());
    }
    Ondra::IPluginParameter* cutoff() { return effect.findParameter("LOWPASSFREQ"); }
    void saveWithCutoff(const std::string& name, float value) {
        cutoff()->setNormalized(value);
        ASSERT_TRUE(presets.saveAs(name)) << presets.lastError();
    }
    std::string currentName() {
        const ZonfraPresets::PresetEntry* current = presets.entry(presets.getCurrentIndex());
        return current ? current->name : "";
    }
};
