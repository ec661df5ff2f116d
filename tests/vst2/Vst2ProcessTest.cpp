#include "Vst2TestHost.h"
#include "adapters/vst2/sdk/VstEvents.h"
#include "adapters/vst2/sdk/VstSpeakerArrangement.h"
#include "support/AllocationCounter.h"
#include "support/Samples.h"

using namespace Vst2Test;
using TestSupport::allFinite;

namespace {
constexpr int kLatencyAt44k = 221;

struct Stereo {
    explicit Stereo(size_t n, float leftFirst = 0, float rightFirst = 0) : left(n), right(n) {
        left[0] = leftFirst, right[0] = rightFirst;
    }
    std::vector<float> left, right;
};

// Runs `input` into `output`, which may be the same, in whole blocks of `frames`.
void process(Plugin& plugin, Stereo& input, Stereo& output, int frames) {
    for (size_t at = 0; at + static_cast<size_t>(frames) <= input.left.size(); at += static_cast<size_t>(frames)) {
        float* in[2] = {input.left.data() + at, input.right.data() + at};
        float* out[2] = {output.left.data() + at, output.right.data() + at};
        plugin.process(in, out, frames);
    }
}

// An impulse on both sides, run through the plug-in in blocks of `frames`, in place.
Stereo impulseInPlace(Plugin& plugin, int frames, size_t length) {
    Stereo audio(length, 1.0f, 0.5f);
    process(plugin, audio, audio, frames);
    return audio;
}
}  // namespace

class Vst2Process : public Started {};

TEST_F(Vst2Process, InPlaceImpulseComesOutAfterTheReportedLatency) {
    // Host blocks larger than announced, hosts without time information and MIDI events change nothing.
    const struct {
        const char* name;
        float rate;
        int announced, frames;
        size_t length;
        bool giveTime, events;
        int latency;
    } rows[] = {
        {"plain", 44100, 512, 512, 2048, true, false, kLatencyAt44k},
        {"blocks larger than announced", 44100, 64, 1500, 3000, true, false, kLatencyAt44k},
        {"no time information", 48000, 256, 256, 1024, false, false, 240},
        {"after events", 44100, 512, 512, 1024, true, true, kLatencyAt44k},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Plugin fresh;  // each row starts its own
        ASSERT_NE(fresh.effect, nullptr);
        fresh.start(row.rate, row.announced);
        host().giveTime = row.giveTime;
        ASSERT_EQ(fresh.effect->initialDelay, row.latency);
        if (row.events) {
            VstMidiEvent note{.type = kVstMidiType, .byteSize = sizeof(VstMidiEvent), .deltaFrames = 10,
                              .midiData = {static_cast<char>(0x90), 60, 100}};
            VstEvent sysex{.type = kVstSysExType};
            VstEvents list{.numEvents = 2, .events = {reinterpret_cast<VstEvent*>(&note), &sysex}}, none{};
            EXPECT_EQ(fresh.dispatch(effProcessEvents, 0, 0, &list), 1);
            EXPECT_EQ(fresh.dispatch(effProcessEvents, 0, 0, &none), 1);
        }
        const Stereo out = impulseInPlace(fresh, row.frames, row.length);
        EXPECT_EQ(TestSupport::peakIndex(out.left), static_cast<size_t>(row.latency));
        EXPECT_EQ(TestSupport::peakIndex(out.right), static_cast<size_t>(row.latency));
        const float height = row.rate == 44100 ? 1.0f : 0.69f;  // the low-pass stops at 22,050 Hz, below that rate's Nyquist
        EXPECT_NEAR(out.left[static_cast<size_t>(row.latency)], height, 0.05f);
        EXPECT_NEAR(out.right[static_cast<size_t>(row.latency)], height / 2, 0.05f);
        EXPECT_TRUE(allFinite(out.left) && allFinite(out.right));
        EXPECT_GT(host().count(audioMasterGetTime), 0);  // it asked, with or without an answer
        // Blocks of any length up to the announced one keep working, down to a single sample.
        float one[2] = {0.25f, 0.25f};
        float* channels[2] = {&one[0], &one[1]};
        fresh.process(channels, channels, 1);
        EXPECT_TRUE(std::isfinite(one[0]) && std::isfinite(one[1]));
        fresh.process(channels, channels, 0);
    }
}

TEST_F(Vst2Process, SeparateBuffersGiveTheSameAndLeaveTheInput) {
    Plugin inPlace;
    inPlace.start(44100, 512);
    const Stereo expected = impulseInPlace(inPlace, 512, 2048);
    Stereo input(2048, 1.0f, 0.5f), output(2048);
    const Stereo original = input;
    process(plugin, input, output, 512);
    EXPECT_EQ(input.left, original.left);
    EXPECT_EQ(input.right, original.right);
    EXPECT_EQ(output.left, expected.left);
    EXPECT_EQ(output.right, expected.right);
}

TEST_F(Vst2Process, MonoInputFeedsBothSides) {
    VstSpeakerArrangement mono{.type = kSpeakerArrMono, .numChannels = 1},
        stereo{.type = kSpeakerArrStereo, .numChannels = 2};
    ASSERT_EQ(plugin.dispatch(effSetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&mono), &stereo), 1);

    Stereo input(1024), output(1024);
    input.left = TestSupport::sine(1024, 440, 44100, 0.4f);
    input.right.assign(1024, 0.9f);  // not the host's: a mono host's second pointer is not read
    process(plugin, input, output, 512);
    EXPECT_EQ(output.left, output.right);
    EXPECT_GT(TestSupport::energy(output.left), 1.0);
}

TEST_F(Vst2Process, ProcessReplacingAllocatesNothing) {
    VstMidiEvent note{.type = kVstMidiType, .midiData = {static_cast<char>(0x80)}};
    VstEvents list{.numEvents = 1, .events = {reinterpret_cast<VstEvent*>(&note)}};
    Stereo audio(512);
    audio.left = audio.right = TestSupport::sine(512, 440, 44100, 0.3f);
    float* channels[2] = {audio.left.data(), audio.right.data()};
    plugin.process(channels, channels, 512);
    TestSupport::AllocationScope scope;
    for (int b = 0; b < 20; ++b) {
        plugin.dispatch(effProcessEvents, 0, 0, &list);
        plugin.setParameter(1, b % 2 ? 0.3f : 0.7f);
        plugin.process(channels, channels, b % 3 ? 512 : 100);
    }
    EXPECT_EQ(scope.allocations(), 0u);
}
