// The offline renderer and a VST 3 host give the same sound for the same preset at the file's rate:
// what a user rendered is what the session played.
#include <unistd.h>

#include <cstdlib>

#include "AudioFile.h"
#include "FactoryPresets.h"
#include "Vst3Instance.h"

using namespace TestHost;

namespace {
constexpr int kRate = 48000, kBlock = 512;
constexpr double kTempo = 120;

StereoAudio testInput(size_t frames) {
    StereoAudio audio{.left = TestSupport::sine(frames, 330, kRate, 0.4f), .sampleRate = kRate};
    audio.right = audio.left;
    uint32_t seed = 99;
    for (size_t i = 0; i < frames; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const float noise = static_cast<float>(seed >> 8) / 16777216.0f - 0.5f;
        audio.left[i] += 0.2f * noise, audio.right[i] -= 0.2f * noise;
    }
    return audio;
}

// As a DAW reopening a session: the preset's state arrives before processing starts.
StereoAudio throughVst3(const std::string& preset, const StereoAudio& input) {
    Module module;
    Instance instance(module, kRate, kBlock);
    std::vector<uint8_t> chunk;
    EXPECT_EQ(loadPresetChunk(preset, chunk), "");
    std::vector<char> state(8);
    const int32 size = static_cast<int32>(chunk.size());
    std::memcpy(state.data(), &size, 4);
    state.insert(state.end(), chunk.begin(), chunk.end());
    EXPECT_EQ(instance.load(state), kResultOk);

    const int32 latency = static_cast<int32>(instance.processor->getLatencySamples());
    StereoAudio out = input;
    out.left.resize(input.left.size() + static_cast<size_t>(latency), 0.0f);
    out.right.resize(out.left.size(), 0.0f);
    const double samplesPerBeat = 60.0 / kTempo * kRate;
    for (size_t at = 0; at < out.left.size(); at += kBlock) {
        const int32 n = static_cast<int32>(std::min<size_t>(kBlock, out.left.size() - at));
        ProcessContext context{
            .state = ProcessContext::kPlaying | ProcessContext::kTempoValid | ProcessContext::kProjectTimeMusicValid,
            .sampleRate = kRate, .projectTimeSamples = static_cast<TSamples>(at),
            .projectTimeMusic = static_cast<double>(at) / samplesPerBeat, .tempo = kTempo};
        instance.run(out.left.data() + at, out.right.data() + at, n, nullptr, &context);
    }
    out.left.erase(out.left.begin(), out.left.begin() + latency);
    out.right.erase(out.right.begin(), out.right.begin() + latency);
    return out;
}
}  // namespace

TEST(RendererMatchesVst3, TheSamePresetGivesTheSameSound) {
    const std::string folder = "/tmp/zonfra-render-match-" + std::to_string(getpid());
    ASSERT_EQ(std::system(("mkdir -p " + folder).c_str()), 0);
    const StereoAudio input = testInput(kRate / 2);
    ASSERT_EQ(writeAudio(folder + "/in.wav", input), "");
    // The init sound, a synced LFO, a vibrato, and every stage moving at once.
    for (const char* preset :
         {"Init Preset", "LFO/Sixteenth Chop", "New 1.2 Presets/FM Shimmer", "New 1.2 Presets/Everything Moves"}) {
        const std::string command = std::string(ZONFRA_RENDER_PATH) + " " + folder + "/in.wav " + folder +
                                    "/out.wav --tail 0 --block 512 --tempo 120 --preset '" + preset + "' 2>&1";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        StereoAudio rendered;
        ASSERT_EQ(readAudio(folder + "/out.wav", rendered), "");
        const StereoAudio played = throughVst3(preset, input);
        ASSERT_EQ(rendered.left.size(), played.left.size()) << preset;
        EXPECT_EQ(rendered.left, played.left) << preset;
        EXPECT_EQ(rendered.right, played.right) << preset;
    }
    std::system(("rm -rf " + folder).c_str());
}
