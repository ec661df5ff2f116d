#include "lib_platform/PlatformTestSupport.h"

#include <cmath>
#include <cstdlib>
#include <set>

#include "lib/controls/Vinta_AnimKnob.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/platform-x11/CDragContainer.h"

namespace PlatformTest {

using namespace Vinta;

// Takes the focus, records the keys it gets and the files dropped on it.
class RecordingView : public CView {
public:
    explicit RecordingView(const CRect& rect) : CView(rect) { wantsFocus = true; }
    void draw(CDrawContext* context) override {
        context->setFillColor(CColor{40, 160, 90, 255});
        context->drawRect(size, kDrawFilled);
        setDirty(false);
    }
    int32_t onKeyDown(const VstKeyCode& key) override {
        recordedKeys.push_back("down " + std::to_string(key.virt) + " " + std::to_string(key.modifier));
        return 1;
    }
    bool onDrop(CDragContainer* drag, const CPoint&) override {
        int32_t type = 0;
        for (int32_t index = 0; index < drag->getCount(); ++index) recordedDrops.push_back(drag->getItem(index, type));
        return true;
    }
};

void HostWindowTest::SetUp() {
    // One connection for the whole run: Xvfb refuses clients for a while after its last one leaves.
    static Display* shared = (XSetErrorHandler(ignoreRacingWindows), XOpenDisplay(nullptr));
    display = shared;
    if (!display) GTEST_SKIP() << "no X display (run under xvfb-run)";
    host = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 900, 700, 0, 0, 0x202020);
    XMapWindow(display, host);
    XSync(display, False);
    input = std::make_unique<EditorHost::InputScript>(host);
    recordedKeys.clear();
    recordedDrops.clear();
}

void HostWindowTest::TearDown() {
    if (!display) return;
    XDestroyWindow(display, host);
    XSync(display, False);
}

Panel HostWindowTest::open(double scale, EventDriver driver, bool allowGL, CView* extra) {
    Panel panel;
    panel.frame = X11::X11Frame::openFrame(host, CRect(0, 0, 300, 200), nullptr, {driver, scale, allowGL});
    if (!panel.frame) return panel;
    panel.platform = X11::X11Frame::of(panel.frame);
    panel.frame->setBackgroundColor(CColor{30, 60, 120, 255});
    // A filmstrip of 16 frames, each a darker or lighter grey.
    auto* strip = new CBitmap(40.0, 640.0);
    CDrawContext* context = strip->getDrawContext();
    for (int frameIndex = 0; frameIndex < 16; ++frameIndex) {
        const auto grey = static_cast<uint8_t>(frameIndex * 16);
        context->setFillColor(CColor{grey, grey, grey, 255});
        context->drawRect(CRect(0, frameIndex * 40.0, 40, frameIndex * 40.0 + 40), kDrawFilled);
    }
    auto* knob = new Vinta_AnimKnob(CRect(20, 20, 60, 60), nullptr, 1, 16, 40.0, strip);
    strip->forget();
    panel.knob = knob;
    panel.frame->addView(knob);
    panel.recorder = new RecordingView(CRect(100, 20, 180, 100));
    panel.frame->addView(panel.recorder);
    if (extra) panel.frame->addView(extra);
    panel.platform->start();
    return panel;
}

int distinctColours(const CBitmap& shot) {
    std::set<uint32_t> colours;
    for (uint32_t y = 0; y < shot.getPixelHeight(); ++y)
        for (uint32_t x = 0; x < shot.getPixelWidth(); ++x) {
            const CColor colour = shot.getPixel(x, y);
            colours.insert(colour.red | (colour.green << 8) | (colour.blue << 16));
        }
    return static_cast<int>(colours.size());
}

double meanDifference(const CBitmap& shot, const CBitmap& other) {
    const size_t bytes = static_cast<size_t>(shot.getStride()) * shot.getPixelHeight();
    if (other.getPixelWidth() != shot.getPixelWidth() || other.getPixelHeight() != shot.getPixelHeight() || !bytes)
        return 255.0;
    double sum = 0.0;
    for (size_t index = 0; index < bytes; ++index) sum += std::abs(shot.getPixels()[index] - other.getPixels()[index]);
    return sum / static_cast<double>(bytes);
}

DrawingTest::BitmapPtr takeShot(X11::X11Frame& platform) {
    CBitmap* shot = platform.screenshot();
    return DrawingTest::BitmapPtr(shot ? shot : new CBitmap(0.0, 0.0));
}

}  // namespace PlatformTest
