#include <gtest/gtest.h>

#include <memory>
#include <string>
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

TEST(ParameterCurve, ShapeValuesAndInverse) {
    EXPECT_FLOAT_EQ(shape(0.5f, 30), 0.03125f);
    for (float c : {-30.f, -3.f, 0.f, 10.f, 30.f}) {
        EXPECT_FLOAT_EQ(shape(0, c), 0);
        EXPECT_FLOAT_EQ(shape(1, c), 1);
        for (float x = 0; x <= 1.0f; x += 0.125f) EXPECT_NEAR(shape(shape(x, c), -c), x, 1e-5) << c << " " << x;
    }
    EXPECT_FLOAT_EQ(shape(0.3f, 0), 0.3f);
}

TEST(ParameterProperty, NormalisedRoundTripOverTheCurve) {
    auto p = make(40, 22050, 22050, 22050, 30, kUnitFrequency);
    p->setNormalized(1.0f);
    EXPECT_FLOAT_EQ(p->getValue(), 22050);
    p->setNormalized(0.0f);
    EXPECT_FLOAT_EQ(p->getValue(), 40);
    p->setNormalized(0.5f);
    EXPECT_NEAR(p->getValue(), 40 + (22050 - 40) * 0.03125f, 0.01);
    EXPECT_NEAR(p->getNormalized(), 0.5f, 1e-5);
    p->setNormalized(1.7f);  // clipped to 0..1
    EXPECT_FLOAT_EQ(p->getValue(), 22050);
}

TEST(ParameterProperty, SetValueClipsAndAlwaysNotifies) {
    std::vector<std::string> log;
    RecordingListener listener(&log, "a");
    auto p = make(0, 2, 1, 1, 0, kUnitGain);
    p->addListener(&listener, false);
    p->setValue(5);
    EXPECT_FLOAT_EQ(p->getValue(), 2);
    p->setValue(2);
    EXPECT_EQ(log.size(), 2u);
    auto inverted = make(1, -1, 0, 0, 0, kUnitFraction);
    inverted->setValue(3);
    EXPECT_FLOAT_EQ(inverted->getValue(), 1);
    inverted->setValue(-3);
    EXPECT_FLOAT_EQ(inverted->getValue(), -1);
}

TEST(ParameterProperty, ListenersLastAddedFirstAndExceptSkipsTheSetter) {
    std::vector<std::string> log;
    RecordingListener a(&log, "a"), b(&log, "b"), c(&log, "c");
    auto p = make(0, 1, 0, 0, 0, kUnitFraction);
    p->addListener(&a, false);
    p->addListener(&b, false);
    p->addListener(&c, true);
    EXPECT_EQ(log, std::vector<std::string>({"c"}));
    p->addListener(&b, false);  // no duplicate
    log.clear();
    p->setValue(0.5f);
    EXPECT_EQ(log, std::vector<std::string>({"c", "b", "a"}));
    log.clear();
    p->setNormalized(&b, 0.2f);
    EXPECT_EQ(log, std::vector<std::string>({"c", "a"}));
    log.clear();
    p->removeListener(&c);
    p->setNotifyEnabled(false);
    p->setValue(0.1f);
    EXPECT_TRUE(log.empty());
    p->setNotifyEnabled(true);
    p->setValue(0.1f);
    EXPECT_EQ(log, std::vector<std::string>({"b", "a"}));
}

TEST(ParameterProperty, DefaultsAndResetAreSeparateFromTheInitialValue) {
    auto p = make(1, 1000, 5, 50, 18, kUnitTime);
    EXPECT_FLOAT_EQ(p->getValue(), 5);
    p->resetToDefault();
    EXPECT_FLOAT_EQ(p->getValue(), 50);
    p->setDefault(5000);
    EXPECT_FLOAT_EQ(p->getDefault(), 1000);
    auto clipped = make(0.001f, 22050, 0, 0.001f, 25, kUnitFrequency);
    EXPECT_FLOAT_EQ(clipped->getValue(), 0.001f);
}

TEST(ParameterProperty, IntAndBool) {
    auto p = make(-5, 5, 0, 0, 0, kUnitWhole);
    p->setValue(2.99f);
    EXPECT_EQ(p->getInt(), 3);
    p->setValue(2.97f);
    EXPECT_EQ(p->getInt(), 2);
    p->setValue(-2.99f);
    EXPECT_EQ(p->getInt(), -3);
    auto sw = make(0, 1, 0, 0, 0, kUnitSwitch);
    sw->setValue(0.49f);
    EXPECT_FALSE(sw->getBool());
    sw->setValue(0.5f);
    EXPECT_TRUE(sw->getBool());
}

TEST(ParameterProperty, MinimumAndMaximumClipThePresentValue) {
    std::vector<std::string> log;
    RecordingListener a(&log, "a");
    auto p = make(0, 10, 8, 0, 0, kUnitNumber);
    p->addListener(&a, false);
    p->setMaximum(10);
    EXPECT_TRUE(log.empty());
    p->setMaximum(5);
    EXPECT_FLOAT_EQ(p->getValue(), 5);
    EXPECT_EQ(log.size(), 1u);
    p->setMinimum(1);
    EXPECT_EQ(log.size(), 1u);
}

TEST(UnitTypeText, EveryTypeInBothForms) {
    const int plain = kDisplayPlain;
    auto gain = make(0, 2, 1, 1, 0, kUnitGain);
    EXPECT_EQ(text(*gain, 0, plain), "-oo");
    EXPECT_EQ(text(*gain, 0.5f, plain), "-6");
    EXPECT_EQ(text(*gain, 1), "+0.00");
    EXPECT_EQ(text(*gain, 2), "+6.02");
    EXPECT_EQ(text(*gain, 0.5f), "-6.02");
    EXPECT_EQ(text(*gain, 1, kDisplayWithUnit), "+0.00 dB");

    auto fraction = make(0, 1, 0, 0, 0, kUnitFraction);
    EXPECT_EQ(text(*fraction, 0.5f, plain), "50");
    EXPECT_EQ(text(*fraction, 0.5f), "50.00");
    auto bipolarFraction = make(-1, 1, 0, 0, 0, kUnitFraction);
    EXPECT_EQ(text(*bipolarFraction, 0.5f), "+50.00");
    EXPECT_EQ(text(*bipolarFraction, -0.5f, plain), "-50");
    auto lfoStrength = make(-3, 3, 0, 0, 0, kUnitFraction);
    EXPECT_EQ(text(*lfoStrength, 1.5f, plain), "+50");

    auto time = make(1, 1000, 5, 50, 18, kUnitTime);
    EXPECT_EQ(text(*time, 5, plain | kDisplayWithUnit), "5 ms");
    EXPECT_EQ(text(*time, 5), "5.0");

    auto bipolar = make(-2, 4, 0, 0, 0, kUnitBipolar);
    EXPECT_EQ(text(*bipolar, -1, plain), "-50%");
    EXPECT_EQ(text(*bipolar, 2), "+50.00%");
    auto noMinimum = make(0, 4, 0, 0, 0, kUnitBipolar);
    EXPECT_EQ(text(*noMinimum, 0, plain), "0%");

    auto semis = make(-24, 24, 0, 0, 0, kUnitSemitones);
    EXPECT_EQ(text(*semis, 2.5f), "+2 +50 cent");
    EXPECT_EQ(text(*semis, -1.25f), "-1 -25 cent");

    auto sw = make(0, 1, 0, 0, 0, kUnitSwitch);
    EXPECT_EQ(text(*sw, 0.49f), "Off");
    EXPECT_EQ(text(*sw, 0.5f), "On");

    auto balance = make(-1, 1, 0, 0, 0, kUnitBalance);
    EXPECT_EQ(text(*balance, 0), "Center");
    EXPECT_EQ(text(*balance, 0.5f), "Right 50");
    EXPECT_EQ(text(*balance, -0.25f), "Left 25");

    auto note = make(0, 127, 0, 0, 0, kUnitNote);
    EXPECT_EQ(text(*note, 0), "C -2");
    EXPECT_EQ(text(*note, 60), "C 3");
    EXPECT_EQ(text(*note, 61), "C#3");

    auto whole = make(1, 4, 2, 2, 0, kUnitWhole);
    EXPECT_EQ(text(*whole, 2.99f), "3");
    auto ratio = make(1, 10, 1, 1, 0, kUnitRatio);
    EXPECT_EQ(text(*ratio, 10), " 1 : inf");
    EXPECT_EQ(text(*ratio, 4), " 1 : 4.00");
    EXPECT_EQ(text(*ratio, 4, kDisplayWithName), "Name  1 : 4.00");
}

TEST(UnitTypeText, SetFromTextPerType) {
    auto fraction = make(0, 1, 0, 0, 0, kUnitFraction);
    fraction->setFromText("25");
    EXPECT_FLOAT_EQ(fraction->getValue(), 0.25f);
    auto gain = make(0, 2, 1, 1, 0, kUnitGain);
    gain->setFromText("-6.0206");
    EXPECT_NEAR(gain->getValue(), 0.5f, 1e-4);
    auto bipolar = make(-2, 4, 0, 0, 0, kUnitBipolar);
    bipolar->setFromText("50");
    EXPECT_FLOAT_EQ(bipolar->getValue(), 2);
    bipolar->setFromText("-50");
    EXPECT_FLOAT_EQ(bipolar->getValue(), -1);
    auto note = make(0, 127, 0, 0, 0, kUnitNote);
    note->setFromText("C#3");
    EXPECT_EQ(note->getInt(), 61);
    auto ratio = make(1, 10, 1, 1, 0, kUnitRatio);
    ratio->setFromText(" 1 : 3.5");
    EXPECT_FLOAT_EQ(ratio->getValue(), 3.5f);
    ratio->setFromText("1 : inf");
    EXPECT_FLOAT_EQ(ratio->getValue(), 10);
    ratio->setFromText("1 : -inf");
    EXPECT_FLOAT_EQ(ratio->getValue(), 1);
    auto hertz = make(40, 22050, 1000, 1000, 30, kUnitFrequency);
    hertz->setFromText("440 Hz");
    EXPECT_FLOAT_EQ(hertz->getValue(), 440);
    hertz->setFromText(nullptr);
    EXPECT_FLOAT_EQ(hertz->getValue(), 440);
    hertz->setFromText("garbage");  // no number reads as 0, clipped into the range
    EXPECT_FLOAT_EQ(hertz->getValue(), 40);

    Core::CStringBufferd<41> name;
    auto textParameter = make(0, 1, 0, 0, 0, kUnitText);
    textParameter->setLinkedText(&name);
    textParameter->setFromText("Acid Sweep");
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
    EXPECT_STREQ(copy.getKey(), "KEY");
    EXPECT_STREQ(copy.getAutomationName(), "Auto");
    EXPECT_EQ(copy.getId(), 7);
    EXPECT_FLOAT_EQ(copy.getValue(), 0.25f);
    EXPECT_EQ(copy.getUnitType(), kUnitBipolar);
    EXPECT_EQ(copy.listenerCount(), 0u);
}
