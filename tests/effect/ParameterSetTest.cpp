#include <gtest/gtest.h>

#include <set>
#include <string>

#include "EffectHarness.h"

using Ondra::IPluginParameter;

namespace {
std::string display(IPluginParameter* p, float value, int flags = 0) {
    char out[Ondra::kParameterTextSize];
    p->getDisplayText(value, out, flags);
    return out;
}
}  // namespace

class ParameterSet : public ::testing::Test {
protected:
    EffectHarness harness;
    IPluginParameter* row(int id) { return harness.effect->getParameter(id); }
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

TEST_F(ParameterSet, SelectedRowsAsTabled) {
    EXPECT_STREQ(row(1)->getAutomationName(), "LowPass.Freq.");
    EXPECT_STREQ(row(7)->getAutomationName(), "HighPass.Res. Width");
    EXPECT_STREQ(row(39)->getAutomationName(), "---------");
    EXPECT_STREQ(row(45)->getAutomationName(), "------------");
    EXPECT_STREQ(row(48)->getName(), "Filter Inertia ( 48/96db )");
    EXPECT_STREQ(row(48)->getKey(), "FilterInteria");
    EXPECT_STREQ(row(12)->getKey(), "LP Attack");
    EXPECT_FLOAT_EQ(row(5)->getMinimum(), 0.001f);
    EXPECT_FLOAT_EQ(row(1)->getCurve(), 30);
    EXPECT_FLOAT_EQ(row(5)->getCurve(), 25);
    EXPECT_EQ(row(25)->getUnitType(), 13);
    EXPECT_STREQ(row(0)->getUnitLabel(), "dB");
    EXPECT_STREQ(row(20)->getUnitLabel(), "Hz");
    // Initial and default differ: reset goes to the default.
    EXPECT_FLOAT_EQ(row(12)->getDefault(), 50);
    row(12)->resetToDefault();
    EXPECT_FLOAT_EQ(row(12)->getValue(), 50);
    EXPECT_FLOAT_EQ(row(37)->getDefault(), 200);
}

TEST_F(ParameterSet, FreshInstanceValuesAreTheInitialColumnClipped) {
    const float initial[49] = {1, 22050, 0, 1, 2, 0.001f, 0, 1, 2, 1, 0, 0, 5, 10, 0, 50, 100, 0, 4000, 1, 0.15f,
                               0, 1, 0, 0, 29, 0, 0, 0, 1, 0, 1, 1, 0, 110, 0, -0.1f, 200, 0, 1, 0, 1, 0,
                               100, 0, 0, 0, 0, 1};
    for (int id = 0; id < 49; ++id) EXPECT_FLOAT_EQ(row(id)->getValue(), initial[id]) << "row " << id;
}

TEST_F(ParameterSet, FormattersAToH) {
    const int plain = Ondra::kDisplayPlain;
    const int unit = Ondra::kDisplayWithUnit;
    EXPECT_EQ(display(row(11), 0), "Bandpass");
    EXPECT_EQ(display(row(11), 1), "Notch");
    EXPECT_EQ(display(row(18), 100), "All");
    EXPECT_EQ(display(row(18), 100.5f, unit), "100.50Hz");
    EXPECT_EQ(display(row(18), 100.5f), "100.50");
    EXPECT_EQ(display(row(18), 4000, unit), "4.00kHz");
    EXPECT_EQ(display(row(18), 4000), "4.00k");
    const char* shapes[] = {"Sine", "Triangle", "Saw", "Dbl Sine", "Mod. Sine", "Square", ""};
    for (int s = 0; s <= 6; ++s) EXPECT_EQ(display(row(21), static_cast<float>(s)), shapes[s]);
    EXPECT_EQ(display(row(25), 29), "Host");
    EXPECT_EQ(display(row(25), 29.99f), "30");  // the effect reads it as 30: the first host step
    EXPECT_EQ(display(row(25), 30), "30");
    EXPECT_EQ(display(row(28), 0), "pre Filter");
    EXPECT_EQ(display(row(32), 1), "post Filter");
    EXPECT_EQ(display(row(34), 1), "Auto");
    EXPECT_EQ(display(row(34), 110, unit), "110 ms");
    EXPECT_EQ(display(row(34), 110), " 110");
    EXPECT_EQ(display(row(47), 0), "Off");
    EXPECT_EQ(display(row(47), -0.5f), "-50.00%");
    EXPECT_EQ(display(row(47), 0.5f), "+50.00%");
    EXPECT_EQ(display(row(5), 0.001f, plain), "0");
    EXPECT_EQ(display(row(19), 1), "1.0");
    EXPECT_EQ(display(row(0), 2), "+6.02");
}

TEST_F(ParameterSet, LfoRateTextFollowsTheSyncSwitch) {
    IPluginParameter* rate = row(20);
    row(22)->setValue(1);
    rate->setNormalized(0.0f);
    EXPECT_EQ(display(rate, rate->getValue()), "4/1");
    rate->setNormalized(1.0f);
    EXPECT_EQ(display(rate, rate->getValue()), "1/16D");
    rate->setNormalized(6.0f / 23.0f);  // index 7
    EXPECT_EQ(display(rate, rate->getValue()), "1/8");
    row(22)->setValue(0);
    EXPECT_EQ(display(rate, 0.5f, Ondra::kDisplayWithUnit), "0.500Hz");
    EXPECT_EQ(display(rate, 2.5f), "2.50");
    for (int i = 1; i <= 24; ++i) EXPECT_EQ(lfoSyncIndexFromNormalized((i - 1) / 23.0f), i);
    EXPECT_STREQ(lfoSyncText(12), "1/1T");
    EXPECT_STREQ(lfoSyncText(20), "1/1D");
}

TEST_F(ParameterSet, ParametersOutsideTheTable) {
    CZonfra& effect = *harness.effect;
    Ondra::ParameterProperty& name = effect.getPresetNameParameter();
    EXPECT_STREQ(name.getKey(), "PRESETNAME");
    EXPECT_EQ(name.getId(), Ondra::fourCharacterId("PNAM"));
    EXPECT_EQ(name.getUnitType(), 11);
    EXPECT_STREQ(effect.getPresetName(), "Init Preset");
    name.setFromText("Big Wah");
    EXPECT_STREQ(effect.getPresetName(), "Big Wah");

    Ondra::ParameterProperty& global = effect.getGlobalLimiterParameter();
    EXPECT_STREQ(global.getKey(), "GLOBAL.LIMITER");
    EXPECT_STREQ(global.getName(), "Global");
    EXPECT_EQ(global.getId(), 1000);
    EXPECT_EQ(display(&global, 1), "Preset");
    EXPECT_EQ(display(&global, 0), "Gbl.OFF");
    EXPECT_TRUE(effect.isGlobalLimiterOn());
    global.setValue(0);
    EXPECT_FALSE(effect.isGlobalLimiterOn());
    EXPECT_EQ(effect.findParameter("GLOBAL.LIMITER"), nullptr);
}

TEST_F(ParameterSet, ParameterChangesReachTheEffect) {
    CZonfra& effect = *harness.effect;
    row(41)->setValue(0.25f);
    EXPECT_FLOAT_EQ(effect.getMixTarget(), 0.25f);
    row(0)->setValue(2);
    EXPECT_FLOAT_EQ(effect.getInputGain().getTarget(), 2);
    row(4)->setValue(4);
    EXPECT_EQ(effect.getLowSlopeDb(), 96);
    row(8)->setValue(1);
    EXPECT_EQ(effect.getHighSlopeDb(), 12);
    row(11)->setValue(1);
    EXPECT_EQ(effect.getFilterMode(), 1);
    row(42)->setValue(1);
    EXPECT_TRUE(effect.isBypassed());
}
