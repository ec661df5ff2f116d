#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "CORE/files/ModuleResources.h"
#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXB.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "framework/resources/ResourceAccess.h"
#include "PresetTable.h"
#include "effect/EffectHarness.h"

namespace {
struct Preset {
    std::string name;  // "presets/Folder/Name.fxp"
    std::vector<uint8_t> file;
};

// Every preset file of the main archive compiled into this binary.
std::vector<Preset> archivePresets() {
    const Core::ModuleResource* image = Core::findModuleResource("main");
    if (!image) return {};
    std::vector<Preset> presets;
    Ondra::openResources(image->data, image->size);
    for (int i = 0; i < Ondra::getResourceCount(); ++i) {
        const std::string name = Ondra::getResourceName(i);
        if (name.rfind("presets/", 0) != 0) continue;
        int size = 0;
        void* block = Ondra::getResource(name.c_str(), &size);
        if (!block) continue;
        presets.push_back({name, std::vector<uint8_t>(static_cast<uint8_t*>(block), static_cast<uint8_t*>(block) + size)});
        Ondra::freeResource(block);
    }
    Ondra::closeResources();
    return presets;
}

void loadPreset(CZonfra& effect, std::vector<uint8_t> file) {
    ASSERT_GT(file.size(), 60u);
    effect.setChunk(file.data() + 60, static_cast<int>(file.size() - 60));
}

std::vector<float> parameterValues(CZonfra& effect) {
    std::vector<float> values;
    for (int id = 0; id < kZonfraParameterCount; ++id) values.push_back(effect.getParameter(id)->getValue());
    return values;
}

std::string titleOf(const std::string& name) {
    const size_t slash = name.rfind('/');
    return name.substr(slash + 1, name.size() - slash - 1 - 4);
}
}  // namespace

TEST(FactoryPresets, FoldersHoldTheirCountsAndTheTableMatches) {
    const std::vector<Preset> presets = archivePresets();
    ASSERT_EQ(presets.size(), 133u);
    std::map<std::string, int> folders;
    for (const Preset& p : presets) {
        const std::string rest = p.name.substr(8);
        const size_t slash = rest.find('/');
        folders[slash == std::string::npos ? "" : rest.substr(0, slash)]++;
        EXPECT_EQ(p.name.substr(p.name.size() - 4), ".fxp") << p.name;
    }
    const std::map<std::string, int> expected = {{"", 1},           {"Envelope", 14},        {"Filter", 12},
                                                 {"LFO", 16},       {"Multi FX", 21},        {"New 1.2 Presets", 43},
                                                 {"Phaser", 14},    {"Ringmod", 12}};
    EXPECT_EQ(folders, expected);
    EXPECT_EQ(presets.front().name, "presets/Envelope/Auto Wah Funk.fxp") << "names sort within the archive";

    std::ifstream in(ZONFRA_PRESET_TABLE);
    std::stringstream text;
    text << in.rdbuf();
    PresetTable table;
    ASSERT_EQ(parsePresetTable(text.str(), table), "");
    EXPECT_EQ(table.entries.size(), presets.size());
}

TEST(FactoryPresets, EveryPresetLoadsPlaysAndIsDistinct) {
    std::set<std::vector<float>> seen;
    for (const Preset& preset : archivePresets()) {
        SCOPED_TRACE(preset.name);
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(&preset.file[0]), 4), "CcnK");
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(&preset.file[8]), 4), "FPCh");
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(&preset.file[16]), 4), "Vzon");

        EffectHarness harness(48000.0f, 512);
        loadPreset(*harness.effect, preset.file);
        EXPECT_EQ(harness.presetName(), titleOf(preset.name));
        EXPECT_TRUE(seen.insert(parameterValues(*harness.effect)).second) << "same settings as another preset";
        EXPECT_TRUE(harness.effect->signalChain().isGlobalLimiterOn()) << "presets carry no global limiter record";

        std::vector<float> left = sine(24000, 220, 48000, 0.5f), right = sine(24000, 331, 48000, 0.5f);
        for (size_t i = 0; i < left.size(); i += 97) left[i] += 0.3f;  // clicks wake the envelopes
        harness.run(left, right, 512);
        double energy = 0;
        for (size_t i = 0; i < left.size(); ++i) {
            ASSERT_TRUE(std::isfinite(left[i]) && std::isfinite(right[i])) << "sample " << i;
            ASSERT_LT(std::fabs(left[i]), 16.0f) << "sample " << i;
            energy += double(left[i]) * left[i] + double(right[i]) * right[i];
        }
        EXPECT_GT(energy, 1e-3) << "a preset should not be silent";
    }
}

TEST(FactoryPresets, ANewInstanceIsTheInitPreset) {
    const std::vector<Preset> presets = archivePresets();
    const auto init = std::find_if(presets.begin(), presets.end(),
                                   [](const Preset& p) { return p.name == "presets/Init Preset.fxp"; });
    ASSERT_NE(init, presets.end());

    EffectHarness fresh;
    EffectHarness loaded;
    loaded.set(kLowPassFreq, 500);
    loaded.set(kRingModStrength, 0.7f);
    loadPreset(*loaded.effect, init->file);
    EXPECT_EQ(parameterValues(*fresh.effect), parameterValues(*loaded.effect));
    EXPECT_EQ(fresh.presetName(), "Init Preset");

    // Both sound the same too.
    std::vector<float> a = sine(8192, 440, 44100), b = a, c = a, d = a;
    fresh.run(a, b, 256);
    loaded.run(c, d, 256);
    EXPECT_EQ(a, c);
}

TEST(FactoryPresets, PresetFilesLeaveTheGlobalLimiterToTheProject) {
    const std::string dir = "/tmp/zonfra-preset-save-" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    Ondra::presetFormatFXP().fxID = static_cast<uint32_t>(Ondra::fourCharacterId("Vzon"));

    EffectHarness saver;
    saver.effect->getGlobalLimiterParameter().setValue(0);
    char text[64];
    saver.effect->getGlobalLimiterParameter().textFromNormalized(saver.effect->getGlobalLimiterParameter().getNormalized(), text);
    EXPECT_STREQ(text, "Gbl.OFF");
    // What the preset browser does when it saves.
    saver.effect->setWriteGlobalLimiter(0);
    void* chunk = nullptr;
    const int size = saver.effect->getChunk(&chunk);
    saver.effect->setWriteGlobalLimiter(1);
    Ondra::presetFormatFXP().write(dir + "/Saved.fxp", chunk, size);

    void* data = nullptr;
    int length = 0;
    Ondra::presetFormatFXP().read(dir + "/Saved.fxp", &data, &length);
    ASSERT_NE(data, nullptr);
    EffectHarness other;
    other.effect->setChunk(data, length);
    Ondra::presetFormatFXP().freeData(data);
    other.effect->getGlobalLimiterParameter().textFromNormalized(other.effect->getGlobalLimiterParameter().getNormalized(), text);
    EXPECT_STREQ(text, "Preset");
    EXPECT_EQ(other.presetName(), "Init Preset");

    // A host's chunk carries the switch.
    const int projectSize = saver.effect->getChunk(&chunk);
    std::vector<uint8_t> project(static_cast<uint8_t*>(chunk), static_cast<uint8_t*>(chunk) + projectSize);
    other.effect->setChunk(project.data(), projectSize);
    other.effect->getGlobalLimiterParameter().textFromNormalized(other.effect->getGlobalLimiterParameter().getNormalized(), text);
    EXPECT_STREQ(text, "Gbl.OFF");
    std::filesystem::remove_all(dir);
}

extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

TEST(FactoryPresets, FillingThePluginListGivesThePresetFormatsOurId) {
    // Each test runs in its own process, so nothing has filled the list yet.
    EXPECT_EQ(Ondra::presetFormatFXP().fxID, 0u);
    ASSERT_NE(getOndraPluginListPTR(), nullptr);
    EXPECT_EQ(Ondra::presetFormatFXP().fxID, static_cast<uint32_t>(Ondra::fourCharacterId("Vzon")));
    EXPECT_EQ(Ondra::presetFormatFXB().fxID, static_cast<uint32_t>(Ondra::fourCharacterId("Vzon")));
}
