#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "Vst2TestHost.h"
#include "adapters/vst2/sdk/VstParameterProperties.h"

using namespace Vst2;
using namespace Vst2Test;

namespace {
constexpr int kInputGain = 0;
constexpr int kLowPassFrequency = 1;
}  // namespace

TEST(Vst2Parameters, NamesUnitsAndDisplayTextsByIndex) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    plugin.start(44100, 512);
    EXPECT_EQ(plugin.text(effGetParamName, kInputGain), "Input Gain");
    EXPECT_EQ(plugin.text(effGetParamLabel, kInputGain), "dB");
    EXPECT_EQ(plugin.text(effGetParamDisplay, kInputGain), "+0.00");  // unity gain
    EXPECT_EQ(plugin.text(effGetParamName, kLowPassFrequency), "LowPass.Freq.");
    EXPECT_EQ(plugin.text(effGetParamLabel, kLowPassFrequency), "Hz");
    EXPECT_EQ(plugin.text(effGetParamDisplay, kLowPassFrequency), "22050.0");
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 1.0f);

    plugin.setParameter(kLowPassFrequency, 0.0f);
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 0.0f);
    EXPECT_EQ(plugin.text(effGetParamDisplay, kLowPassFrequency), "40.0");
    // A curve of 30 puts the middle of the knob at 3.125 % of the range.
    plugin.setParameter(kLowPassFrequency, 0.5f);
    EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), 0.5f, 1e-5);
    EXPECT_EQ(plugin.text(effGetParamDisplay, kLowPassFrequency), "727.8");

    // Every parameter has a name, fits its buffer and can be automated.
    for (int index = 0; index < plugin.effect->numParams; ++index) {
        const std::string name = plugin.text(effGetParamName, index);
        EXPECT_FALSE(name.empty()) << index;
        EXPECT_LE(name.size(), 24u) << index;
        EXPECT_LE(plugin.text(effGetParamDisplay, index).size(), 24u) << index;
        EXPECT_EQ(plugin.dispatch(effCanBeAutomated, index), 1) << index;
    }
}

TEST(Vst2Parameters, OutOfRangeIndexesAreHarmless) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    const int count = plugin.effect->numParams;
    for (int index : {-1, count, count + 1, 100000}) {
        EXPECT_EQ(plugin.text(effGetParamName, index), "") << index;
        EXPECT_EQ(plugin.text(effGetParamLabel, index), "") << index;
        EXPECT_EQ(plugin.text(effGetParamDisplay, index), "") << index;
        EXPECT_EQ(plugin.getParameter(index), 0.0f) << index;
        plugin.setParameter(index, 0.5f);
        EXPECT_EQ(plugin.dispatch(effCanBeAutomated, index), 0) << index;
        VstParameterProperties properties{};
        EXPECT_EQ(plugin.dispatch(effGetParameterProperties, index, 0, &properties), 0) << index;
    }
    // Values outside 0..1 are clipped, not-a-number is ignored.
    plugin.setParameter(kLowPassFrequency, 7.0f);
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 1.0f);
    plugin.setParameter(kLowPassFrequency, -3.0f);
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 0.0f);
    plugin.setParameter(kLowPassFrequency, std::nanf(""));
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 0.0f);
}

TEST(Vst2Parameters, PropertiesCarryTheNameAndNoFlags) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    VstParameterProperties properties;
    std::memset(&properties, 0x55, sizeof properties);
    ASSERT_EQ(plugin.dispatch(effGetParameterProperties, kLowPassFrequency, 0, &properties), 1);
    EXPECT_STREQ(properties.label, "LowPass Frequency");
    EXPECT_STREQ(properties.shortLabel, "LowPass");
    EXPECT_EQ(properties.displayIndex, kLowPassFrequency);
    EXPECT_EQ(properties.flags, 0);
    EXPECT_EQ(properties.category, 0);
    EXPECT_EQ(plugin.dispatch(effGetParameterProperties, 0, 0, nullptr), 0);
}

TEST(Vst2Parameters, HostValuesAreNotReportedBack) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    plugin.start(44100, 512);
    host().automated.clear();
    for (int index = 0; index < plugin.effect->numParams; ++index) plugin.setParameter(index, 0.3f);
    EXPECT_TRUE(host().automated.empty());
}

TEST(Vst2Parameters, EchoOfAReportIsDropped) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    plugin.start(44100, 512);
    plugin.setParameter(kLowPassFrequency, 0.25f);
    void* data = nullptr;
    const VstIntPtr size = plugin.dispatch(effGetChunk, 1, 0, &data);
    ASSERT_GT(size, 0);
    std::vector<char> preset(static_cast<char*>(data), static_cast<char*>(data) + size);
    plugin.setParameter(kLowPassFrequency, 0.9f);

    // Loading state changes the parameters from inside: each change goes to the host, and this
    // host answers every report with a setParameter of its own.
    host().automated.clear();
    host().echoValue = 0.6f;
    plugin.dispatch(effSetChunk, 1, size, preset.data());
    host().echoValue = -1.0f;

    int reports = 0;
    for (const Automation& a : host().automated)
        if (a.index == kLowPassFrequency) {
            ++reports;
            EXPECT_NEAR(a.value, 0.25f, 1e-5);
        }
    EXPECT_EQ(reports, 1);  // the echo made no second report
    EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), 0.25f, 1e-5);  // and changed nothing
    // Outside a report the host's values count again.
    plugin.setParameter(kLowPassFrequency, 0.6f);
    EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), 0.6f, 1e-5);
}
