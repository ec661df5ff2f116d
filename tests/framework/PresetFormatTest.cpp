#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CFileFormat.h"
#include "framework/presets/CFileFormatCppHeader.h"
#include "framework/presets/CPresetFormatFXB.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "framework/presets/CZonfraPresetFormat.h"
#include "support/Samples.h"

namespace fs = std::filesystem;
using namespace Ondra;

namespace {
const uint32_t kVzon = static_cast<uint32_t>(fourCharacterId("Vzon"));

std::vector<uint8_t> fileBytes(const fs::path& path) { return TestSupport::fileBytes(path.string()); }
uint32_t be32(const std::vector<uint8_t>& b, size_t at) {
    return uint32_t(b[at]) << 24 | uint32_t(b[at + 1]) << 16 | uint32_t(b[at + 2]) << 8 | b[at + 3];
}
std::string text4(const std::vector<uint8_t>& b, size_t at) { return std::string(b.begin() + at, b.begin() + at + 4); }

class PresetFormats : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("zonfra-presets-" + std::to_string(getpid()));
        fs::create_directories(dir);
        presetFormatFXP().fxID = kVzon;
        presetFormatFXB().fxID = kVzon;
    }
    void TearDown() override { fs::remove_all(dir); }

    // Reads through `format`; empty and false when no data came.
    bool readBack(CFileFormat& format, const fs::path& path, std::vector<uint8_t>& out) {
        void* data = nullptr;
        int size = 0;
        format.read(path.string(), &data, &size);
        if (!data) return false;
        out.assign(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
        format.freeData(data);
        return true;
    }

    // Writes `block` through `format`: the file's bytes.
    std::vector<uint8_t> written(CFileFormat& format, const fs::path& path) {
        format.write(path.string(), block.data(), int(block.size()));
        return fileBytes(path);
    }

    const std::vector<uint8_t> block = {'M', 'M', 'K', 0, 1, 2, 3, 0xff, 9};
    fs::path dir;
};
}  // namespace

TEST_F(PresetFormats, FxpHeaderIsBigEndianAndRoundTrips) {
    const fs::path path = dir / "Warm Sweep.fxp";
    const auto bytes = written(presetFormatFXP(), path);
    ASSERT_EQ(bytes.size(), 60 + block.size());
    EXPECT_EQ(text4(bytes, 0) + text4(bytes, 8) + text4(bytes, 16), "CcnKFPChVzon");
    // Size, format version, plug-in version, programs (stays 0), chunk size.
    for (auto [at, value] : {std::pair{4, block.size() + 52}, {12, 1}, {20, 1}, {24, 0}, {56, block.size()}})
        EXPECT_EQ(be32(bytes, static_cast<size_t>(at)), value) << at;
    EXPECT_STREQ(reinterpret_cast<const char*>(&bytes[28]), "Warm Sweep");

    std::vector<uint8_t> back;
    ASSERT_TRUE(readBack(presetFormatFXP(), path, back));
    EXPECT_EQ(back, block);
}

TEST_F(PresetFormats, FxbHeaderAndRoundTrip) {
    const fs::path path = dir / "bank.fxb";
    const auto bytes = written(presetFormatFXB(), path);
    ASSERT_EQ(bytes.size(), 160 + block.size());
    EXPECT_EQ(be32(bytes, 4), block.size() + 152);
    EXPECT_EQ(text4(bytes, 8) + text4(bytes, 16), "FBChVzon");
    for (size_t i = 28; i < 156; ++i) ASSERT_EQ(bytes[i], 0) << i;
    EXPECT_EQ(be32(bytes, 156), block.size());
    std::vector<uint8_t> back;
    ASSERT_TRUE(readBack(presetFormatFXB(), path, back));
    EXPECT_EQ(back, block);
    EXPECT_FALSE(readBack(presetFormatFXP(), path, back)) << "a bank is not a program";
}

TEST_F(PresetFormats, ProgramNameIsTheFileTitleCutTo27) {
    const fs::path longPath = dir / "A name of more than twenty-seven characters.fxp";
    auto bytes = written(presetFormatFXP(), longPath);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes[28])), "A name of more than twenty-");
    EXPECT_EQ(bytes[55], 0);

    const fs::path dotted = dir / "x\\y.z.fxp";  // a Windows-style separator inside the name
    bytes = written(presetFormatFXP(), dotted);
    EXPECT_STREQ(reinterpret_cast<const char*>(&bytes[28]), "y.z");
}

TEST_F(PresetFormats, ForeignOrOtherKindsGiveNoData) {
    const fs::path path = dir / "p.fxp";
    auto bytes = written(presetFormatFXP(), path);
    std::vector<uint8_t> back;

    presetFormatFXP().fxID = fourCharacterId("Othr");
    EXPECT_FALSE(readBack(presetFormatFXP(), path, back)) << "another plug-in's id";
    presetFormatFXP().fxID = kVzon;

    std::memcpy(&bytes[8], "FxCk", 4);
    TestSupport::writeFile(dir / "params.fxp", bytes);
    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "params.fxp", back)) << "the parameter kind is not read";

    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "missing.fxp", back));
    presetFormatFXP().freeData(nullptr);
}

TEST_F(PresetFormats, EmptyBlockAndDamagedFiles) {
    const fs::path path = dir / "empty.fxp";
    presetFormatFXP().write(path.string(), nullptr, 0);
    auto bytes = fileBytes(path);
    ASSERT_EQ(bytes.size(), 60u);
    EXPECT_EQ(be32(bytes, 4), 52u);
    EXPECT_EQ(be32(bytes, 56), 0u);
    std::vector<uint8_t> back = {1};
    ASSERT_TRUE(readBack(presetFormatFXP(), path, back));
    EXPECT_TRUE(back.empty());

    // A header cut short or claiming more than the file holds gives nothing and does not crash.
    bytes = written(presetFormatFXP(), path);
    TestSupport::writeFile(dir / "short.fxp", bytes, 40);
    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "short.fxp", back));
    bytes[56] = 0x7f;
    TestSupport::writeFile(dir / "huge.fxp", bytes);
    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "huge.fxp", back));
}

TEST_F(PresetFormats, NativeFormatWritesItsOwnLayoutAndReadsFxp) {
    zonfraPresetFormat().write((dir / "native").string(), block.data(), int(block.size()));
    const auto bytes = fileBytes(dir / "native.zonfraPreset");
    ASSERT_EQ(bytes.size(), 16 + block.size());
    const std::vector<uint8_t> magic = {0x4F, 0x70, 0x66, 0x00, 0x00, 0x20, 0x0C, 0xE9};
    EXPECT_TRUE(std::equal(magic.begin(), magic.end(), bytes.begin()));
    EXPECT_EQ(be32(bytes, 8), 16u);
    EXPECT_EQ(be32(bytes, 12), block.size());

    std::vector<uint8_t> back;
    EXPECT_FALSE(readBack(zonfraPresetFormat(), dir / "native.zonfraPreset", back));
    presetFormatFXP().fxID = 0;  // the native reader insists on "Vzon" whatever the FXP format knows
    written(presetFormatFXP(), dir / "fx.fxp");
    EXPECT_FALSE(readBack(zonfraPresetFormat(), dir / "fx.fxp", back));
    presetFormatFXP().fxID = kVzon;
    written(presetFormatFXP(), dir / "fx.fxp");
    ASSERT_TRUE(readBack(zonfraPresetFormat(), dir / "fx.fxp", back));
    EXPECT_EQ(back, block);
}

TEST_F(PresetFormats, ExtensionsAndTheRawBase) {
    for (auto [format, extension] : {std::pair<CFileFormat*, const char*>{&presetFormatFXP(), ".fxp"},
                                     {&presetFormatFXB(), ".fxb"}, {&zonfraPresetFormat(), ".zonfraPreset"}})
        EXPECT_STREQ(format->getExtension(), extension);
    CFileFormat raw;
    written(raw, dir / "raw.bin");
    std::vector<uint8_t> back;
    ASSERT_TRUE(readBack(raw, dir / "raw.bin", back));
    EXPECT_EQ(back, block);
    CFileFormatCppHeader header;
    header.write((dir / "h.h").string(), block.data(), int(block.size()));
    EXPECT_FALSE(fs::exists(dir / "h.h"));
}
