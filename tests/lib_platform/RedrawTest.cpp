// What a host's change does to the picture: a value set while its control is being drawn is drawn
// next time, and a bitmap whose pixels change shows the new ones at every size.
#include "lib_platform/PlatformTestSupport.h"

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"

namespace PlatformTest {
namespace {

using namespace Vinta;

// Draws the way the knobs do (value first, dirty flag cleared last); its first draw lets the
// host's change land in between, as a parameter set on another thread can.
class RacedControl : public CControl {
public:
    explicit RacedControl(const CRect& rect) : CControl(rect) {}
    void draw(CDrawContext*) override {
        drawn.push_back(getValue());
        if (drawn.size() == 1) {
            setValue(0.9f);
            setDirty(true);
        }
        setDirty(false);
    }
    std::vector<float> drawn;
};

TEST_F(HostIdlePanel, AValueSetWhileItsControlDrawsIsDrawnNextTime) {
    auto* control = new RacedControl(CRect(200, 120, 240, 160));
    panel.frame->addView(control);
    EXPECT_TRUE(waitFor([&] {
        panel.platform->pump();
        return control->drawn.size() >= 2;
    }, 1000));
    ASSERT_FALSE(control->drawn.empty());
    EXPECT_EQ(control->drawn.back(), 0.9f);
}

// Draws its 64-pixel bitmap into a 16-unit square: the GPU samples the bitmap's smaller copies.
class ShrunkBitmap : public CView {
public:
    ShrunkBitmap(const CRect& rect, CBitmap* image) : CView(rect), bitmap(image) {}
    void draw(CDrawContext* context) override {
        context->drawBitmapStretched(*bitmap, size);
        setDirty(false);
    }
    CBitmap* bitmap;
};

TEST_F(HostIdlePanel, ChangedBitmapPixelsShowWhenTheBitmapIsDrawnSmaller) {
    if (!panel.platform->isGL()) GTEST_SKIP() << "no GL here";
    auto* image = new CBitmap(64.0, 64.0);
    const auto fill = [&](CColor colour) {
        CDrawContext* into = image->getDrawContext();
        into->setFillColor(colour);
        into->drawRect(CRect(0, 0, 64, 64), kDrawFilled);
    };
    fill(CColor{255, 0, 0, 255});
    auto* view = new ShrunkBitmap(CRect(200, 120, 216, 136), image);
    panel.frame->addView(view);
    const auto centre = [&] { return takeShot(*panel.platform)->getPixel(208, 128); };  // the bitmap's middle
    EXPECT_EQ(centre().red, 255);
    fill(CColor{0, 0, 255, 255});
    view->setDirty(true);
    const CColor after = centre();
    EXPECT_TRUE(after.red < 20 && after.blue > 235) << int(after.red) << " " << int(after.blue);
    close(panel);
    image->forget();
}

}  // namespace
}  // namespace PlatformTest
