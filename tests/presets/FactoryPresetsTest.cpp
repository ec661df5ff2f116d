#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXB.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "PresetTable.h"
#include "effect/EffectHarness.h"
#include "support/ArchiveFiles.h"
#include "support/Samples.h"
#include "PresetWriter.h"

namespace {
using Preset = TestSupport::ArchiveFile;  // named "presets/Folder/Name.fxp"

std::vector<Preset> archivePresets() { return TestSupport::archiveFiles("main", "presets/"); }

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
        const std::string head(preset.bytes.begin(), preset.bytes.begin() + 20);
        EXPECT_EQ(head.substr(0, 4) + head.substr(8, 4) + head.substr(16, 4), "CcnKFPChVzon");

        EffectHarness harness(48000.0f, 512);
        loadPreset(*harness.effect, preset.bytes);
        EXPECT_EQ(harness.presetName(), titleOf(preset.name));
        EXPECT_TRUE(seen.insert(parameterValues(*harness.effect)).second) << "same settings as another preset";
        EXPECT_TRUE(harness.effect->signalChain().isGlobalLimiterOn()) << "presets carry no global limiter record";

        std::vector<float> left = sine(24000, 220, 48000, 0.5f), right = sine(24000, 331, 48000, 0.5f);
        for (size_t i = 0; i < left.size(); i += 97) left[i] += 0.3f;  // clicks wake the envelopes
        harness.run(left, right, 512);
        // Finite at every rate: SampleRates.
        EXPECT_LT(std::fabs(left[TestSupport::peakIndex(left)]), 16.0f);
        EXPECT_GT(TestSupport::energy(left) + TestSupport::energy(right), 1e-3) << "a preset should not be silent";
    }
}

TEST(FactoryPresets, ANewInstanceIsTheInitPreset) {
    const std::vector<Preset> presets = archivePresets();
    const auto init = std::find_if(presets.begin(), presets.end(),
                                   [](const Preset& p) { return p.name == "presets/Init Preset.fxp"; });
    ASSERT_NE(init, presets.end());

    EffectHarness fresh, loaded;
    loaded.setAll({{kLowPassFreq, 500}, {kRingModStrength, 0.7f}});
    loadPreset(*loaded.effect, init->bytes);
    EXPECT_EQ(parameterValues(*fresh.effect), parameterValues(*loaded.effect));
    EXPECT_EQ(fresh.presetName(), "Init Preset");
}

extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

TEST(FactoryPresets, FillingThePluginListGivesThePresetFormatsOurId) {
    // Each test runs in its own process, so nothing has filled the list yet.
    EXPECT_EQ(Ondra::presetFormatFXP().fxID, 0u);
    ASSERT_NE(getOndraPluginListPTR(), nullptr);
    EXPECT_EQ(Ondra::presetFormatFXP().fxID, static_cast<uint32_t>(Ondra::fourCharacterId("Vzon")));
    EXPECT_EQ(Ondra::presetFormatFXB().fxID, static_cast<uint32_t>(Ondra::fourCharacterId("Vzon")));
}

TEST(PresetTable, ReadsSectionsAndValuesAndNamesTheBadLine) {
    PresetTable table;
    ASSERT_EQ(parsePresetTable("# comment\n[Init Preset]\nLOWPASSFREQ = 22050\n\n[LFO/Wobble]\nLFO Rate = 1/8\n", table),
              "");
    ASSERT_EQ(table.entries.size(), 2u);
    EXPECT_EQ(table.entries[1].folder, "LFO");
    EXPECT_EQ(table.entries[1].name, "Wobble");
    EXPECT_EQ(table.entries[1].values.at(0), (std::pair<std::string, std::string>{"LFO Rate", "1/8"}));

    PresetTable bad;
    EXPECT_EQ(parsePresetTable("KEY = 1\n", bad), "line 1: a value before the first section");
    EXPECT_EQ(parsePresetTable("[A/B]\nno equals\n", bad), "line 2: expected 'KEY = value'");
    EXPECT_EQ(parsePresetTable("[A/B\n", bad), "line 1: a section header ends with ']'");
}

TEST(PresetTable, ValuesAreNumbersOrDisplayTexts) {
    EffectHarness harness;
    CZonfra& effect = *harness.effect;
    EXPECT_EQ(applyPresetValue(*effect.getParameter(kLowPassFreq), "500"), "");
    EXPECT_FLOAT_EQ(effect.getParameter(kLowPassFreq)->getValue(), 500);
    EXPECT_EQ(applyPresetValue(*effect.getParameter(kLfoRate), "1/8T"), "");
    char text[64];
    effect.getParameter(kLfoRate)->textFromNormalized(effect.getParameter(kLfoRate)->getNormalized(), text);
    EXPECT_STREQ(text, "1/8T");
    EXPECT_EQ(applyPresetValue(*effect.getParameter(kLfoShape), "Mod. Sine"), "");
    EXPECT_EQ(effect.getParameter(kLfoShape)->getInt(), 4);
    EXPECT_NE(applyPresetValue(*effect.getParameter(kLowPassFreq), "30000"), "");
    EXPECT_NE(applyPresetValue(*effect.getParameter(kLfoShape), "Wobbly"), "");
}
