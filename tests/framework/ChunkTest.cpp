#include <gtest/gtest.h>
#include <tuple>

#include "framework/state/COndraChunk.h"
#include "framework/state/CPropertyManager.h"
#include "framework/state/PayloadShuffle.h"
#include "support/ChunkLayoutReader.h"

using namespace Ondra;

namespace {
using Bytes = std::vector<uint8_t>;
Bytes bytesOf(void* data, int size) { return Bytes(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size); }
Bytes finished(COndraChunk& chunk) {
    void* data = nullptr;
    const int size = chunk.finish(&data);
    return bytesOf(data, size);
}
Bytes serialized(CPropertyManager& manager) {
    void* data = nullptr;
    const int size = manager.serialize(&data);
    return bytesOf(data, size);
}

// The table of a stand-alone, uncompressed manager holding these parameters.
Bytes tableOf(std::initializer_list<ParameterRecord> records) {
    CPropertyManager manager;
    manager.setTag("MMK zonfra");
    manager.setCompress(false);
    for (const ParameterRecord& record : records) manager.addParameter(record);
    return serialized(manager);
}

COndraChunk effectChunk() {
    COndraChunk chunk;
    chunk.setTag("MMK-zonfra-Preset");
    return chunk;
}
}  // namespace

// A damaged chunk may state any stored size; the shuffle pattern itself is pinned by the layout test.
TEST(PayloadShuffle, PayloadsShorterThanFourBytesStayAsTheyAre) {
    Bytes tiny = {9, 8, 7};
    shufflePayload(tiny.data(), tiny.size());
    unshufflePayload(tiny.data(), tiny.size());
    EXPECT_EQ(tiny, (Bytes{9, 8, 7}));
}

TEST(COndraChunk, LayoutOfAFinishedChunk) {
    COndraChunk chunk = effectChunk();
    chunk.setPresetName("Wah Wah");
    chunk.addChunk("First", "TRUE");
    const uint8_t raw[3] = {1, 2, 3};
    chunk.addChunk("Second", raw, 3);
    const Bytes block = finished(chunk);
    ChunkLayout::Outer outer;
    ASSERT_TRUE(ChunkLayout::readOuter(block.data(), block.size(), outer));
    EXPECT_EQ(outer.tag, "MMK-zonfra-Preset");
    EXPECT_EQ(std::vector<int32_t>({outer.reserved, outer.headerSize, outer.version, outer.compressed}),
              std::vector<int32_t>({0, 44, 0x1000, 1}));
    const auto records = ChunkLayout::readRecords(outer.plain);
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[0].name + "," + records[1].name + "," + records[2].name, "First,Second,PresetName");
    EXPECT_EQ(std::vector<int32_t>({records[0].headerSize, records[0].version, records[0].dataSize}),
              std::vector<int32_t>({40, 0x1000, 5}));
    EXPECT_EQ(records[1].offset, 45u);  // no padding between records
    EXPECT_EQ(records[1].data, (Bytes{1, 2, 3}));
    EXPECT_STREQ(reinterpret_cast<const char*>(records[2].data.data()), "Wah Wah");
}

TEST(COndraChunk, RecordsAreFoundByTheirWholeName) {
    COndraChunk writer = effectChunk();
    writer.addChunk("Limit", "1");
    writer.addChunk("LimiterOn", "22");
    Bytes block = finished(writer);
    COndraChunk reader = effectChunk();
    ASSERT_EQ(reader.read(block.data(), static_cast<int>(block.size())), 0);
    for (auto [name, size] : {std::pair{"Limit", 2}, {"LimiterOn", 3}, {"Lim", 0}, {"LimiterOnce", 0}})
        EXPECT_EQ(reader.find(name, nullptr), size) << name;
}

// Damage the effect reads is refused by the effect's tests; a newer version is the reader's alone.
TEST(COndraChunk, RefusesNewerVersionsAndNothingStagedGivesNothing) {
    COndraChunk writer = effectChunk();
    writer.addChunk("Data", "x");
    Bytes block = finished(writer);
    COndraChunk reader = effectChunk();
    block[28] = 0x01, block[29] = 0x10;  // version 0x1001
    EXPECT_EQ(reader.read(block.data(), static_cast<int>(block.size())), 2);
    EXPECT_EQ(reader.read(nullptr, 100), 2);
    COndraChunk empty = effectChunk();
    void* out = nullptr;
    EXPECT_EQ(empty.finish(&out), 0);
    EXPECT_EQ(out, nullptr);
}

TEST(COndraChunk, RandomCorruptionNeverCrashes) {
    COndraChunk writer = effectChunk();
    writer.setPresetName("Robust");
    writer.addChunk("Data", "0123456789abcdefghij");
    const Bytes block = finished(writer);
    uint32_t seed = 12345;
    for (int trial = 0; trial < 2000; ++trial) {
        Bytes copy = block;
        seed = seed * 1664525u + 1013904223u;
        copy[seed % copy.size()] = static_cast<uint8_t>(seed >> 24);
        seed = seed * 1664525u + 1013904223u;
        const int size = static_cast<int>(seed % (copy.size() + 1));
        COndraChunk reader = effectChunk();
        reader.read(copy.data(), size);
    }
}

namespace {
struct ManagerFixture : ::testing::Test {
    void SetUp() override {
        manager.setTag("MMK zonfra");
        manager.setCompress(false);
        a = manager.addParameter({"ALPHA", "Alpha", "Alpha", 0, 10, 1, 2, true, 0, 10, 0});
        b = manager.addParameter({"BETA", "Beta", "Beta", -1, 1, 0, 0, false, 0, 1, 1});
        c = manager.addParameter({"GAMMA7", "Gamma", "Gamma", 0, 100, 50, 50, true, 0, 10, 2});
    }
    void load(const Bytes& data, int instance = -1) { manager.load(data.data(), int(data.size()), instance); }
    CPropertyManager manager;
    ParameterProperty *a, *b, *c;
};
}  // namespace

TEST_F(ManagerFixture, KeysIdsAndAutomationIndices) {
    EXPECT_EQ(manager.addParameter({"ALPHA", "x", "x", 0, 1, 0, 0, true, 0, 1, 9}), a);
    EXPECT_EQ(std::vector<int>({manager.getCount(), a->getAutomationIndex(), b->getAutomationIndex(),
                                c->getAutomationIndex()}),
              std::vector<int>({3, 0, -1, 1}));
    EXPECT_EQ(manager.getParameterById(2), c);
    EXPECT_EQ(manager.findByKey("beta"), nullptr);
}

TEST_F(ManagerFixture, TableLayout) {
    a->setValue(3.5f);
    const Bytes data = serialized(manager);
    ChunkLayout::ParameterTable table;
    ASSERT_TRUE(ChunkLayout::readParameterTable(data, table));
    EXPECT_EQ(table.tag, "MMK zonfra");
    EXPECT_EQ(std::vector<int32_t>({table.headerSize, table.version, table.compressed, table.storedSize, table.plainSize,
                                    table.recordSize, table.count}),
              std::vector<int32_t>({48, 0x1000, 0, 3 * 64, 3 * 64, 64, 3}));
    EXPECT_EQ(data.size(), 48u + 3 * 64);
    ASSERT_EQ(table.rows.size(), 3u);
    EXPECT_EQ(std::tuple(table.rows[0].key, table.rows[0].value, table.rows[1].minimum, table.rows[2].maximum),
              std::tuple(std::string("ALPHA"), 3.5f, -1.0f, 100.0f));
    for (size_t i = 48 + 5; i < 48 + 52; ++i) EXPECT_EQ(data[i], 0) << "key is zero-filled";
}

TEST_F(ManagerFixture, LoadByKeySkipsUnknownLeavesMissingAndRenumbersTheInstance) {
    const Bytes table = tableOf(
        {{"ALPHA", "", "", 0, 10, 7, 0, true, 0, 10, 0}, {"UNKNOWN", "", "", 0, 10, 9, 0, true, 0, 10, 1}});
    Bytes embedded(13 + table.size(), 0xEE);  // a table may sit inside other data
    std::copy(table.begin(), table.end(), embedded.begin() + 13);
    c->setValue(42);
    load(embedded);
    EXPECT_EQ(std::pair(a->getValue(), c->getValue()), std::pair(7.0f, 42.0f));
    load(tableOf({{"GAMMA3", "", "", 0, 100, 77, 0, true, 0, 10, 0}}), 7);  // the trailing number becomes 7
    EXPECT_FLOAT_EQ(c->getValue(), 77);
}

TEST_F(ManagerFixture, CompressedRoundTripAndSizeCheck) {
    manager.setCompress(true);
    a->setValue(9);
    c->setValue(12);
    Bytes data = serialized(manager);
    for (ParameterProperty* p : {a, c}) p->setValue(0);
    load(data);
    EXPECT_EQ(std::pair(a->getValue(), c->getValue()), std::pair(9.0f, 12.0f));
    // A count that disagrees with the sizes applies nothing.
    data[44] = 4;
    a->setValue(0);
    load(data);
    EXPECT_FLOAT_EQ(a->getValue(), 0);
    // Nor does a body cut short whose shortfall the larger count makes up in the sum of the sizes:
    // its records would be read past the body.
    manager.setCompress(false);
    a->setValue(5);
    Bytes cut = serialized(manager);
    cut[44] = 4;
    cut.resize(48 + 2 * 64);
    a->setValue(0);
    load(cut);
    EXPECT_FLOAT_EQ(a->getValue(), 0);
}
