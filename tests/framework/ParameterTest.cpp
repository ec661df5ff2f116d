#include <gtest/gtest.h>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "framework/parameters/ParameterChangeListener.h"
#include "framework/parameters/ParameterCurve.h"
#include "framework/parameters/ParameterProperty.h"

using namespace Ondra;

namespace {
struct RecordingListener : ParameterChangeListener {
    RecordingListener(std::vector<std::string>* out, std::string name) : log(out), tag(std::move(name)) {}
    void parameterChanged(IPluginParameter*) override { log->push_back(tag); }
    std::vector<std::string>* log;
    std::string tag;
};

std::unique_ptr<ParameterProperty> make(float minimum, float maximum, float initial, float def, float curve, int type) {
    return std::make_unique<ParameterProperty>(
        ParameterRecord{"KEY", "Name", "Auto", minimum, maximum, initial, def, true, curve, type, 7});
}

std::string text(ParameterProperty& p, float v, int flags = 0) {
    char out[kParameterTextSize];
    p.getDisplayText(v, out, flags);
    return out;
}
}  // namespace

TEST(ParameterCurve, ShapeEndsAndInverse) {
    for (float c : {-30.f, -3.f, 0.f, 10.f, 30.f}) {
        EXPECT_FLOAT_EQ(shape(0, c), 0);
        EXPECT_FLOAT_EQ(shape(1, c), 1);
        for (float x = 0; x <= 1.0f; x += 0.125f) EXPECT_NEAR(shape(shape(x, c), -c), x, 1e-5) << c << " " << x;
    }
    EXPECT_FLOAT_EQ(shape(0.3f, 0), 0.3f);
}

// The curve's values through a parameter, both ways, are pinned by the VST 2 and VST 3 parameter tests.
TEST(ParameterProperty, NormalisedAndPlainValuesClipToTheirRanges) {
    auto p = make(40, 22050, 40, 40, 30, kUnitFrequency);
    p->setNormalized(1.7f);
    EXPECT_FLOAT_EQ(p->getValue(), 22050.0f);
    // Values clip to the range, also an inverted one, and always notify.
    std::vector<std::string> log;
    RecordingListener listener(&log, "a");
    auto gain = make(0, 2, 1, 1, 0, kUnitGain);
    gain->addListener(&listener, false);
    gain->setValue(5);
    EXPECT_FLOAT_EQ(gain->getValue(), 2);
    gain->setValue(2);
    EXPECT_EQ(log.size(), 2u);
    auto inverted = make(1, -1, 0, 0, 0, kUnitFraction);
    for (float v : {3.0f, -3.0f}) {
        inverted->setValue(v);
        EXPECT_FLOAT_EQ(inverted->getValue(), v / 3);
    }
}

TEST(ParameterProperty, ListenersLastAddedFirstAndExceptSkipsTheSetter) {
    std::vector<std::string> log;
    RecordingListener a(&log, "a"), b(&log, "b"), c(&log, "c");
    auto p = make(0, 1, 0, 0, 0, kUnitFraction);
    p->addListener(&a, false);
    p->addListener(&b, false);
    using Log = std::vector<std::string>;
    auto heard = [&](const std::function<void()>& action) { return log.clear(), action(), log; };
    EXPECT_EQ(heard([&] { p->addListener(&c, true); }), Log({"c"}));
    p->addListener(&b, false);  // no duplicate
    EXPECT_EQ(heard([&] { p->setValue(0.5f); }), Log({"c", "b", "a"}));
    EXPECT_EQ(heard([&] { p->setNormalized(&b, 0.2f); }), Log({"c", "a"}));
    p->removeListener(&c);
    EXPECT_EQ(heard([&] { p->setValue(0.1f); }), Log({"b", "a"}));
}

TEST(ParameterProperty, DefaultsLimitsAndRounding) {
    auto p = make(1, 1000, 5, 50, 18, kUnitTime);
    EXPECT_FLOAT_EQ(p->getValue(), 5);  // the initial value, not the default
    p->setDefault(5000);
    EXPECT_FLOAT_EQ(p->getDefault(), 1000);
    EXPECT_FLOAT_EQ(make(0.001f, 22050, 0, 0.001f, 25, kUnitFrequency)->getValue(), 0.001f);  // so is the initial value
    // A new limit clips the present value and tells the listeners only then.
    std::vector<std::string> log;
    RecordingListener a(&log, "a");
    p->addListener(&a, false);
    p->setMaximum(1000);
    EXPECT_TRUE(log.empty());
    p->setMaximum(4);
    EXPECT_FLOAT_EQ(p->getValue(), 4);
    p->setMinimum(2);
    EXPECT_EQ(log.size(), 1u);

    auto whole = make(-5, 5, 0, 0, 0, kUnitWhole);
    for (auto [value, rounded] : {std::pair{2.99f, 3}, {2.97f, 2}, {-2.99f, -3}}) {
        whole->setValue(value);
        EXPECT_EQ(whole->getInt(), rounded) << value;
    }
    auto sw = make(0, 1, 0, 0, 0, kUnitSwitch);
    for (auto [value, on] : {std::pair{0.49f, false}, {0.5f, true}}) {
        sw->setValue(value);
        EXPECT_EQ(sw->getBool(), on) << value;
    }
}

TEST(UnitTypeText, EveryTypeInBothForms) {
    const int plain = kDisplayPlain, unit = kDisplayWithUnit;
    const struct {
        float minimum, maximum;
        int type;
        float value;
        int flags;
        const char* shown;
    } rows[] = {
        {0, 2, kUnitGain, 0, plain, "-oo"},           {0, 2, kUnitGain, 0.5f, plain, "-6"},
        {0, 2, kUnitGain, 0.5f, 0, "-6.02"},          {0, 1, kUnitFraction, 0.5f, plain, "50"},
        {0, 1, kUnitFraction, 0.5f, 0, "50.00"},      {-1, 1, kUnitFraction, 0.5f, 0, "+50.00"},
        {-1, 1, kUnitFraction, -0.5f, plain, "-50"},  {-3, 3, kUnitFraction, 1.5f, plain, "+50"},
        {1, 1000, kUnitTime, 5, plain | unit, "5 ms"}, {1, 1000, kUnitTime, 5, 0, "5.0"},
        {-2, 4, kUnitBipolar, -1, plain, "-50%"},     {-2, 4, kUnitBipolar, 2, 0, "+50.00%"},
        {0, 4, kUnitBipolar, 0, plain, "0%"},         {1, 4, kUnitWhole, 2.99f, 0, "3"},
        {-24, 24, kUnitSemitones, 2.5f, 0, "+2 +50 cent"}, {-24, 24, kUnitSemitones, -1.25f, 0, "-1 -25 cent"},
        {0, 1, kUnitSwitch, 0.49f, 0, "Off"},         {0, 1, kUnitSwitch, 0.5f, 0, "On"},
        {-1, 1, kUnitBalance, 0, 0, "Center"},        {-1, 1, kUnitBalance, 0.5f, 0, "Right 50"},
        {-1, 1, kUnitBalance, -0.25f, 0, "Left 25"},  {0, 127, kUnitNote, 0, 0, "C -2"},
        {0, 127, kUnitNote, 60, 0, "C 3"},            {0, 127, kUnitNote, 61, 0, "C#3"},
        {1, 10, kUnitRatio, 10, 0, " 1 : inf"},       {1, 10, kUnitRatio, 4, 0, " 1 : 4.00"},
        {1, 10, kUnitRatio, 4, kDisplayWithName, "Name  1 : 4.00"},
    };
    for (const auto& r : rows)
        EXPECT_EQ(text(*make(r.minimum, r.maximum, r.minimum, r.minimum, 0, r.type), r.value, r.flags), r.shown);
}

TEST(UnitTypeText, SetFromTextPerType) {
    const struct {
        float minimum, maximum;
        int type;
        const char* typed;
        float value;
    } rows[] = {
        {0, 1, kUnitFraction, "25", 0.25f},   {0, 2, kUnitGain, "-6.0206", 0.5f},
        {-2, 4, kUnitBipolar, "50", 2},       {-2, 4, kUnitBipolar, "-50", -1},
        {0, 127, kUnitNote, "C#3", 61},       {1, 10, kUnitRatio, " 1 : 3.5", 3.5f},
        {1, 10, kUnitRatio, "1 : inf", 10},   {1, 10, kUnitRatio, "1 : -inf", 1},
        {40, 22050, kUnitFrequency, "440 Hz", 440},
        {40, 22050, kUnitFrequency, "garbage", 40},  // no number reads as 0, clipped into the range
    };
    for (const auto& r : rows) {
        auto p = make(r.minimum, r.maximum, r.maximum, r.maximum, 0, r.type);
        p->setFromText(r.typed);
        // A note reads a hair above its key.
        EXPECT_NEAR(p->getValue(), r.value, r.type == kUnitNote ? 0.05 : 1e-4) << r.typed;
    }

    Core::CStringBufferd<41> name;
    auto textParameter = make(0, 1, 0, 0, 0, kUnitText);
    textParameter->setLinkedText(&name);
    textParameter->setFromText("Acid Sweep");
    textParameter->setFromText(nullptr);
    EXPECT_STREQ(name.c_str(), "Acid Sweep");
    EXPECT_EQ(text(*textParameter, 0), "Acid Sweep");
}

TEST(ParameterProperty, FormattersTakePrecedenceInOrder) {
    auto p = make(0, 1, 0, 0, 0, kUnitFraction);
    p->setFormatter(nullptr);
    p->setFormatParameter([](IPluginParameter*, float, char* out, bool, IPluginParameter*) { out[0] = 'P', out[1] = 0; });
    EXPECT_EQ(text(*p, 0.5f), "P");
    p->setFormatValue([](float, char* out, bool withUnit) { out[0] = withUnit ? 'U' : 'V', out[1] = 0; });
    EXPECT_EQ(text(*p, 0.5f), "V");
    EXPECT_EQ(text(*p, 0.5f, kDisplayWithUnit), "U");
}

TEST(ParameterProperty, CopyTakesEverythingButListeners) {
    std::vector<std::string> log;
    RecordingListener a(&log, "a");
    auto source = make(-1, 1, 0.25f, 0, 0, kUnitBipolar);
    source->addListener(&a, false);
    ParameterProperty copy;
    copy.copyFrom(*source);
    EXPECT_EQ(std::string(copy.getKey()) + "," + copy.getAutomationName() + "," + text(copy, 0.5f), "KEY,Auto,+50.00%");
    EXPECT_EQ(std::tuple(copy.getId(), copy.getValue(), copy.listenerCount()), std::tuple(7, 0.25f, size_t{0}));
}
