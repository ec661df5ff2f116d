#include <cmath>

#include "Vst2TestHost.h"
#include "adapters/vst2/sdk/VstParameterProperties.h"

using namespace Vst2Test;

namespace {
constexpr int kInputGain = 0;
constexpr int kLowPassFrequency = 1;
}  // namespace

class Vst2Parameters : public Started {};

TEST_F(Vst2Parameters, NamesUnitsPropertiesAndDisplayTextsByIndex) {
    const struct {
        VstInt32 opcode;
        int index;
        const char* text;
    } texts[] = {{effGetParamName, kInputGain, "Input Gain"},         {effGetParamLabel, kInputGain, "dB"},
                 {effGetParamDisplay, kInputGain, "+0.00"},  // unity gain
                 {effGetParamName, kLowPassFrequency, "LowPass.Freq."}, {effGetParamLabel, kLowPassFrequency, "Hz"},
                 {effGetParamDisplay, kLowPassFrequency, "22050.0"}};
    for (const auto& t : texts) EXPECT_EQ(plugin.text(t.opcode, t.index), t.text);
    EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), 1.0f);
    // A curve of 30 puts the middle of the knob at 3.125 % of the range.
    for (auto [value, shown] : {std::pair{0.0f, "40.0"}, {0.5f, "727.8"}}) {
        plugin.setParameter(kLowPassFrequency, value);
        EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), value, 1e-5);
        EXPECT_EQ(plugin.text(effGetParamDisplay, kLowPassFrequency), shown);
    }
    // The properties carry the full and the short name, and no flags.
    VstParameterProperties properties;
    std::memset(&properties, 0x55, sizeof properties);
    ASSERT_EQ(plugin.dispatch(effGetParameterProperties, kLowPassFrequency, 0, &properties), 1);
    EXPECT_STREQ(properties.label, "LowPass Frequency");
    EXPECT_STREQ(properties.shortLabel, "LowPass");
    EXPECT_EQ(properties.displayIndex, kLowPassFrequency);
    EXPECT_EQ(properties.flags, 0);
    EXPECT_EQ(properties.category, 0);
    EXPECT_EQ(plugin.dispatch(effGetParameterProperties, 0, 0, nullptr), 0);
    // Every parameter has a name, fits its buffer and can be automated.
    for (int index = 0; index < plugin.effect->numParams; ++index) {
        const std::string name = plugin.text(effGetParamName, index);
        EXPECT_FALSE(name.empty()) << index;
        EXPECT_LE(name.size(), 24u) << index;
        EXPECT_LE(plugin.text(effGetParamDisplay, index).size(), 24u) << index;
        EXPECT_EQ(plugin.dispatch(effCanBeAutomated, index), 1) << index;
    }
}

TEST_F(Vst2Parameters, OutOfRangeIndexesAndValuesAreHarmless) {
    const int count = plugin.effect->numParams;
    for (int index : {-1, count, count + 1, 100000}) {
        for (VstInt32 opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay})
            EXPECT_EQ(plugin.text(opcode, index), "") << index;
        EXPECT_EQ(plugin.getParameter(index), 0.0f) << index;
        plugin.setParameter(index, 0.5f);
        EXPECT_EQ(plugin.dispatch(effCanBeAutomated, index), 0) << index;
        VstParameterProperties properties{};
        EXPECT_EQ(plugin.dispatch(effGetParameterProperties, index, 0, &properties), 0) << index;
    }
    // Values outside 0..1 are clipped, not-a-number is ignored.
    for (auto [value, kept] : {std::pair{7.0f, 1.0f}, {-3.0f, 0.0f}, {std::nanf(""), 0.0f}}) {
        plugin.setParameter(kLowPassFrequency, value);
        EXPECT_FLOAT_EQ(plugin.getParameter(kLowPassFrequency), kept);
    }
}

TEST_F(Vst2Parameters, HostValuesAreNotReportedBackAndAnEchoOfAReportIsDropped) {
    host().automated.clear();
    for (int index = 0; index < plugin.effect->numParams; ++index) plugin.setParameter(index, 0.3f);
    EXPECT_TRUE(host().automated.empty());

    plugin.setParameter(kLowPassFrequency, 0.25f);
    void* data = nullptr;
    const VstIntPtr size = plugin.dispatch(effGetChunk, 1, 0, &data);
    ASSERT_GT(size, 0);
    std::vector<char> preset(static_cast<char*>(data), static_cast<char*>(data) + size);
    plugin.setParameter(kLowPassFrequency, 0.9f);
    // Loading state changes the parameters from inside: each change goes to the host, and this
    // host answers every report with a setParameter of its own.
    host().echoValue = 0.6f;
    plugin.dispatch(effSetChunk, 1, size, preset.data());
    host().echoValue = -1.0f;
    int reports = 0;
    for (auto [index, value] : host().automated)
        if (index == kLowPassFrequency) {
            ++reports;
            EXPECT_NEAR(value, 0.25f, 1e-5);
        }
    EXPECT_EQ(reports, 1);  // the echo made no second report
    EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), 0.25f, 1e-5);  // and changed nothing
    // Outside a report the host's values count again.
    plugin.setParameter(kLowPassFrequency, 0.6f);
    EXPECT_NEAR(plugin.getParameter(kLowPassFrequency), 0.6f, 1e-5);
}
