#include <gtest/gtest.h>
#include <set>

#include "EffectHarness.h"

using Ondra::IPluginParameter;

class ParameterSet : public ::testing::Test {
protected:
    IPluginParameter* row(int id) { return harness.effect->getParameter(id); }
    std::string display(IPluginParameter* p, float value, int flags = 0) {
        char out[Ondra::kParameterTextSize];
        p->getDisplayText(value, out, flags);
        return out;
    }
    EffectHarness harness;
};

TEST_F(ParameterSet, FortyNineRowsWithUniqueKeysAndTheAutomationGap) {
    CZonfra& effect = *harness.effect;
    ASSERT_EQ(effect.getParameterCount(), 49);
    ASSERT_EQ(effect.getAutomatableCount(), 48);
    std::set<std::string> keys;
    for (int id = 0; id < 49; ++id) keys.insert(row(id)->getKey());
    EXPECT_EQ(keys.size(), 49u);
    for (int index = 0; index < 48; ++index) {
        IPluginParameter* p = effect.getAutomatableParameter(index);
        EXPECT_EQ(static_cast<Ondra::ParameterProperty*>(p)->getId(), index <= 32 ? index : index + 1);
        EXPECT_EQ(effect.getParameterIndex(p), index);
    }
    EXPECT_FALSE(row(33)->isAutomatable());
    EXPECT_EQ(effect.getParameterIndex(row(33)), -1);
    EXPECT_EQ(effect.getParameter(49), nullptr);
    EXPECT_EQ(effect.findParameter("kBypass"), row(42));
    EXPECT_EQ(effect.findParameter("nope"), nullptr);
}

TEST_F(ParameterSet, EveryFormatterInBothForms) {
    const int plain = Ondra::kDisplayPlain, unit = Ondra::kDisplayWithUnit;
    row(22)->setValue(0);  // the LFO rate in hertz
    const struct {
        int id;
        float value;
        int flags;
        const char* shown;
    } rows[] = {
        {11, 0, 0, "Bandpass"},     {11, 1, 0, "Notch"},           {18, 100, 0, "All"},
        {18, 100.5f, unit, "100.50Hz"}, {18, 100.5f, 0, "100.50"}, {18, 4000, unit, "4.00kHz"},
        {18, 4000, 0, "4.00k"},     {21, 0, 0, "Sine"},            {21, 1, 0, "Triangle"},
        {21, 2, 0, "Saw"},          {21, 3, 0, "Dbl Sine"},        {21, 4, 0, "Mod. Sine"},
        {21, 5, 0, "Square"},       {21, 6, 0, ""},                {25, 29, 0, "Host"},
        {25, 29.99f, 0, "30"},  // the effect reads it as 30: the first host step
        {25, 30, 0, "30"},          {28, 0, 0, "pre Filter"},      {32, 1, 0, "post Filter"},
        {34, 1, 0, "Auto"},         {34, 110, unit, "110 ms"},     {34, 110, 0, " 110"},
        {47, 0, 0, "Off"},          {47, -0.5f, 0, "-50.00%"},     {47, 0.5f, 0, "+50.00%"},
        {5, 0.001f, plain, "0"},    {19, 1, 0, "1.0"},             {0, 2, 0, "+6.02"},
        {20, 0.5f, unit, "0.500Hz"}, {20, 2.5f, 0, "2.50"},  // the LFO rate, not synced
    };
    for (const auto& r : rows) EXPECT_EQ(display(row(r.id), r.value, r.flags), r.shown) << r.id << " " << r.value;
}

TEST_F(ParameterSet, LfoRateTextFollowsTheSyncSwitch) {
    IPluginParameter* rate = row(20);
    row(22)->setValue(1);
    const std::pair<float, const char*> steps[] = {{0, "4/1"}, {1, "1/16D"}, {6.0f / 23, "1/8"}};
    for (const auto& [normalized, shown] : steps) {
        rate->setNormalized(normalized);
        EXPECT_EQ(display(rate, rate->getValue()), shown);
    }
    for (int i = 1; i <= 24; ++i) EXPECT_EQ(lfoSyncIndexFromNormalized((i - 1) / 23.0f), i);
    EXPECT_STREQ(lfoSyncText(12), "1/1T");
    EXPECT_STREQ(lfoSyncText(20), "1/1D");
}

TEST_F(ParameterSet, PresetNameAndGlobalSwitchLiveOutsideTheTable) {
    CZonfra& effect = *harness.effect;
    EXPECT_EQ(harness.presetName(), "Init Preset");
    effect.getPresetNameParameter().setFromText("Big Wah");
    EXPECT_EQ(harness.presetName(), "Big Wah");
    Ondra::ParameterProperty& global = effect.getGlobalLimiterParameter();
    EXPECT_EQ(display(&global, 1), "Preset");
    EXPECT_EQ(display(&global, 0), "Gbl.OFF");
    EXPECT_TRUE(effect.signalChain().isGlobalLimiterOn());
    global.setValue(0);
    EXPECT_FALSE(effect.signalChain().isGlobalLimiterOn());
    EXPECT_EQ(effect.findParameter("GLOBAL.LIMITER"), nullptr);
    EXPECT_EQ(effect.findParameter("PRESETNAME"), nullptr);
}
