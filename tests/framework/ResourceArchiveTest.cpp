#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <cstring>
#include <filesystem>
#include <random>

#include "framework/resources/CResourceArchive.h"
#include "framework/resources/ResourceAccess.h"
#include "framework/resources/ResourceScrambling.h"
#include "framework/state/ByteOrder.h"
#include "framework/state/PayloadShuffle.h"
#include "support/Samples.h"

namespace fs = std::filesystem;
using namespace Ondra;
using Bytes = std::vector<uint8_t>;

namespace {
Bytes randomBytes(size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes b(n);
    for (auto& x : b) x = static_cast<uint8_t>(rng());
    return b;
}
Bytes resourceBytes(const char* name) {
    int size = -1;
    void* block = getResource(name, &size);
    if (!block) return {};
    Bytes b(static_cast<uint8_t*>(block), static_cast<uint8_t*>(block) + size);
    freeResource(block);
    return b;
}

class ResourceArchive : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("zonfra-archive-" + std::to_string(getpid()));
        fs::create_directories(dir / "presets");
        noise = randomBytes(1001, 1);  // odd length, does not shrink
        TestSupport::writeFile(dir / "presets" / "Init Preset.fxp", Bytes(4000, 'a'));  // shrinks
        TestSupport::writeFile(dir / "noise.png", noise);

        CResourceArchive builder;
        EXPECT_TRUE(builder.add((dir / "presets" / "Init Preset.fxp").string(), "presets/Init Preset.fxp"));
        EXPECT_TRUE(builder.add((dir / "noise.png").string()));
        EXPECT_FALSE(builder.add((dir / "missing").string()));
        ASSERT_TRUE(builder.save((dir / "archive.bin").string(), false));
        ASSERT_TRUE(builder.save((dir / "empty.bin").string(), false));
        image = TestSupport::fileBytes((dir / "archive.bin").string());
    }
    void TearDown() override {
        closeResources();
        fs::remove_all(dir);
    }

    fs::path dir;
    Bytes noise, image;
};
}  // namespace

TEST_F(ResourceArchive, LayoutOfTheHeaderAndTable) {
    ASSERT_GT(image.size(), 40u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(image.data())), "RESOURCE2");
    const uint32_t packedTable = getLE32(&image[32]);
    // Header size, version, stored size, plain table size, count.
    for (auto [at, value] : {std::pair{12, 20u}, {16, 0x2000u}, {24, packedTable + 20}, {28, 2u * 268}, {36, 2u}})
        EXPECT_EQ(getLE32(&image[at]), value) << at;

    Bytes table(2 * 268);
    uLongf length = table.size();
    ASSERT_EQ(uncompress(table.data(), &length, &image[40], packedTable), Z_OK);
    EXPECT_STREQ(reinterpret_cast<char*>(&table[0]), "presets/Init Preset.fxp");
    EXPECT_STREQ(reinterpret_cast<char*>(&table[268]), "noise.png");
    EXPECT_EQ(getLE32s(&table[268 + 256]), 1001);
    EXPECT_EQ(getLE32s(&table[268 + 260]), -1) << "a file that does not shrink is stored scrambled";
    EXPECT_EQ(getLE32s(&table[268 + 264]), getLE32s(&table[260])) << "offsets run on";
    EXPECT_EQ(getLE32s(&TestSupport::fileBytes((dir / "empty.bin").string())[36]), 0) << "save empties the builder";
}

// The names and bytes of what an archive holds are read back by the artwork, factory-preset and font tests.
TEST_F(ResourceArchive, OnlyExactNamesAndNothingWhileClosed) {
    EXPECT_EQ(getResourceCount(), -1);
    ASSERT_TRUE(openResources(image.data(), image.size()));
    EXPECT_TRUE(getResourceName(2) == nullptr && getResourceName(-1) == nullptr);
    for (const char* name : {"presets/init preset.fxp", static_cast<const char*>(nullptr)}) {
        int size = 7;
        EXPECT_EQ(getResource(name, &size), nullptr);
        EXPECT_EQ(size, 0);
    }
    freeResource(reinterpret_cast<void*>(0x1234));  // not ours: ignored

    // The scrambled file does not lie in the image as it is.
    EXPECT_EQ(std::search(image.begin(), image.end(), noise.begin(), noise.begin() + 16), image.end());
    closeResources();
    EXPECT_EQ(getResourceCount(), -1);
}

TEST_F(ResourceArchive, BlocksNotGivenBackAreFreedOnClose) {
    CResourceArchive archive;
    ASSERT_TRUE(archive.open(image.data(), image.size()));
    int size = 0;
    void* kept = archive.getResource("noise.png", &size);
    void* returned = archive.getResource("noise.png", &size);
    ASSERT_NE(kept, returned);
    archive.freeResource(returned);
    archive.freeResource(returned);  // twice: the second is ignored
    EXPECT_EQ(archive.getLiveBlockCount(), 1u);
    archive.close();  // the leak checker of the sanitizer build watches `kept`
    EXPECT_EQ(archive.getLiveBlockCount(), 0u);

    ASSERT_TRUE(openResources(image.data(), image.size()));
    EXPECT_NE(getResource("noise.png", &size), nullptr);
    closeResources();
}

TEST_F(ResourceArchive, ImagesOfNeitherFormAreRefusedAndDamagedOnesNeverCrash) {
    const Bytes junk = randomBytes(64, 2);
    EXPECT_FALSE(openResources(junk.data(), junk.size()));
    EXPECT_EQ(getResourceCount(), 0) << "only an empty archive of the older form is open";
    EXPECT_TRUE(resourceBytes("noise.png").empty());
    EXPECT_FALSE(openResources(nullptr, 0));
    EXPECT_FALSE(openResources(image.data(), 8)) << "the tag alone";
    Bytes plainTable = image;
    putLE32(&plainTable[32], static_cast<uint32_t>(-1));
    ASSERT_TRUE(openResources(plainTable.data(), plainTable.size()));
    EXPECT_EQ(getResourceCount(), 0) << "a table stored plain counts as empty";
    auto readAll = [] {
        for (int i = 0; i < getResourceCount(); ++i) resourceBytes(getResourceName(i));
        resourceBytes("noise.png");
        closeResources();
    };
    for (size_t cut = 0; cut < image.size(); cut += (cut < 64 ? 1 : 37)) {
        const Bytes part(image.begin(), image.begin() + static_cast<long>(cut));  // the sanitizer sees reads past it
        openResources(part.data(), part.size());
        readAll();
    }
    std::mt19937 rng(3);
    for (int round = 0; round < 300; ++round) {
        Bytes damaged = image;
        for (int flips = 0; flips < 3; ++flips) damaged[rng() % 64] ^= static_cast<uint8_t>(1u << (rng() % 8));
        openResources(damaged.data(), damaged.size());
        readAll();
    }
}

namespace {
// An image of the older form: records chained, packed, shuffled, then scrambled.
Bytes legacyImage(const std::vector<std::pair<std::string, Bytes>>& files, int32_t lastVersion = 0x1000) {
    Bytes chain;
    for (size_t i = 0; i < files.size(); ++i) {
        Bytes record(280, 0);
        std::memcpy(record.data(), "Rcnk", 4);
        std::strncpy(reinterpret_cast<char*>(&record[5]), files[i].first.c_str(), 254);
        putLE32(&record[264], 280);
        putLE32(&record[268], static_cast<uint32_t>(i + 1 == files.size() ? lastVersion : 0x1000));
        putLE32(&record[272], static_cast<uint32_t>(files[i].second.size()));
        record.insert(record.end(), files[i].second.begin(), files[i].second.end());
        chain.insert(chain.end(), record.begin(), record.end());
    }
    Bytes packed(compressBound(chain.size()));
    uLongf length = packed.size();
    compress2(packed.data(), &length, chain.data(), chain.size(), 9);
    packed.resize(length);
    shufflePayload(packed.data(), packed.size());
    scrambleResource(packed.data(), packed.size());
    Bytes image(40, 0);
    std::memcpy(image.data(), "resource", 8);
    // Header size, version, packed, stored size, plain size.
    for (auto [at, value] : {std::pair{12, 40u}, {16, 0x1000u}, {20, 1u}, {24, uint32_t(packed.size())},
                             {28, uint32_t(chain.size())}})
        putLE32(&image[at], value);
    image.insert(image.end(), packed.begin(), packed.end());
    return image;
}
}  // namespace

TEST_F(ResourceArchive, OlderFormIsReadFromACopy) {
    Bytes image_ = legacyImage({{"arial.ttf", randomBytes(301, 4)}, {"logo.png", {1, 2, 3}}});
    ASSERT_TRUE(openResources(image_.data(), image_.size()));
    std::fill(image_.begin(), image_.end(), 0);  // the archive does not need the caller's bytes
    EXPECT_EQ(getResourceCount(), 2);
    EXPECT_STREQ(getResourceName(1), "logo.png");
    EXPECT_EQ(resourceBytes("logo.png"), (Bytes{1, 2, 3}));  // freeing a pointer into the archive does nothing
    EXPECT_EQ(resourceBytes("arial.ttf"), randomBytes(301, 4));

    const Bytes newer = legacyImage({{"a", {1}}, {"b", {2}}}, 0x1001);
    ASSERT_TRUE(openResources(newer.data(), newer.size()));
    EXPECT_EQ(getResourceCount(), 1) << "walking stops at a record of a higher version";

    Bytes cut = legacyImage({{"a", {1}}});
    cut.resize(cut.size() - 1);
    EXPECT_FALSE(openResources(cut.data(), cut.size()));
    EXPECT_EQ(getResourceCount(), 0);
}
