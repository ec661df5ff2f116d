#include <gtest/gtest.h>

#include "EffectHarness.h"
#include "core_files/TempHome.h"
#include "framework/state/COndraChunk.h"
#include "support/ChunkLayoutReader.h"

namespace {
using Bytes = std::vector<uint8_t>;

Bytes chunkOf(CZonfra& effect) {
    void* data = nullptr;
    const int size = effect.getChunk(&data);
    return Bytes(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
}

bool load(CZonfra& effect, Bytes block) {  // by value: reading changes the block
    return effect.setChunk(block.data(), static_cast<int>(block.size()));
}

// Builds a chunk by hand from records, as another version of the product might write it.
Bytes handmadeChunk(const std::vector<std::pair<std::string, Bytes>>& records) {
    Ondra::COndraChunk chunk;
    chunk.setTag("MMK-zonfra-Preset");
    for (const auto& r : records) chunk.addChunk(r.first.c_str(), r.second.data(), static_cast<int>(r.second.size()));
    void* data = nullptr;
    const int size = chunk.finish(&data);
    return Bytes(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
}

Bytes text(const char* s) { return Bytes(s, s + std::strlen(s) + 1); }

Bytes parameterTable(const std::vector<std::pair<std::string, float>>& values) {
    Bytes table(48 + 64 * values.size(), 0);
    std::memcpy(table.data(), "MMK zonfra", 10);
    const auto rows = static_cast<int32_t>(values.size());
    const int32_t header[7] = {48, 0x1000, 0, 64 * rows, 64 * rows, 64, rows};
    std::memcpy(&table[20], header, sizeof header);
    for (size_t i = 0; i < values.size(); ++i) {
        std::memcpy(&table[48 + 64 * i], values[i].first.c_str(), values[i].first.size());
        std::memcpy(&table[48 + 64 * i + 52], &values[i].second, 4);
    }
    return table;
}

std::vector<ChunkLayout::Record> recordsOf(const Bytes& block) {
    ChunkLayout::Outer outer;
    EXPECT_TRUE(ChunkLayout::readOuter(block.data(), block.size(), outer));
    EXPECT_EQ(outer.tag, "MMK-zonfra-Preset");
    EXPECT_EQ(outer.headerSize, 44);
    EXPECT_EQ(outer.version, 0x1000);
    EXPECT_EQ(outer.compressed, 1);
    return ChunkLayout::readRecords(outer.plain);
}
}  // namespace

class EffectState : public ::testing::Test {
protected:
    EffectHarness harness;
};

TEST_F(EffectState, ChunkLayoutAsWritten) {
    harness.set(kLowPassFreq, 1234.5f);
    const auto records = recordsOf(chunkOf(*harness.effect));
    const char* names[] = {"Parameters", "GLOBAL.LIMITER.ON", "isNewFilterPreset", "PresetName"};
    const char* texts[] = {nullptr, "TRUE", "TRUE", "Init Preset"};
    ASSERT_EQ(records.size(), 4u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(records[i].name, names[i]);
        EXPECT_STREQ(texts[i] ? reinterpret_cast<const char*>(records[i].data.data()) : nullptr, texts[i]);
    }
    ChunkLayout::ParameterTable table;
    ASSERT_TRUE(ChunkLayout::readParameterTable(records[0].data, table));
    EXPECT_EQ(table.tag, "MMK zonfra");
    EXPECT_EQ(std::vector<int32_t>({table.headerSize, table.compressed, table.recordSize, table.count, table.plainSize}),
              std::vector<int32_t>({48, 0, 64, 49, 49 * 64}));
    EXPECT_EQ(table.rows[1].key, "LOWPASSFREQ");
    EXPECT_FLOAT_EQ(table.rows[1].value, 1234.5f);
    EXPECT_FLOAT_EQ(table.rows[1].minimum, 40);
    EXPECT_FLOAT_EQ(table.rows[1].maximum, 22050);
    EXPECT_EQ(table.rows[33].key, "RATE_FLIP");  // the non-automatable row is stored too
}

TEST_F(EffectState, RoundTripRestoresEveryValueAndTheName) {
    EffectHarness source, target;
    for (int id = 0; id < kZonfraParameterCount; ++id)
        if (id != kBypass) source.effect->getParameter(id)->setNormalized(0.137f + 0.013f * static_cast<float>(id));
    source.effect->setProgramName("Round Trip");
    load(*target.effect, chunkOf(*source.effect));
    for (int id = 0; id < kZonfraParameterCount; ++id)
        EXPECT_EQ(target.effect->getParameter(id)->getValue(), source.effect->getParameter(id)->getValue()) << id;
    EXPECT_EQ(target.presetName(), "Round Trip");
}

TEST_F(EffectState, MissingKeysTakeTheirDefaultUnknownKeysAreSkippedLinkAmountsGoWithTheirSwitch) {
    harness.set(kLpAttack, 300);  // default 50, initial 5
    harness.set(kLowPassQ, 0.5f);
    load(*harness.effect, handmadeChunk({{"Parameters", parameterTable({{"LOWPASSQ", 0.75f}, {"NOSUCHKEY", 3}})}}));
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kLowPassQ)->getValue(), 0.75f);
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kLpAttack)->getValue(), 50);
    EXPECT_EQ(harness.presetName(), "Init");

    load(*harness.effect, handmadeChunk({{"Parameters", parameterTable({{"RinkModLinkFreq", 0},
                                                                        {"RinkModLinkFreqPerc.", 0.5f},
                                                                        {"FreqModLinkFreq", 1},
                                                                        {"FreqModLinkFreqPerc.", 0.5f}})}}));
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kRingModLinkFreqPercent)->getValue(), 0);
    EXPECT_FLOAT_EQ(harness.effect->getParameter(kFreqModLinkFreqPercent)->getValue(), 0.5f);
}

TEST_F(EffectState, PresetNameRules) {
    harness.effect->setProgramName("");
    EXPECT_STREQ(reinterpret_cast<const char*>(recordsOf(chunkOf(*harness.effect)).back().data.data()), "NoName");
    load(*harness.effect, handmadeChunk({{"PresetName", text(std::string(41, 'x').c_str())}}));
    EXPECT_EQ(harness.presetName(), "Init");
    load(*harness.effect, handmadeChunk({{"PresetName", text("Second")}, {"PRESETNAME", text("First")}}));
    EXPECT_EQ(harness.presetName(), "First");
}

TEST_F(EffectState, GlobalLimiterRecordAndPresetsSavedWithoutIt) {
    auto limiterOn = [](EffectHarness& h) { return h.effect->signalChain().isGlobalLimiterOn(); };
    load(*harness.effect, handmadeChunk({{"GLOBAL.LIMITER.ON", text("FALSE")}}));
    EXPECT_FALSE(limiterOn(harness));
    load(*harness.effect, handmadeChunk({{"isNewFilterPreset", text("TRUE")}}));
    EXPECT_FALSE(limiterOn(harness));  // no record: the switch stays
    load(*harness.effect, handmadeChunk({{"GLOBAL.LIMITER.ON", text("TRUE")}}));
    EXPECT_TRUE(limiterOn(harness));

    // What the preset browser saves leaves a new instance's switch alone; a host's chunk carries it.
    harness.effect->getGlobalLimiterParameter().setValue(0);
    harness.effect->setWriteGlobalLimiter(0);
    const Bytes preset = chunkOf(*harness.effect);
    harness.effect->setWriteGlobalLimiter(1);
    const Bytes project = chunkOf(*harness.effect);
    EffectHarness fresh;
    load(*fresh.effect, preset);
    EXPECT_TRUE(limiterOn(fresh));
    load(*fresh.effect, project);
    EXPECT_FALSE(limiterOn(fresh));
}

// A block that is not ours or does not unpack to its stated size is refused whole: nothing the user
// had is lost.
TEST_F(EffectState, ADamagedBlockIsRefusedAndChangesNothing) {
    harness.set(kLowPassFreq, 500);
    harness.set(kRingModStrength, 0.3f);
    const Bytes good = chunkOf(*harness.effect);
    std::vector<Bytes> damaged;
    for (size_t i = 44; i < good.size(); ++i) {  // every byte of the body
        damaged.push_back(good);
        damaged.back()[i] ^= static_cast<uint8_t>(1u << (i % 8));
    }
    const size_t flips = damaged.size();
    damaged.emplace_back(good.begin(), good.end() - 1);
    damaged.push_back(good);
    damaged.back()[40] ^= 1;  // the stated plain size
    damaged.emplace_back(good.begin(), good.begin() + 43);  // cut in the header
    damaged.emplace_back(5, 0);
    damaged.push_back(good);
    std::memcpy(damaged.back().data(), "MMK-other-Preset\0\0\0", 20);  // another product's
    // A few flips only move where deflate copies a run of equal bytes from: those unpack to the very
    // same records and may load. Every other damage is refused.
    size_t refused = 0;
    for (size_t k = 0; k < damaged.size(); ++k) {
        const bool loaded = load(*harness.effect, damaged[k]);
        refused += loaded ? 0 : 1;
        EXPECT_FALSE(loaded && k >= flips) << k;
        ASSERT_EQ(chunkOf(*harness.effect), good) << k;
    }
    EXPECT_GT(refused, damaged.size() * 97 / 100);
    EXPECT_FALSE(harness.effect->setChunk(nullptr, 500));
    EXPECT_TRUE(load(*harness.effect, good));
}

TEST_F(EffectState, OneNotificationPerParameterAfterALoad) {
    struct Counter : Ondra::ParameterChangeListener {
        void parameterChanged(Ondra::IPluginParameter*) override { ++calls; }
        int calls = 0;
    } counter;
    for (int id = 0; id < kZonfraParameterCount; ++id) harness.effect->getParameter(id)->addListener(&counter, false);
    load(*harness.effect, chunkOf(*harness.effect));
    EXPECT_EQ(counter.calls, kZonfraParameterCount);
    EXPECT_FALSE(harness.effect->modulation().isStateLoading());
}

TEST(EffectHousekeeping, PresetFolderDefaultsToTheDataHomeAndIsRemembered) {
    TempHome home;
    {
        EffectHarness harness;
        EXPECT_EQ(harness.effect->getPresetFolder(), home.root.string() + "/data/Morvandel/zonfra QT/Presets/");
        harness.effect->setPresetFolder("D:\\Presets");
        EXPECT_EQ(harness.effect->getPresetFolder(), "D:/Presets/");
    }
    EffectHarness next;
    EXPECT_EQ(next.effect->getPresetFolder(), "D:\\Presets");  // the store holds the text as given
}
