#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "lib/drawing/CBitmap.h"
#include "support/Samples.h"

namespace {

// The geometry the editor's controls rely on: knob strips of 128 square frames, two-row switches.
struct Expected {
    const char* name;
    int width;
    int frameHeight;
    int frames;
};
constexpr Expected kImages[] = {
    {"ArrowDownBig.png", 12, 14, 2},      {"ArrowLeftBig.png", 12, 14, 2},
    {"ArrowRightBig.png", 12, 14, 2},     {"Background.png", 534, 488, 1},
    {"dial54px_small.png", 54, 54, 128},  {"dial87px.png", 87, 87, 128},
    {"HorizontalDip.png", 30, 18, 2},     {"ledOff.png", 14, 14, 1},
    {"ledOn.png", 14, 14, 1},             {"linkBtn.png", 84, 60, 2},
    {"MixDialFilmstrip.png", 24, 24, 128},
};

std::string doubled(const std::string& name) { return name.substr(0, name.size() - 4) + "@2x.png"; }

struct Bitmap {
    explicit Bitmap(const std::string& name) : bitmap(new Vinta::CBitmap(name.c_str(), false)) {}
    ~Bitmap() { bitmap->forget(); }
    Vinta::CBitmap* operator->() const { return bitmap; }
    Vinta::CBitmap* bitmap;
};

// Straight colours of one frame, for telling frames apart.
std::vector<uint32_t> frameOf(const Bitmap& b, int frame, int frameHeight) {
    std::vector<uint32_t> pixels;
    for (int y = frame * frameHeight; y < (frame + 1) * frameHeight; ++y)
        for (uint32_t x = 0; x < b->getPixelWidth(); ++x) {
            const Vinta::CColor c = b->getPixel(x, static_cast<uint32_t>(y));
            pixels.push_back(c.red | c.green << 8 | c.blue << 16 | static_cast<uint32_t>(c.alpha) << 24);
        }
    return pixels;
}

}  // namespace

TEST(Artwork, EveryImageIsInTheMainArchiveAtBothScalesWithItsGeometry) {
    for (const Expected& e : kImages) {
        for (int scale : {1, 2}) {
            const std::string name = scale == 1 ? e.name : doubled(e.name);
            Bitmap b(name);
            ASSERT_TRUE(b->isValid()) << name;
            EXPECT_EQ(b->getPixelWidth(), static_cast<uint32_t>(e.width * scale)) << name;
            EXPECT_EQ(b->getPixelHeight(), static_cast<uint32_t>(e.frameHeight * e.frames * scale)) << name;
        }
        // Every step of a strip and each row of a switch shows something different from its neighbour.
        Bitmap b(e.name);
        for (int frame = 1; frame < e.frames; ++frame)
            ASSERT_NE(frameOf(b, frame - 1, e.frameHeight), frameOf(b, frame, e.frameHeight)) << e.name << " " << frame;
    }
}

TEST(Artwork, TheToolDrawsTheSameBytesEveryRun) {
    const std::filesystem::path root = std::filesystem::temp_directory_path() / ("zonfra-artwork-" + std::to_string(::getpid()));
    const std::string tool = ZONFRA_ARTWORK_TOOL;
    for (const char* run : {"a", "b"})
        ASSERT_EQ(std::system(("\"" + tool + "\" \"" + (root / run).string() + "\" > /dev/null").c_str()), 0);
    int compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root / "a")) {
        const std::vector<uint8_t> first = TestSupport::fileBytes(entry.path().string()),
                                   second = TestSupport::fileBytes((root / "b" / entry.path().filename()).string());
        EXPECT_FALSE(first.empty()) << entry.path();
        EXPECT_EQ(first, second) << entry.path().filename();
        ++compared;
    }
    EXPECT_EQ(compared, 2 * static_cast<int>(std::size(kImages)));
    std::filesystem::remove_all(root);
}
