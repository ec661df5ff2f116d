#include <gtest/gtest.h>

#include <unistd.h>
#include <zlib.h>

#include <cstdlib>

#include <cstring>
#include <string>
#include <vector>

#include "EffectHarness.h"
#include "framework/state/COndraChunk.h"
#include "framework/state/PayloadShuffle.h"
#include "support/ChunkLayoutReader.h"

namespace {
std::vector<uint8_t> chunkOf(CZonfra& effect) {
    void* data = nullptr;
    const int size = effect.getChunk(&data);
    return std::vector<uint8_t>(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
}

bool load(CZonfra& effect, std::vector<uint8_t> block) {  // by value: reading changes the block
    return effect.setChunk(block.data(), static_cast<int>(block.size()));
}

// Builds a chunk by hand from records, as another version of the product might write it.
std::vector<uint8_t> handmadeChunk(const std::vector<std::pair<std::string, std::vector<uint8_t>>>& records) {
    Ondra::COndraChunk chunk;
    chunk.setTag("MMK-zonfra-Preset");
    for (const auto& r : records) chunk.addChunk(r.first.c_str(), r.second.data(), static_cast<int>(r.second.size()));
    void* data = nullptr;
    const int size = chunk.finish(&data);
    return std::vector<uint8_t>(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
}

std::vector<uint8_t> text(const char* s) { return std::vector<uint8_t>(s, s + std::strlen(s) + 1); }

std::vector<uint8_t> parameterTable(const std::vector<std::pair<std::string, float>>& values) {
    std::vector<uint8_t> table(48 + 64 * values.size(), 0);
    std::memcpy(table.data(), "MMK zonfra", 10);
    auto put = [&](size_t at, int32_t v) { std::memcpy(&table[at], &v, 4); };
    put(20, 48);
    put(24, 0x1000);
    put(28, 0);
    put(32, static_cast<int32_t>(64 * values.size()));
    put(36, static_cast<int32_t>(64 * values.size()));
    put(40, 64);
    put(44, static_cast<int32_t>(values.size()));
    for (size_t i = 0; i < values.size(); ++i) {
        std::memcpy(&table[48 + 64 * i], values[i].first.c_str(), values[i].first.size());
        std::memcpy(&table[48 + 64 * i + 52], &values[i].second, 4);
    }
    return table;
}
}  // namespace

TEST(EffectState, ChunkLayoutAsWritten) {
    EffectHarness harness;
    harness.set(kLowPassFreq, 1234.5f);
    const std::vector<uint8_t> block = chunkOf(*harness.effect);

    ChunkLayout::Outer outer;
    ASSERT_TRUE(ChunkLayout::readOuter(block.data(), block.size(), outer));
    EXPECT_EQ(outer.tag, "MMK-zonfra-Preset");
    EXPECT_EQ(outer.headerSize, 44);
    EXPECT_EQ(outer.version, 0x1000);
    EXPECT_EQ(outer.compressed, 1);
    const auto records = ChunkLayout::readRecords(outer.plain);
    ASSERT_EQ(records.size(), 4u);
    EXPECT_EQ(records[0].name, "Parameters");
    EXPECT_EQ(records[1].name, "GLOBAL.LIMITER.ON");
    EXPECT_STREQ(reinterpret_cast<const char*>(records[1].data.data()), "TRUE");
    EXPECT_EQ(records[2].name, "isNewFilterPreset");
    EXPECT_STREQ(reinterpret_cast<const char*>(records[2].data.data()), "TRUE");
    EXPECT_EQ(records[3].name, "PresetName");
    EXPECT_STREQ(reinterpret_cast<const char*>(records[3].data.data()), "Init Preset");

    ChunkLayout::ParameterTable table;
    ASSERT_TRUE(ChunkLayout::readParameterTable(records[0].data, table));
    EXPECT_EQ(table.tag, "MMK zonfra");
    EXPECT_EQ(table.headerSize, 48);
    EXPECT_EQ(table.compressed, 0);
    EXPECT_EQ(table.recordSize, 64);
    EXPECT_EQ(table.count, 49);
    EXPECT_EQ(table.plainSize, 49 * 64);
    EXPECT_EQ(table.rows[1].key, "LOWPASSFREQ");
    EXPECT_FLOAT_EQ(table.rows[1].value, 1234.5f);
    EXPECT_FLOAT_EQ(table.rows[1].minimum, 40);
    EXPECT_FLOAT_EQ(table.rows[1].maximum, 22050);
    EXPECT_EQ(table.rows[33].key, "RATE_FLIP");  // the non-automatable row is stored too
}

TEST(EffectState, RoundTripRestoresEveryValueAndTheName) {
    EffectHarness source;
    for (int id = 0; id < kZonfraParameterCount; ++id) {
        Ondra::IPluginParameter* p = source.effect->getParameter(id);
        if (id == kBypass) continue;
        p->setNormalized(0.137f + 0.013f * static_cast<float>(id % 50));
    }
    source.effect->setProgramName("Round Trip");
    const std::vector<uint8_t> block = chunkOf(*source.effect);
    EffectHarness target;
    load(*target.effect, block);
    for (int id = 0; id < kZonfraParameterCount; ++id)
        EXPECT_EQ(target.effect->getParameter(id)->getValue(), source.effect->getParameter(id)->getValue()) << id;
    EXPECT_STREQ(target.effect->getPresetName(), "Round Trip");
}

TEST(EffectState, BadBlocksChangeNothing) {
    EffectHarness harness;
    harness.set(kLowPassFreq, 500);
    std::vector<uint8_t> block = chunkOf(*harness.effect);
    EffectHarness target;
    target.set(kLowPassFreq, 777);
    load(*target.effect, std::vector<uint8_t>(block.begin(), block.begin() + 43));
    EXPECT_FLOAT_EQ(target.effect->getParameter(kLowPassFreq)->getValue(), 777);
    std::vector<uint8_t> foreign = block;
    std::memcpy(foreign.data(), "MMK-other-Preset\0\0\0", 20);
    load(*target.effect, foreign);
    EXPECT_FLOAT_EQ(target.effect->getParameter(kLowPassFreq)->getValue(), 777);
    load(*target.effect, std::vector<uint8_t>(5, 0));
    target.effect->setChunk(nullptr, 500);
    EXPECT_FLOAT_EQ(target.effect->getParameter(kLowPassFreq)->getValue(), 777);
}

TEST(EffectState, MissingKeysTakeTheirDefaultUnknownKeysAreSkipped) {
    EffectHarness harness;
    harness.set(kLpAttack, 300);  // default 50, initial 5
    harness.set(kLowPassQ, 0.5f);
    load(*harness.effect, handmadeChunk({{"Parameters", parameterTable({{"LOWPASSQ", 0.75f}, {"NOSUCHKEY", 3}})}}));
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kLowPassQ)->getValue(), 0.75f);
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kLpAttack)->getValue(), 50);
    EXPECT_STREQ(harness.effect->getPresetName(), "Init");
}

TEST(EffectState, PresetNameRules) {
    EffectHarness harness;
    harness.effect->setProgramName("");
    const std::vector<uint8_t> block = chunkOf(*harness.effect);
    ChunkLayout::Outer outer;
    ASSERT_TRUE(ChunkLayout::readOuter(block.data(), block.size(), outer));
    const auto records = ChunkLayout::readRecords(outer.plain);
    EXPECT_STREQ(reinterpret_cast<const char*>(records.back().data.data()), "NoName");

    const std::string name41(41, 'x');
    load(*harness.effect, handmadeChunk({{"PresetName", text(name41.c_str())}}));
    EXPECT_STREQ(harness.effect->getPresetName(), "Init");
    load(*harness.effect, handmadeChunk({{"PresetName", text("Second")}, {"PRESETNAME", text("First")}}));
    EXPECT_STREQ(harness.effect->getPresetName(), "First");
}

TEST(EffectState, GlobalLimiterRecord) {
    EffectHarness harness;
    load(*harness.effect, handmadeChunk({{"GLOBAL.LIMITER.ON", text("FALSE")}}));
    EXPECT_FALSE(harness.effect->isGlobalLimiterOn());
    load(*harness.effect, handmadeChunk({{"isNewFilterPreset", text("TRUE")}}));
    EXPECT_FALSE(harness.effect->isGlobalLimiterOn());  // no record: the switch stays
    load(*harness.effect, handmadeChunk({{"GLOBAL.LIMITER.ON", text("TRUE")}}));
    EXPECT_TRUE(harness.effect->isGlobalLimiterOn());

    // A preset saved without the record leaves a new instance's switch alone.
    harness.effect->getGlobalLimiterParameter().setValue(0);
    harness.effect->setWriteGlobalLimiter(0);
    const std::vector<uint8_t> preset = chunkOf(*harness.effect);
    harness.effect->setWriteGlobalLimiter(1);
    const std::vector<uint8_t> project = chunkOf(*harness.effect);
    EffectHarness fresh;
    load(*fresh.effect, preset);
    EXPECT_TRUE(fresh.effect->isGlobalLimiterOn());
    load(*fresh.effect, project);
    EXPECT_FALSE(fresh.effect->isGlobalLimiterOn());
}

TEST(EffectState, LinkAmountsGoWhenTheirSwitchIsOff) {
    EffectHarness harness;
    load(*harness.effect, handmadeChunk({{"Parameters", parameterTable({{"RinkModLinkFreq", 0},
                                                                        {"RinkModLinkFreqPerc.", 0.5f},
                                                                        {"FreqModLinkFreq", 1},
                                                                        {"FreqModLinkFreqPerc.", 0.5f}})}}));
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kRingModLinkFreqPercent)->getValue(), 0);
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kFreqModLinkFreqPercent)->getValue(), 0.5f);
}

// A block that does not unpack to its stated size is refused whole: nothing the user had is lost.
TEST(EffectState, ADamagedBlockIsRefusedAndChangesNothing) {
    EffectHarness harness;
    harness.set(kLowPassFreq, 500);
    harness.set(kRingModStrength, 0.3f);
    const std::vector<uint8_t> good = chunkOf(*harness.effect);
    constexpr size_t kBodyStart = 44, kPlainSizeField = 40;
    std::vector<std::vector<uint8_t>> damaged;
    for (size_t i = kBodyStart; i < good.size(); ++i) {
        damaged.push_back(good);
        damaged.back()[i] ^= static_cast<uint8_t>(1u << (i % 8));
    }
    damaged.push_back(good);
    damaged.back()[kPlainSizeField] ^= 1;
    damaged.emplace_back(good.begin(), good.end() - 1);
    // A few flips only move where deflate copies a run of equal bytes from: those unpack to the very
    // same records and may load. Every other damage is refused.
    size_t refused = 0;
    for (size_t k = 0; k < damaged.size(); ++k) {
        refused += load(*harness.effect, damaged[k]) ? 0 : 1;
        ASSERT_EQ(chunkOf(*harness.effect), good) << k;
    }
    EXPECT_GT(refused, damaged.size() * 97 / 100);
    EXPECT_FALSE(load(*harness.effect, damaged[damaged.size() - 1]));  // cut
    EXPECT_FALSE(load(*harness.effect, damaged[damaged.size() - 2]));  // wrong size
    EXPECT_TRUE(load(*harness.effect, good));
    EXPECT_EQ(chunkOf(*harness.effect), good);
}

TEST(EffectState, OneNotificationPerParameterAfterALoad) {
    EffectHarness harness;
    struct Counter : Ondra::ParameterChangeListener {
        void parameterChanged(Ondra::IPluginParameter*) override { ++calls; }
        int calls = 0;
    } counter;
    for (int id = 0; id < kZonfraParameterCount; ++id) harness.effect->getParameter(id)->addListener(&counter, false);
    load(*harness.effect, chunkOf(*harness.effect));
    EXPECT_EQ(counter.calls, kZonfraParameterCount);
    EXPECT_FALSE(harness.effect->isStateLoading());
}

TEST(EffectHousekeeping, PresetFolderDefaultsToTheDataHomeAndIsRemembered) {
    const std::string root = "/tmp/zonfra-housekeeping-" + std::to_string(getpid());
    setenv("HOME", root.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (root + "/machine").c_str(), 1);
    setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
    {
        EffectHarness harness;
        const std::string expected = root + "/data/Morvandel/zonfra QT/Presets/";
        EXPECT_EQ(harness.effect->getPresetFolder(), expected);
        EXPECT_EQ(harness.effect->getPresetFolder(), expected);
        harness.effect->setPresetFolder("D:\\Presets");
        EXPECT_EQ(harness.effect->getPresetFolder(), "D:/Presets/");
    }
    EffectHarness next;
    EXPECT_EQ(next.effect->getPresetFolder(), "D:\\Presets");  // the store holds the text as given
    std::system(("rm -rf '" + root + "'").c_str());
}
