#include <gtest/gtest.h>

#include "PresetTable.h"
#include "PresetWriter.h"
#include "effect/EffectHarness.h"

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
