#include "lib_platform/PlatformTestSupport.h"

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <atomic>
#include <cmath>
#include <mutex>
#include <set>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/platform-x11/X11ErrorTrap.h"
#include "lib/views/CTimerObject.h"

namespace PlatformTest {
namespace {

using namespace Vinta;

int countEntries(const char* folder) {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

// Each scale with GL and with the software frame: the window's size, the panel painted with its
// background where no view is, the two frames painting alike, and a size set in units.
TEST_F(HostWindowTest, OpensAtTheScaledSizeAndBothFramesPaintThePanelAlike) {
    for (double scale : {1.0, 1.5}) {
        DrawingTest::BitmapPtr shots[2];
        for (bool gl : {true, false}) {
            SCOPED_TRACE(std::to_string(scale) + (gl ? " GL" : " software"));
            Panel panel = open(scale, EventDriver::OwnThread, gl);
            ASSERT_NE(panel.frame, nullptr);
            EXPECT_EQ(panel.platform->isGL(), gl) << panel.platform->getGLError();
            XWindowAttributes shape{};
            XGetWindowAttributes(display, panel.platform->getWindow(), &shape);
            EXPECT_EQ(shape.width, static_cast<int>(300 * scale));
            EXPECT_EQ(shape.height, static_cast<int>(200 * scale));
            const CBitmap& shot = *(shots[gl] = takeShot(*panel.platform));
            ASSERT_EQ(shot.getPixelWidth(), static_cast<uint32_t>(shape.width));
            EXPECT_GT(distinctColours(shot), 2);
            const CColor background =
                shot.getPixel(static_cast<uint32_t>(250 * scale), static_cast<uint32_t>(180 * scale));
            EXPECT_NEAR(background.red, 30, 3);
            EXPECT_NEAR(background.blue, 120, 3);
            panel.frame->setSize(200.0, 120.0);  // a host's size in units: not shrunk to the unscaled pixels
            CRect pixels;
            EXPECT_TRUE(panel.platform->getRect(pixels) && pixels == CRect(0, 0, 200.0 * scale, 120.0 * scale));
            close(panel);
        }
        EXPECT_LT(meanDifference(*shots[0], *shots[1]), 6.0) << scale;
    }
}

using LargePanel = WithPanel<EventDriver::OwnThread, 150>;

// (A drag through XTest is among the editor doors' tests.)
TEST_F(LargePanel, TurningTheWheelOverTheKnobChangesItsValue) {
    const float before = panel.knob->getValue();
    send(Kind::Move, 60, 60);
    for (int step = 0; step < 3; ++step)  // up
        for (Bool down : {True, False}) XTestFakeButtonEvent(display, 4, down, CurrentTime);
    XSync(display, False);
    EXPECT_TRUE(waitFor([&] { return std::abs(panel.knob->getValue() - (before + 0.3f)) < 0.01f; }))
        << panel.knob->getValue();
}

TEST_F(OwnThreadPanel, KeysReachTheFocusedView) {
    XSelectInput(display, host, KeyPressMask);
    send(Kind::Click, 140, 60);  // the click gives the editor the keyboard
    ASSERT_TRUE(waitFor([&] { return hasFocus(panel); }));
    panel.frame->setFocusView(panel.recorder);
    key("a");  // not in the virtual key table: the tree never sees it
    key("Up");
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_Shift_L), True, CurrentTime);
    XSync(display, False);
    key("Down");
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_Shift_L), False, CurrentTime);
    ASSERT_TRUE(waitFor([] { return recordedKeys.size() >= 3; }));
    EXPECT_EQ(recordedKeys, (std::vector<std::string>{"down 12 0", "down 54 0", "down 14 1"}));
    // The key nobody in the editor took went on to the host's window.
    XEvent forwarded{};
    EXPECT_TRUE(waitFor([&] { return XCheckTypedWindowEvent(display, host, KeyPress, &forwarded); }));
    EXPECT_EQ(XLookupKeysym(&forwarded.xkey, 0), static_cast<KeySym>(XK_a));
}

// Notes the threads that draw it and that run its timer.
class ThreadRecorder : public CView, public CTimerObject {
public:
    ThreadRecorder() : CView(CRect(0, 0, 10, 10)) {}
    void draw(CDrawContext*) override {
        note(drawn);
        setDirty(false);
    }
    void onTimer(uint32_t) override { note(ticked); }
    std::set<std::thread::id> threads(bool timer) {
        std::lock_guard<std::mutex> guard(lock);
        return timer ? ticked : drawn;
    }

private:
    void note(std::set<std::thread::id>& where) {
        std::lock_guard<std::mutex> guard(lock);
        where.insert(std::this_thread::get_id());
    }
    std::mutex lock;
    std::set<std::thread::id> drawn, ticked;
};

// Each editor on its own connection and thread, its timers on that thread too.
TEST_F(HostWindowTest, TwoEditorsRunSideBySideEachOnItsOwnConnectionAndThreadAndPaintOnlyOnAChange) {
    const unsigned long errors = Vinta::X11::getTrappedErrorCount();
    ThreadRecorder* recorders[] = {new ThreadRecorder, new ThreadRecorder};
    Panel first = open(1.0, EventDriver::OwnThread, true, recorders[0]);
    Panel second = open(1.25, EventDriver::OwnThread, true, recorders[1]);
    ASSERT_TRUE(first.frame && second.frame);
    for (ThreadRecorder* recorder : recorders) recorder->startTimer(15);
    EXPECT_NE(first.platform->getDisplay(), second.platform->getDisplay());
    ASSERT_TRUE(waitFor([&] {
        for (ThreadRecorder* recorder : recorders)
            if (recorder->threads(true).empty() || recorder->threads(false).empty()) return false;
        return true;
    }));
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const uint64_t painted = second.platform->getPaintCount();
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    EXPECT_EQ(second.platform->getPaintCount(), painted);
    second.knob->setValue(0.5f);  // from another thread, as a host's parameter change comes
    second.knob->setDirty(true);
    EXPECT_TRUE(waitFor([&] { return second.platform->getPaintCount() > painted; }));
    for (ThreadRecorder* recorder : recorders) {
        EXPECT_EQ(recorder->threads(true), recorder->threads(false)) << "a timer ran off the thread that draws it";
        EXPECT_EQ(recorder->threads(true).size(), 1u);
    }
    EXPECT_NE(recorders[0]->threads(false), recorders[1]->threads(false));
    close(first);
    EXPECT_GT(distinctColours(*takeShot(*second.platform)), 2);  // the other one goes on
    close(second);
    EXPECT_EQ(Vinta::X11::getTrappedErrorCount(), errors);
}

// The host's drivers hand the host a descriptor and a timer interval, and paint only when pumped.
TEST_F(HostWindowTest, TheHostsDriversPaintOnlyWhenPumped) {
    const std::pair<EventDriver, bool> kinds[] = {
        {EventDriver::HostIdle, true}, {EventDriver::HostIdle, false}, {EventDriver::HostRunLoop, true}};
    for (const auto& [driver, gl] : kinds) {
        Panel panel = open(1.0, driver, gl);
        ASSERT_NE(panel.frame, nullptr);
        EXPECT_GE(panel.platform->getConnectionFd(), 0);
        EXPECT_GT(panel.platform->getTimerInterval(), 0u);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        EXPECT_EQ(panel.platform->getPaintCount(), 0u);
        panel.platform->pump();
        EXPECT_EQ(panel.platform->getPaintCount(), 1u);
        close(panel);
    }
}

int hostErrors = 0;
int countHostError(Display*, XErrorEvent*) { return ++hostErrors, 0; }

TEST_F(HostWindowTest, ErrorsOfOurConnectionAreSwallowedAndTheHostsStillReachItsHandler) {
    const XErrorHandler before = XSetErrorHandler(countHostError);
    Panel panel = open(1.0, EventDriver::HostIdle);
    ASSERT_NE(panel.frame, nullptr);
    const unsigned long trapped = Vinta::X11::getTrappedErrorCount();
    XDestroyWindow(panel.platform->getDisplay(), 0x7ffffff);  // no such window
    XSync(panel.platform->getDisplay(), False);
    EXPECT_EQ(Vinta::X11::getTrappedErrorCount(), trapped + 1);
    XDestroyWindow(display, 0x7ffffff);
    XSync(display, False);
    EXPECT_EQ(hostErrors, 1);
    close(panel);
    XSetErrorHandler(before);
}

TEST_F(HostWindowTest, WithoutAGL33ContextTheSoftwareFramePaintsAndShowsWhy) {
    setenv("MESA_GL_VERSION_OVERRIDE", "3.0", 1);  // Mesa then offers no 3.3 core context
    Panel panel = open(1.0, EventDriver::HostIdle, true);
    unsetenv("MESA_GL_VERSION_OVERRIDE");
    ASSERT_NE(panel.frame, nullptr);
    EXPECT_FALSE(panel.platform->isGL());
    EXPECT_STREQ(panel.platform->getGLError(), "Error: Cannot create GL context");
    const DrawingTest::BitmapPtr shot = takeShot(*panel.platform);
    int reddish = 0;  // the message's text over the panel's top edge
    for (uint32_t y = 4; y < 22; ++y)
        for (uint32_t x = 4; x < 200; ++x)
            reddish += shot->getPixel(x, y).red > 150 && shot->getPixel(x, y).green < 120;
    EXPECT_GT(reddish, 20);
    close(panel);
}

// Closes the editor from a timer, on the frame's own thread.
class ClosingTimer : public Vinta::CTimerObject {
public:
    explicit ClosingTimer(Vinta::CFrame* frame) : target(frame) { startTimer(10); }
    void onTimer(uint32_t) override {
        stopTimer();
        Vinta::X11::X11Frame::closeFrame(target.exchange(nullptr));
    }
    std::atomic<Vinta::CFrame*> target;
};

TEST_F(HostWindowTest, TheEditorMayBeClosedFromItsOwnThread) {
    for (EventDriver driver : {EventDriver::OwnThread, EventDriver::HostIdle}) {
        const int threads = countEntries("/proc/self/task");
        Panel panel = open(1.0, driver);
        ASSERT_NE(panel.frame, nullptr);
        const Window window = panel.platform->getWindow();
        ClosingTimer closer(panel.frame);
        EXPECT_TRUE(waitFor([&] {
            if (driver == EventDriver::HostIdle && closer.target) panel.platform->pump();  // the last one closes
            XWindowAttributes attributes{};
            return !closer.target && XGetWindowAttributes(display, window, &attributes) == 0 &&
                   countEntries("/proc/self/task") == threads;
        }));
    }
}

// What a host's change does to the picture: a value set while its control is being drawn is drawn
// next time, and a bitmap whose pixels change shows the new ones at every size.

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
