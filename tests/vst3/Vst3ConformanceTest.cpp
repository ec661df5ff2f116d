// What the hosts' VST 3 conformance suite asks of a plug-in, asked the same way: parameter descriptions,
// bypass persistence, bus arrangements, input buffers, silence flags, odd block sizes and sample rates,
// and calls without audio. State round trips and lifecycle rounds: Vst3HostTest.

#include <bit>
#include <random>
#include <set>

#include "Vst3Instance.h"
#include "support/Samples.h"

using namespace TestHost;
using TestSupport::allFinite;

namespace {

constexpr ParamID kLowPassFrequency = 1;
constexpr ParamID kBypass = 41;

std::string text(IEditController* controller, ParamID id, ParamValue value) {
    String128 out{};
    controller->getParamStringByValue(id, value, out);
    return utf8(out);
}

// A call with no audio at all, as hosts make to hand over parameter changes alone.
tresult processWithoutAudio(Instance& plugin, IParameterChanges* changes, int32 samples = 0) {
    ProcessData data{.symbolicSampleSize = kSample32, .numSamples = samples, .inputParameterChanges = changes};
    return plugin.processor->process(data);
}

}  // namespace

class Vst3Conformance : public InstanceTest {};

TEST_F(Vst3Conformance, ParameterDescriptionsAndStepsAgreeWithTheirTexts) {
    std::set<ParamID> ids;
    int bypasses = 0;
    for (int32 i = 0; i < plugin.controller->getParameterCount(); ++i) {
        ParameterInfo info{};
        ASSERT_EQ(plugin.controller->getParameterInfo(i, info), kResultOk);
        const std::string title = utf8(info.title);
        SCOPED_TRACE(title);
        EXPECT_TRUE(ids.insert(info.id).second && !title.empty() && info.stepCount >= 0);
        EXPECT_TRUE(info.defaultNormalizedValue >= 0.0 && info.defaultNormalizedValue <= 1.0);
        EXPECT_FALSE(info.flags & ParameterInfo::kIsReadOnly);
        if (info.flags & ParameterInfo::kIsBypass) {
            ++bypasses;
            EXPECT_TRUE(info.flags & ParameterInfo::kCanAutomate);
        }
        // A parameter in steps shows one text per step; one without shows its value in fine steps.
        std::set<std::string> sweep, steps;
        for (int k = 0; k <= 2000; ++k) sweep.insert(text(plugin.controller, info.id, k / 2000.0));
        if (info.stepCount == 0) {
            EXPECT_GT(sweep.size(), 10u);
            continue;
        }
        for (int k = 0; k <= info.stepCount; ++k) {
            const std::string shown = text(plugin.controller, info.id, static_cast<double>(k) / info.stepCount);
            EXPECT_TRUE(steps.insert(shown).second) << "step " << k << " shows \"" << shown << "\" again";
        }
        for (const std::string& shown : sweep) EXPECT_TRUE(steps.count(shown)) << "\"" << shown << "\" is no step";
    }
    EXPECT_EQ(bypasses, 1);
}

TEST_F(Vst3Conformance, BypassSetInTheControllerPersistsThroughAPreset) {
    auto hostSetsBypass = [&](ParamValue value) {
        EXPECT_EQ(plugin.controller->setParamNormalized(kBypass, value), kResultOk);
        EXPECT_EQ(plugin.controller->getParamNormalized(kBypass), value);
        Changes changes;
        EXPECT_EQ(processWithoutAudio(plugin, &changes.add(kBypass, value)), kResultOk);
    };
    hostSetsBypass(1);
    // A preset file holds the component's state and the controller's.
    MemoryStream componentState, controllerState;
    ASSERT_EQ(plugin.component->getState(&componentState), kResultOk);
    ASSERT_EQ(plugin.controller->getState(&controllerState), kResultOk);
    hostSetsBypass(0);

    componentState.position = controllerState.position = 0;
    ASSERT_EQ(plugin.component->setState(&componentState), kResultOk);
    componentState.position = 0;
    ASSERT_EQ(plugin.controller->setComponentState(&componentState), kResultOk);
    ASSERT_EQ(plugin.controller->setState(&controllerState), kResultOk);
    EXPECT_EQ(plugin.controller->getParamNormalized(kBypass), 1.0);

    // The controller shows what a loaded state holds, also where the host had set it otherwise.
    EXPECT_EQ(plugin.controller->setParamNormalized(kBypass, 0), kResultOk);
    componentState.position = 0;
    ASSERT_EQ(plugin.controller->setComponentState(&componentState), kResultOk);
    EXPECT_EQ(plugin.controller->getParamNormalized(kBypass), 1.0);
}

TEST_F(Vst3Conformance, MonoAndStereoBusesOnlyAndTheirDescriptionFollows) {
    constexpr SpeakerArrangement kMono = SpeakerArr::kMono, kStereo = SpeakerArr::kStereo;
    constexpr SpeakerArrangement kFiveOne = 0x3F, kSurroundPair = 0x30;
    const struct {
        SpeakerArrangement in, out;
        int32 inCount, outCount;
        bool accepted;
    } cases[] = {
        {kStereo, kStereo, 1, 1, true},        {kMono, kStereo, 1, 1, true},
        {kStereo, kMono, 1, 1, true},          {kMono, kMono, 1, 1, true},
        {kFiveOne, kStereo, 1, 1, false},      {kStereo, kFiveOne, 1, 1, false},
        {kSurroundPair, kStereo, 1, 1, false}, {SpeakerArr::kEmpty, kStereo, 1, 1, false},
        {kStereo, kStereo, 2, 1, false},       {kStereo, kStereo, 1, 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.in << " -> " << c.out << " x" << c.inCount << c.outCount);
        Instance fresh(module);
        SpeakerArrangement ins[2] = {c.in, c.in}, outs[1] = {c.out};
        EXPECT_EQ(fresh.processor->setBusArrangements(ins, c.inCount, outs, c.outCount) == kResultTrue, c.accepted);
        for (BusDirection direction : {kInput, kOutput}) {
            SpeakerArrangement now = 0;
            ASSERT_EQ(fresh.processor->getBusArrangement(direction, 0, now), kResultOk);
            const SpeakerArrangement asked = direction == kInput ? c.in : c.out;
            EXPECT_EQ(now, c.accepted ? asked : kStereo);
            BusInfo bus{};
            ASSERT_EQ(fresh.component->getBusInfo(kAudio, direction, 0, bus), kResultOk);
            EXPECT_EQ(bus.channelCount, std::popcount(now));
            EXPECT_TRUE(bus.mediaType == kAudio && bus.direction == direction && bus.busType == kMain);
            EXPECT_EQ(bus.flags, static_cast<uint32>(BusInfo::kDefaultActive));
            for (int32 outside : {-1, 1})
                EXPECT_NE(fresh.component->getBusInfo(kAudio, direction, outside, bus), kResultOk);
        }
    }
}

// Separate buffers: the host's input is left alone, and silence flags mark only silent output channels.
TEST_F(Vst3Conformance, InputBuffersAreLeftAloneAndSilenceFlagsMarkOnlySilentChannels) {
    for (uint64 inputFlags = 0; inputFlags < 4; ++inputFlags) {
        for (float level : {0.0f, 0.5f}) {
            std::vector<float> inL = TestSupport::sine(512, 440, 44100, level), outL(512, 1.0f), outR(512, 1.0f);
            std::vector<float> inR = TestSupport::sine(512, 660, 44100, level);
            const std::vector<float> givenL = inL, givenR = inR;
            float* in[2] = {inL.data(), inR.data()};
            float* out[2] = {outL.data(), outR.data()};
            const int32 channels = inputFlags == 3 ? 1 : 2;
            AudioBusBuffers input{channels, level == 0 ? inputFlags : 0, {in}}, output{2, ~uint64{0}, {out}};
            ProcessData data{kRealtime, kSample32, 512, 1, 1, &input, &output};
            ASSERT_EQ(plugin.processor->process(data), kResultOk);
            EXPECT_TRUE(inL == givenL && inR == givenR);
            EXPECT_EQ(output.silenceFlags & ~uint64{3}, 0u);
            for (int c = 0; c < 2; ++c) {
                const std::vector<float>& channel = c == 0 ? outL : outR;
                const bool silent = std::all_of(channel.begin(), channel.end(), [](float x) { return x == 0; });
                EXPECT_EQ((output.silenceFlags >> c) & 1, silent ? 1u : 0u) << level << " channel " << c;
            }
        }
    }
}

TEST_F(Vst3Conformance, BlocksOfAnySizeUpToTheMaximum) {
    constexpr int32 kMax = 1024;
    Instance large(module, 44100, kMax);
    std::mt19937 random(7);
    std::vector<int32> sizes = {0, 1, kMax, 2, kMax - 1, 87, 88, 89, 175, 176, 177};
    for (int i = 0; i < 200; ++i) sizes.push_back(std::uniform_int_distribution<int32>(1, kMax)(random));
    size_t position = 0;
    for (int32 n : sizes) {
        std::vector<float> l = sine(static_cast<size_t>(n), 440, position), r = l;
        large.run(l.data(), r.data(), n);
        ASSERT_EQ(large.lastResult, kResultOk) << n;
        ASSERT_TRUE(allFinite(l) && allFinite(r)) << n;
        position += static_cast<size_t>(n);
    }
}

TEST_F(Vst3Conformance, OddSampleRatesGiveFiniteOutput) {
    // Resonance, steep slopes and both modulators at rates far from the usual ones.
    Changes busy;
    busy.add(kLowPassFrequency, 0.6).add(2, 0.9).add(4, 1.0).add(5, 0.3).add(6, 0.9).add(8, 1.0);
    busy.add(27, 0.7).add(37, 0.5).add(43, 0.5);
    Instance switched(module);
    for (double rate : {1234.5678, 12345.678, 22050.0, 32000.0, 44100.0, 48000.0, 88200.0, 96000.0, 123456.78, 192000.0,
                        384000.0, 1234567.8}) {
        SCOPED_TRACE(rate);
        Instance fresh(module, rate, 512);
        ASSERT_EQ(switched.reconfigure(rate, 512), kResultOk);
        for (Instance* instance : {&fresh, &switched}) {
            int firstNonFinite = -1;
            for (int b = 0; b < 40; ++b) {
                std::vector<float> l = sine(512, 440, static_cast<size_t>(b) * 512), r = l;
                instance->run(l.data(), r.data(), 512, b == 20 ? &busy : nullptr);
                ASSERT_EQ(instance->lastResult, kResultOk);
                if (firstNonFinite < 0 && !(allFinite(l) && allFinite(r))) firstNonFinite = b;
            }
            EXPECT_EQ(firstNonFinite, -1) << (instance == &fresh ? "made at this rate" : "switched to this rate");
        }
    }
}

TEST_F(Vst3Conformance, CallsWithoutBuffersStillDeliverParameterChanges) {
    Changes changes;
    EXPECT_EQ(processWithoutAudio(plugin, &changes.add(kLowPassFrequency, 0.3)), kResultOk);
    EXPECT_EQ(processWithoutAudio(plugin, nullptr, 64), kResultOk);
    // Buses without channel buffers, or with null ones.
    float* none[2] = {nullptr, nullptr};
    for (float** channels : {static_cast<float**>(nullptr), none}) {
        AudioBusBuffers input{2, 0, {channels}}, output{2, 0, {channels}};
        ProcessData data{kRealtime, kSample32, 64, 1, 1, &input, &output};
        EXPECT_EQ(plugin.processor->process(data), kResultOk);
    }
    // The effect took the change: a state saved now carries it.
    Instance copy(module);
    ASSERT_EQ(copy.load(plugin.state()), kResultOk);
    EXPECT_NEAR(copy.controller->getParamNormalized(kLowPassFrequency), 0.3, 1e-6);
}
