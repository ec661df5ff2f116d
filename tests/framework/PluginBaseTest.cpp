#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "framework/parameters/ParameterProperty.h"
#include "framework/plugin/CNChannelBuffer.h"
#include "framework/plugin/ChunkedProcess.h"
#include "framework/plugin/IdleList.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"

using namespace Ondra;

namespace {

struct TypedCallback : OndraCallback {
    explicit TypedCallback(int pluginType) : type(pluginType) {}
    int getPluginType() override { return type; }
    void automate(int index, float value) override { automated.push_back({index, value}); }
    float getHostTempo() override { return 133.0f; }
    int type;
    std::vector<std::pair<int, float>> automated;
};

// A plug-in with two parameters that records every chunk it is asked to process.
struct RecordingPlugin : OndraOS {
    RecordingPlugin() : OndraOS(nullptr) {
        a.initFromRecord({"A", "A", "A", 0, 10, 0, 0, true, 0, 10, 0});
        b.initFromRecord({"B", "B", "B", 0, 10, 0, 0, true, 0, 10, 1});
    }
    int getParameterCount() override { return 2; }
    IPluginParameter* getParameter(int index) override { return index == 0 ? &a : index == 1 ? &b : nullptr; }
    int getControlChunkSize() override { return chunkSize; }
    void process(OndraAudioBlock& blockIn) override {
        chunks.push_back({blockIn.numSamples, blockIn.ppqPos, a.getValue(), b.getValue(), blockIn.samplesToNextBeat});
    }
    struct Chunk {
        int samples;
        double ppqPos;
        float a, b;
        int toNextBeat;
    };
    std::vector<int> sizes() const {
        std::vector<int> out;
        for (const Chunk& c : chunks) out.push_back(c.samples);
        return out;
    }
    ParameterProperty a, b;
    int chunkSize = 88;
    std::vector<Chunk> chunks;
};

struct HostBlock {
    explicit HostBlock(int samples) : inL(samples, 1), inR(samples, 1), outL(samples), outR(samples) {
        block.in[0].refer(inL.data(), inR.data(), samples);
        block.out[0].refer(outL.data(), outR.data(), samples);
    }
    std::vector<float> inL, inR, outL, outR;
    OndraAudioBlock block{.inputCount = 1, .outputCount = 1, .tempo = 120};
};

}  // namespace

TEST(OndraOS, HostTypeNamesTempoAndAutomationReports) {
    OndraOS alone(nullptr);
    EXPECT_STREQ(alone.getHostedPluginTypeName(), "NO_CALLBACK");
    EXPECT_FLOAT_EQ(alone.getHostTempo(), 10.0f);
    const char* expected[] = {"-", "VST2", "VST3", "RTAS", "AU", "AAX", "Ondra", ""};
    for (int type = 0; type <= 7; ++type) {
        TypedCallback callback(type);
        EXPECT_STREQ(OndraOS(&callback).getHostedPluginTypeName(), expected[type]);
    }
    TypedCallback callback(2);
    struct WithCallback : RecordingPlugin {
        explicit WithCallback(OndraCallback* cb) { callback = cb; }
    } plugin(&callback);
    EXPECT_FLOAT_EQ(plugin.getHostTempo(), 133.0f);
    // Only automatable parameters go to the host.
    plugin.b.setValue(5);
    plugin.automate(&plugin.b);
    plugin.a.setAutomatable(false);
    plugin.automate(&plugin.a);
    EXPECT_EQ(callback.automated, (std::vector<std::pair<int, float>>{{1, 0.5f}}));
}

TEST(OndraOS, BypassCallsSuspendOrResumeAfterStoring) {
    struct Tracking : OndraOS {
        Tracking() : OndraOS(nullptr) {}
        void suspend() override { log.push_back(std::string("suspend:") + (isBypassed() ? "1" : "0")); }
        void resume() override { log.push_back(std::string("resume:") + (isBypassed() ? "1" : "0")); }
        std::vector<std::string> log;
    } plugin;
    plugin.setBypass(true);
    plugin.setBypass(false);
    EXPECT_EQ(plugin.log, std::vector<std::string>({"suspend:1", "resume:0"}));
}

// The sample position and the audio pointers moving on are heard by the effect's and the adapters' tests.
TEST(ChunkedProcess, CutsAtTheControlChunkAndAdvancesTheBeats) {
    RecordingPlugin plugin;
    HostBlock host(100);
    host.block.ppqPos = 1.0;
    processInChunks(plugin, host.block, 100, ChunkingRules{});
    ASSERT_EQ(plugin.sizes(), (std::vector<int>{88, 12}));
    EXPECT_DOUBLE_EQ(plugin.chunks[1].ppqPos, 1.0 + 88.0 / (0.5 * 44100.0));
    EXPECT_EQ(plugin.chunks[1].toNextBeat, plugin.chunks[0].toNextBeat - 88);

    RecordingPlugin whole;
    whole.chunkSize = -1;  // without a control chunk the block stays whole
    HostBlock again(300);
    processInChunks(whole, again.block, 300, ChunkingRules{});
    EXPECT_EQ(whole.sizes(), (std::vector<int>{300}));
}

TEST(ChunkedProcess, ANominalRateCanStandInForThePositions) {
    RecordingPlugin plugin;
    plugin.setSampleRate(96000);
    HostBlock host(100);
    processInChunks(plugin, host.block, 100, ChunkingRules{.positionSampleRate = 44100});  // no context
    ASSERT_EQ(plugin.sizes(), (std::vector<int>{88, 12}));
    EXPECT_DOUBLE_EQ(plugin.chunks[1].ppqPos, 88.0 / (0.5 * 44100.0));
    EXPECT_EQ(plugin.chunks[0].toNextBeat, 22050);
    EXPECT_EQ(samplesToNextBeat(0.5, 120, 44100), 11025);
    EXPECT_EQ(samplesToNextBeat(0.0, 0, 44100), 264600);  // tempo below 10 counts as 10
}

TEST(AutomationQueue, QueuedPointsCutChunksAtTheirOffsets) {
    RecordingPlugin plugin;
    HostBlock host(176);
    plugin.queueAutomation(&plugin.a, 0.1f, 0);
    plugin.queueAutomation(&plugin.b, 0.2f, 30);
    processInChunks(plugin, host.block, 176, ChunkingRules{});
    ASSERT_EQ(plugin.sizes(), (std::vector<int>{30, 88, 58}));
    for (auto [i, b] : {std::pair{0, 0.0f}, {1, 2.0f}, {2, 2.0f}}) {
        EXPECT_FLOAT_EQ(plugin.chunks[i].a, 1.0f) << i;
        EXPECT_FLOAT_EQ(plugin.chunks[i].b, b) << i;
    }
    EXPECT_FALSE(plugin.hasQueuedAutomation());
}

TEST(AutomationQueue, OneEventPerParameterAndDelaysClippedToTheBlock) {
    RecordingPlugin plugin;
    HostBlock host(64);
    plugin.queueAutomation(&plugin.a, 0.1f, 5);
    plugin.queueAutomation(&plugin.a, 0.3f, 500);  // overwrites, and is clipped to the last sample
    processInChunks(plugin, host.block, 64, ChunkingRules{});
    ASSERT_EQ(plugin.sizes(), (std::vector<int>{63, 1}));
    EXPECT_FLOAT_EQ(plugin.chunks[1].a, 3.0f);
}

TEST(AutomationQueue, AFlagTellsListenersThatQueuedValuesAreGoingIn) {
    struct FlagReader : ParameterChangeListener {
        void parameterChanged(IPluginParameter*) override { seen.push_back(*flag); }
        bool* flag = nullptr;
        std::vector<bool> seen;
    };
    RecordingPlugin plugin;
    HostBlock host(176);
    bool slicing = false;
    FlagReader reader;
    reader.flag = &slicing;
    plugin.a.addListener(&reader, false);
    plugin.queueAutomation(&plugin.a, 0.1f, 30);
    processInChunks(plugin, host.block, 176, {.whileSlicing = &slicing});
    plugin.a.setValue(5.0f);
    EXPECT_EQ(reader.seen, (std::vector<bool>{true, false}));
    plugin.a.removeListener(&reader);
}

TEST(AutomationQueue, GridDelaysToTheNextGridLine) {
    RecordingPlugin plugin;
    plugin.setAutomationGrid(2);  // code 3: an eighth of a note at 120 BPM, 11025 samples
    OndraAudioBlock timeLine{.samplePos = 11025 - 40, .tempo = 120, .transportPlaying = true};
    EXPECT_TRUE(plugin.queueAutomation(&plugin.a, 0.5f, 0));
    plugin.beginAutomationBlock(timeLine, 128);
    int samples = 128;
    plugin.sliceAutomation(samples);
    EXPECT_EQ(samples, 40);
    timeLine.transportPlaying = false;
    plugin.queueAutomation(&plugin.b, 0.5f, 0);
    plugin.beginAutomationBlock(timeLine, 128);
    samples = 128;
    plugin.sliceAutomation(samples);
    EXPECT_FLOAT_EQ(plugin.b.getValue(), 5.0f);
    plugin.setAutomationGrid(-1);
    EXPECT_FALSE(plugin.queueAutomation(&plugin.a, 0.5f, 0));
    plugin.endAutomationBlock();
}

TEST(MidiDecoding, NotesBendsAndControllers) {
    auto midi = [](uint8_t status, uint8_t data1, uint8_t data2) { return OndraMidiEvent{7, status, data1, data2}; };
    std::vector<OndraMidiEvent> events = {midi(0x93, 60, 127), midi(0x90, 61, 0), midi(0xE0, 0x7F, 0x7F),
                                          midi(0xB1, 120, 64), midi(0xB1, 123, 0)};
    OndraOS plugin(nullptr);
    plugin.processMidiEvents(events);
    // "All notes off" runs first among the events of its delta.
    const int kinds[] = {kMidiAllNotesOff, kMidiNoteOn, kMidiNoteOff, events[3].kind, kMidiAllSoundOff};
    for (size_t i = 0; i < 5; ++i) EXPECT_EQ(events[i].kind, kinds[i]) << i;
    EXPECT_EQ(events[1].channel, 3);
    EXPECT_FLOAT_EQ(events[1].value1, 1.0f);
    EXPECT_EQ(events[2].status, 0x80);
    EXPECT_FLOAT_EQ(events[3].value2, 8191.0f / 8152.0f);
    EXPECT_FLOAT_EQ(events[4].value2, 64.0f / 127.0f);

    std::vector<OndraMidiEvent> bends = {midi(0xE0, 1, 64), midi(0xE0, 0, 0)};  // +1: dead zone; -8192
    decodeMidiEvents(bends);
    EXPECT_FLOAT_EQ(bends[0].value2, 0.0f);
    EXPECT_FLOAT_EQ(bends[1].value2, -1.0f);
}

TEST(PluginList, GrowsAndCopiesDeeply) {
    OndraPluginList list;
    OndraPluginInfo info{fourCharacterId("Vzon"), "N", "V", "M", 1, 1, 1, "1.3.0", kCategoryEffect, false, 0x10300, 1};
    for (int i = 0; i < 12; ++i) {
        info.uniqueId = i;
        list.add(info);
    }
    OndraPluginList copy;
    copy = list;
    EXPECT_EQ(copy.getCount(), 12);
    EXPECT_NE(copy.get(3), list.get(3));
    EXPECT_EQ(copy.get(3)->uniqueId, 3);
    EXPECT_EQ(list.find(7)->uniqueId, 7);
    EXPECT_EQ(list.find(99)->uniqueId, 0);
    EXPECT_EQ(list.get(12), nullptr);
}

TEST(CNChannelBuffer, ClearsReadsAndWritesWithinBounds) {
    CNChannelBuffer buffer;
    buffer.resize(16, 2);
    std::vector<float> a(16, 1.0f), b(16, 2.0f);
    const float* src[2] = {a.data(), b.data()};
    buffer.write(src, 2, 100);
    buffer.clear(4, 100);
    std::vector<float> outA(16, -1), outB(16, -1), outC(16, -1);
    float* dst[3] = {outA.data(), outB.data(), outC.data()};
    buffer.read(dst, 3, 16);
    // Cleared from sample 4 on; only as many channels read as the buffer has.
    EXPECT_EQ(std::vector<float>({outA[3], outA[4], outB[0], outC[0]}), std::vector<float>({1, 0, 2, -1}));
}

TEST(IdleList, RemovedClientsGetNoFurtherCall) {
    struct Client final : IdleClient {
        bool isOpen() override { return open; }
        void idle() override { ++calls; }
        bool open = true;
        int calls = 0;
    } first, second;
    IdleList& list = IdleList::instance();
    list.add(&first);
    list.add(&second);
    EXPECT_TRUE(list.timerRunning());
    list.tick();
    list.remove(&first);
    second.open = false;
    list.tick();
    EXPECT_EQ(std::pair(first.calls, second.calls), std::pair(1, 1));
    list.remove(&second);
    list.tick();
    EXPECT_EQ(list.size(), 0u);
}
