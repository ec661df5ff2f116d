#include "lib_drawing/OffscreenGLWindow.h"

#include "lib/drawing/CDrawContext_GL.h"
#include "lib_drawing/DrawingTestSupport.h"

using namespace DrawingTest;

namespace {

constexpr int kSize = 256;

class GLContext : public ::testing::Test {
protected:
    // One window for all tests: Xvfb resets when its last client leaves and refuses connections
    // meanwhile.
    static void SetUpTestSuite() { shared = new OffscreenGLWindow(kSize, kSize); }
    static void TearDownTestSuite() { delete shared; }
    void SetUp() override {
        if (!window.ready()) GTEST_SKIP() << "no OpenGL 3.3 core context: " << window.whyNot();
        nvg = CDrawContext_GL::createNanoVG(false);
        ASSERT_NE(nvg, nullptr);
        context = new CDrawContext_GL(nullptr, nvg, kSize, kSize);
    }
    void TearDown() override {
        if (context != nullptr) context->forget();
        CDrawContext_GL::deleteNanoVG(nvg);
    }
    template <class Draw> std::vector<uint8_t> paint(Draw draw) {
        window.beginPaint();
        context->beginFrame(kSize, kSize, 1.0f);
        draw(*context);
        context->endFrame();
        return window.readPixels();
    }
    static CColor at(const std::vector<uint8_t>& pixels, int x, int y) {
        const uint8_t* p = pixels.data() + (y * kSize + x) * 4;
        return CColor{p[0], p[1], p[2], 255};
    }

    static inline OffscreenGLWindow* shared = nullptr;
    OffscreenGLWindow& window = *shared;
    NVGcontext* nvg = nullptr;
    CDrawContext_GL* context = nullptr;
};

}  // namespace

TEST_F(GLContext, SceneMatchesTheSoftwareRendering) {
    BitmapPtr strip = makeFilmstrip(), software = makeBitmap(kSize, kSize);
    const std::vector<uint8_t> gl = paint([&](CDrawContext& c) { drawScene(c, *strip); });
    drawScene(*software->getDrawContext(), *strip);
    const struct { const char* what; int x, y; } points[] = {
        {"background", 3, 3}, {"filled rect", 50, 35}, {"stroke", 110, 35}, {"ellipse", 60, 115},
        {"gradient top", 185, 81}, {"gradient bottom", 185, 148}, {"radial centre", 60, 200}, {"radial rim", 60, 175},
        {"filmstrip frame", 132, 175}, {"frame at alpha", 152, 175}, {"transparent half", 137, 175}};
    for (const auto& point : points)
        EXPECT_TRUE(near(at(gl, point.x, point.y), software->getPixel(uint32_t(point.x), uint32_t(point.y)), 12))
            << point.what;
    // Coverage: apart from edge pixels and glyph rasterising, both back ends agree everywhere.
    int differing = 0;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x)
            differing += !near(at(gl, x, y), software->getPixel(uint32_t(x), uint32_t(y)), 64);
    EXPECT_LT(differing, kSize * kSize / 100) << "pixels that differ by more than a quarter";
}

// A missing font measures and draws nothing, as in the software path.
TEST_F(GLContext, StringWidthsAgreeWithTheSoftwarePath) {
    BitmapPtr canvas = makeBitmap(4, 4);
    CDrawContext& software = *canvas->getDrawContext();
    CFontDesc* missing = new CFontDesc("no-such-archive", "x.ttf", "y.ttf", 1);
    const struct { CFontDesc* font; double size; int32_t style; const char* text; } cases[] = {
        {kSystemFont, 12, 0, "Zonfra"}, {kSystemFont, 24, 0, "Cutoff 440 Hz"}, {kSystemFont, 10, 1, "AVATAR Wave"},
        {kNormalFont, 11, 0, "LFO rate 1/16"}, {kNormalFont, 17, 1, "Resonance 98%"}, {kBoldFont, 13, 0, ""},
        {missing, 20, 0, "Zonfra"}};
    const std::vector<uint8_t> pixels = paint([&](CDrawContext& c) {
        for (const auto& test : cases) {
            c.setFont(test.font, test.size, test.style);
            software.setFont(test.font, test.size, test.style);
            EXPECT_DOUBLE_EQ(c.getStringWidth(test.text), software.getStringWidth(test.text))
                << test.text << " at " << test.size;
        }
        c.setFontColor(kWhiteCColor);
        EXPECT_EQ(c.drawString("Zonfra", CRect(0, 0, kSize, kSize), 0, 1), 0);
    });
    missing->forget();
    int lit = 0;
    for (size_t i = 0; i < pixels.size(); i += 4) lit += pixels[i] != 0;
    EXPECT_EQ(lit, 0) << "the missing font drew";
}

TEST_F(GLContext, BitmapsUploadOnceAndAgainOnlyWhenChanged) {
    BitmapPtr strip = makeFilmstrip();
    auto drawStrip = [&](CDrawContext& c) { strip->draw(&c, CRect(0, 0, 10, 10), CPoint(0, 0)); };
    EXPECT_EQ(at(paint(drawStrip), 2, 2), kRedCColor);
    paint(drawStrip);
    EXPECT_EQ(context->getImageCount(), 1u);
    EXPECT_FALSE(strip->getNeedsUpload());

    CDrawContext* inside = strip->getDrawContext();
    inside->setFillColor(kYellowCColor);
    inside->drawRect(CRect(0, 0, 5, 10), 1);
    EXPECT_TRUE(strip->getNeedsUpload());
    EXPECT_EQ(at(paint(drawStrip), 2, 2), kYellowCColor);
    EXPECT_EQ(context->getImageCount(), 1u);
    EXPECT_FALSE(strip->getNeedsUpload());

    paint([&](CDrawContext& c) { makeBitmap(0, 0)->draw(&c, CRect(0, 0, 10, 10)); });
    EXPECT_EQ(context->getImageCount(), 1u) << "an empty bitmap makes no image";
}

TEST_F(GLContext, ABitmapTallerThanTheLargestImageDrawsInBands) {
    // Bands of 12 rows cut the 10-row frames of the strip: the middle frame lies in two bands.
    context->setLargestImage(12);
    BitmapPtr strip = makeFilmstrip();
    const std::vector<uint8_t> pixels = paint([&](CDrawContext& c) {
        for (int frame = 0; frame < 3; ++frame) strip->draw(&c, CRect(20 * frame, 0, 20 * frame + 10, 10), CPoint(0, 10 * frame));
    });
    EXPECT_EQ(context->getImageCount(), 1u);
    const CColor colours[] = {kRedCColor, kGreenCColor, kBlueCColor};
    for (int frame = 0; frame < 3; ++frame)
        for (int y : {0, 1, 5, 8, 9}) EXPECT_EQ(at(pixels, 20 * frame + 2, y), colours[frame]) << frame << " row " << y;
}

