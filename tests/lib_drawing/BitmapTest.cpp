#include <png.h>
#include <zlib.h>

#include <functional>
#include <string>
#include <vector>

#include "lib_drawing/DrawingTestSupport.h"

using namespace DrawingTest;

namespace {

// A PNG made by libpng's simplified writer from straight 8-bit samples in `format`.
std::vector<uint8_t> makePNG(uint32_t width, uint32_t height, uint32_t format, const std::vector<uint8_t>& samples,
                             const std::vector<uint8_t>& colourMap = {}) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = format;
    image.colormap_entries = static_cast<png_uint_32>(colourMap.size() / 4);
    png_alloc_size_t size = 0;
    const void* map = colourMap.empty() ? nullptr : colourMap.data();
    png_image_write_to_memory(&image, nullptr, &size, 0, samples.data(), 0, map);
    std::vector<uint8_t> bytes(size);
    EXPECT_TRUE(png_image_write_to_memory(&image, bytes.data(), &size, 0, samples.data(), 0, map));
    bytes.resize(size);
    return bytes;
}

std::vector<uint8_t> rawPixel(const CBitmap& bitmap, uint32_t x, uint32_t y) {
    const uint8_t* p = bitmap.getPixels() + y * bitmap.getStride() + x * 4;
    return {p[0], p[1], p[2], p[3]};
}

}  // namespace

TEST(Bitmap, AlphaAndCopyModes) {
    BitmapPtr white = makeBitmap(8, 8), hole = makeBitmap(8, 8);
    white->getDrawContext()->clearWithColor(kWhiteCColor);
    const CRect all(0, 0, 8, 8);
    const struct { const char* name; std::function<void(CDrawContext*)> draw; CColor expected; } cases[] = {
        {"alpha 255", [&](CDrawContext* c) { white->drawAlpha(c, all, CPoint(), 255); }, kWhiteCColor},
        {"alpha 128", [&](CDrawContext* c) { white->drawAlpha(c, all, CPoint(), 128); }, CColor{128, 128, 128, 255}},
        {"alpha 0", [&](CDrawContext* c) { white->drawAlpha(c, all, CPoint(), 0); }, kBlackCColor},
        {"transparent blends", [&](CDrawContext* c) { hole->drawTransparent(c, all); }, kBlackCColor},
    };
    for (const auto& test : cases) {
        BitmapPtr canvas = makeBitmap(8, 8);
        canvas->getDrawContext()->clearWithColor(kBlackCColor);
        test.draw(canvas->getDrawContext());
        EXPECT_TRUE(near(canvas->getPixel(4, 4), test.expected, 1)) << test.name;
    }
}

TEST(Bitmap, PNGFileRoundTripAndCopyKeepThePixels) {
    BitmapPtr image = makeBitmap(37, 23);
    CDrawContext* context = image->getDrawContext();
    context->setLinearGradient(CRect(0, 0, 37, 23), CColor{255, 0, 0, 255}, CColor{0, 0, 255, 40});
    context->drawRect(CRect(0, 0, 37, 23), 1);
    context->setFillColor(CColor{10, 200, 30, 128});
    context->drawEllipse(CRect(5, 5, 30, 20), 1);
    const std::string path = ::testing::TempDir() + "/zonfra-round-trip.png";
    ASSERT_TRUE(image->savePNG(path.c_str()));
    BitmapPtr loaded(new CBitmap(path.c_str(), true)), copy = makeBitmap(0, 0);
    ASSERT_TRUE(copy->copyFrom(loaded.get()));
    ASSERT_EQ(CPoint(copy->getWidth(), copy->getHeight()), CPoint(37, 23));
    for (uint32_t y = 0; y < 23; ++y)
        for (uint32_t x = 0; x < 37; ++x)
            ASSERT_EQ(rawPixel(*copy, x, y), rawPixel(*image, x, y)) << x << ", " << y;
    EXPECT_FALSE(copy->copyFrom(nullptr) || copy->isValid());
}

TEST(Bitmap, DecodesEveryColourTypeToPremultipliedRGBA) {
    // Two pixels in, each stored premultiplied.
    const struct { const char* name; uint32_t format; std::vector<uint8_t> samples, colourMap, first, second; }
        cases[] = {
        {"rgba", PNG_FORMAT_RGBA, {255, 255, 255, 255, 200, 100, 50, 0}, {}, {255, 255, 255, 255}, {0, 0, 0, 0}},
        {"rgba half", PNG_FORMAT_RGBA, {200, 100, 50, 128, 255, 0, 0, 255}, {}, {100, 50, 25, 128}, {255, 0, 0, 255}},
        {"rgb", PNG_FORMAT_RGB, {10, 20, 30, 40, 50, 60}, {}, {10, 20, 30, 255}, {40, 50, 60, 255}},
        {"gray", PNG_FORMAT_GRAY, {0, 200}, {}, {0, 0, 0, 255}, {200, 200, 200, 255}},
        {"gray alpha", PNG_FORMAT_GA, {255, 0, 100, 255}, {}, {0, 0, 0, 0}, {100, 100, 100, 255}},
        {"palette", PNG_FORMAT_RGBA_COLORMAP, {1, 0}, {255, 0, 0, 255, 0, 0, 255, 128}, {0, 0, 128, 128},
         {255, 0, 0, 255}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const std::vector<uint8_t> png = makePNG(2, 1, test.format, test.samples, test.colourMap);
        BitmapPtr bitmap = makeBitmap(0, 0);
        ASSERT_TRUE(bitmap->loadFromMemory(png.data(), png.size()));
        EXPECT_EQ(rawPixel(*bitmap, 0, 0), test.first);
        EXPECT_EQ(rawPixel(*bitmap, 1, 0), test.second);
    }
}

TEST(Bitmap, BadSourcesLeaveAnEmptyBitmapThatDrawsNothing) {
    BitmapPtr good = makeBitmap(16, 16);
    good->getDrawContext()->clearWithColor(kRedCColor);
    const std::vector<uint8_t> png = good->encodePNG();
    std::vector<uint8_t> badCrc = png;
    badCrc[20] ^= 0x40;  // inside the header chunk
    // 30000 x 30000 with a valid header checksum: refused before any pixels are made.
    std::vector<uint8_t> huge = makePNG(1, 1, PNG_FORMAT_GRAY, {0});
    huge[18] = huge[22] = 0x75, huge[19] = huge[23] = 0x30;
    const uLong crc = crc32(0, huge.data() + 12, 17);
    for (int i = 0; i < 4; ++i) huge[29 + i] = uint8_t(crc >> (24 - 8 * i));
    const std::vector<uint8_t> junk(300, 0x5a);
    const std::string missingFile = ::testing::TempDir() + "/no-such-file.png";
    const struct { const char* name; std::function<bool(CBitmap&)> load; } cases[] = {
        {"empty", [](CBitmap& b) { return b.loadFromMemory(nullptr, 0); }},
        {"junk", [&](CBitmap& b) { return b.loadFromMemory(junk.data(), junk.size()); }},
        {"signature only", [&](CBitmap& b) { return b.loadFromMemory(png.data(), 8); }},
        {"cut in the header", [&](CBitmap& b) { return b.loadFromMemory(png.data(), 30); }},
        {"cut in the data", [&](CBitmap& b) { return b.loadFromMemory(png.data(), png.size() - 20); }},
        {"damaged header", [&](CBitmap& b) { return b.loadFromMemory(badCrc.data(), badCrc.size()); }},
        {"absurd size", [&](CBitmap& b) { return b.loadFromMemory(huge.data(), huge.size()); }},
        {"absurd size asked for", [](CBitmap& b) { b.setSize(30000, 30000); return b.isValid(); }},
        {"missing file", [&](CBitmap& b) { return b.loadFromFile(missingFile.c_str()); }},
        {"missing resource", [](CBitmap& b) { return b.loadFromResource("no-such-bitmap.png"); }},
        {"null resource", [](CBitmap& b) { return b.loadFromResource(nullptr); }},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        BitmapPtr bitmap(new CBitmap(16, 16));
        EXPECT_FALSE(test.load(*bitmap));
        EXPECT_FALSE(bitmap->isValid());
        EXPECT_EQ(CPoint(bitmap->getWidth(), bitmap->getHeight()), CPoint(0, 0));
        BitmapPtr canvas = makeBitmap(16, 16);
        bitmap->draw(canvas->getDrawContext(), CRect(0, 0, 16, 16));
        bitmap->getDrawContext()->drawRect(CRect(0, 0, 16, 16), 1);
        EXPECT_EQ(canvas->getPixel(8, 8).alpha, 0);
        EXPECT_TRUE(bitmap->encodePNG().empty());
    }
    BitmapPtr byName(new CBitmap("no-such-bitmap.png", false));
    EXPECT_FALSE(byName->isValid());
}
