#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXB.h"
#include "framework/presets/CPresetFormatFXP.h"
#include "framework/presets/CZonfraPresetFormat.h"
#include "support/Samples.h"

namespace fs = std::filesystem;
using namespace Ondra;

namespace {
const uint32_t kVzon = static_cast<uint32_t>(fourCharacterId("Vzon"));

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

    // Reads through `format`; false when no data came.
    bool readBack(CFileFormat& format, const fs::path& path) {
        void* data = nullptr;
        int size = 0;
        format.read(path.string(), &data, &size);
        if (!data) return false;
        back.assign(static_cast<uint8_t*>(data), static_cast<uint8_t*>(data) + size);
        format.freeData(data);
        return true;
    }

    // Writes `block` through `format`: the file's bytes.
    std::vector<uint8_t> written(CFileFormat& format, const fs::path& path) {
        format.write(path.string(), block.data(), int(block.size()));
        return TestSupport::fileBytes(path.string());
    }

    const std::vector<uint8_t> block = {'M', 'M', 'K', 0, 1, 2, 3, 0xff, 9};
    std::vector<uint8_t> back;
    fs::path dir;
};
}  // namespace

TEST_F(PresetFormats, ProgramAndBankHeadersAreBigEndianAndRoundTrip) {
    const struct {
        CFileFormat& format;
        const char *file, *kind, *name;
        size_t header;
    } rows[] = {{presetFormatFXP(), "Warm Sweep.fxp", "FPCh", "Warm Sweep", 60},
                {presetFormatFXB(), "bank.fxb", "FBCh", "", 160}};
    for (const auto& r : rows) {
        const auto bytes = written(r.format, dir / r.file);
        ASSERT_EQ(bytes.size(), r.header + block.size()) << r.file;
        EXPECT_EQ(text4(bytes, 0) + text4(bytes, 8) + text4(bytes, 16), std::string("CcnK") + r.kind + "Vzon");
        // Size, format version, plug-in version, programs (stays 0), chunk size.
        for (auto [at, value] : {std::pair{size_t{4}, bytes.size() - 8}, {12, 1}, {20, 1}, {24, 0}, {r.header - 4, 9}})
            EXPECT_EQ(be32(bytes, at), value) << r.file << " " << at;
        EXPECT_STREQ(reinterpret_cast<const char*>(&bytes[28]), r.name);
        ASSERT_TRUE(readBack(r.format, dir / r.file));
        EXPECT_EQ(back, block);
    }
    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "bank.fxb")) << "a bank is not a program";
    const auto bytes = written(presetFormatFXP(), dir / "A name of more than twenty-seven characters.fxp");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes[28])), "A name of more than twenty-");
}

TEST_F(PresetFormats, EmptyBlocksReadBackAndForeignOrDamagedFilesGiveNoData) {
    presetFormatFXP().write((dir / "empty.fxp").string(), nullptr, 0);
    ASSERT_EQ(TestSupport::fileBytes((dir / "empty.fxp").string()).size(), 60u);
    ASSERT_TRUE(readBack(presetFormatFXP(), dir / "empty.fxp"));
    EXPECT_TRUE(back.empty());

    auto bytes = written(presetFormatFXP(), dir / "p.fxp");
    EXPECT_FALSE(readBack(presetFormatFXP(), dir / "missing.fxp"));
    presetFormatFXP().freeData(nullptr);
    // The parameter kind is not read; a header cut short or claiming more than the file holds gives nothing.
    auto refused = [&](const std::vector<uint8_t>& damaged, size_t size) {
        TestSupport::writeFile(dir / "damaged.fxp", damaged, size);
        return !readBack(presetFormatFXP(), dir / "damaged.fxp");
    };
    EXPECT_TRUE(refused(bytes, 40));
    bytes[56] = 0x7f;
    EXPECT_TRUE(refused(bytes, SIZE_MAX));
    std::memcpy(&bytes[8], "FxCk", 4);
    bytes[56] = 0;
    EXPECT_TRUE(refused(bytes, SIZE_MAX));
}

TEST_F(PresetFormats, NativeFormatWritesItsOwnLayoutAndReadsFxpAndTheBaseTakesBytesAsTheyAre) {
    zonfraPresetFormat().write((dir / "native").string(), block.data(), int(block.size()));
    std::vector<uint8_t> expected = {0x4F, 0x70, 0x66, 0, 0, 0x20, 0x0C, 0xE9, 0, 0, 0, 16, 0, 0, 0, 9};
    expected.insert(expected.end(), block.begin(), block.end());
    EXPECT_EQ(TestSupport::fileBytes((dir / "native.zonfraPreset").string()), expected);

    EXPECT_FALSE(readBack(zonfraPresetFormat(), dir / "native.zonfraPreset"));
    presetFormatFXP().fxID = 0;  // the native reader insists on "Vzon" whatever the FXP format knows
    written(presetFormatFXP(), dir / "fx.fxp");
    EXPECT_FALSE(readBack(zonfraPresetFormat(), dir / "fx.fxp"));
    presetFormatFXP().fxID = kVzon;
    written(presetFormatFXP(), dir / "fx.fxp");
    ASSERT_TRUE(readBack(zonfraPresetFormat(), dir / "fx.fxp"));
    EXPECT_EQ(back, block);

    EXPECT_STREQ(presetFormatFXP().getExtension(), ".fxp");
    CFileFormat raw;  // the base keeps the bytes as they are
    written(raw, dir / "raw.bin");
    ASSERT_TRUE(readBack(raw, dir / "raw.bin"));
    EXPECT_EQ(back, block);
}
