#pragma once
// A host window in the test's own X connection, a small panel to open in it, and XTest input.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "lib/platform-x11/X11Frame.h"
#include "lib/views/CControl.h"
#include "lib/views/CFrame.h"
#include "lib_drawing/DrawingTestSupport.h"
#include "lib_platform/X11TestTools.h"
#include "tools/editor-host/InputScript.h"

namespace PlatformTest {

using Vinta::X11::EventDriver;
using Kind = EditorHost::InputStep::Kind;

// Views the panel holds, reachable by the tests.
struct Panel {
    Vinta::CFrame* frame = nullptr;
    Vinta::X11::X11Frame* platform = nullptr;
    Vinta::CControl* knob = nullptr;
    Vinta::CView* recorder = nullptr;  // takes the focus, records keys and drops
};

// What the recorder got: keys as "down <virtual key> <modifiers>", and the dropped paths.
inline std::vector<std::string> recordedKeys, recordedDrops;

class HostWindowTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Units 300 x 200; the panel: background, a filmstrip knob, a key and drop recorder, and `extra`.
    Panel open(double scale, EventDriver driver, bool allowGL = true, Vinta::CView* extra = nullptr);
    void close(Panel& panel) {
        Vinta::X11::X11Frame::closeFrame(panel.frame);
        panel = {};
    }
    // The host's loop: pumps the panel until `done`; false after five seconds.
    bool pumpUntil(const Panel& panel, const std::function<bool()>& done) {
        return waitFor([&] {
            panel.platform->pump();
            return done();
        });
    }
    bool hasFocus(const Panel& panel) { return inputFocus(display) == panel.platform->getWindow(); }

    // XTest input at pixels of the host window, whose corner the panel fills; both clicks of a double
    // click go out together, so a busy editor thread cannot stretch them apart.
    void send(Kind kind, int x, int y) { input->send({kind, x, y, {}}); }
    void key(const char* keysymName) { input->send({Kind::Key, 0, 0, keysymName}); }
    void type(const char* text) { input->send({Kind::Type, 0, 0, text}); }

    Display* display = nullptr;
    Window host = 0;
    std::unique_ptr<EditorHost::InputScript> input;
};

// A panel open from the start at `percent` scale; closed at the end unless the test closed it.
template <EventDriver driver, int percent = 100>
class WithPanel : public HostWindowTest {
protected:
    void SetUp() override {
        HostWindowTest::SetUp();
        if (IsSkipped()) return;
        panel = open(percent / 100.0, driver);
        ASSERT_NE(panel.frame, nullptr);
    }
    void TearDown() override {
        if (panel.frame) close(panel);
        HostWindowTest::TearDown();
    }
    Panel panel;
};
using OwnThreadPanel = WithPanel<EventDriver::OwnThread>;
using HostIdlePanel = WithPanel<EventDriver::HostIdle>;

// The window's pixels now (an empty bitmap when there are none), how many colours they hold, and
// the mean difference of two such pictures' bytes.
DrawingTest::BitmapPtr takeShot(Vinta::X11::X11Frame& platform);
int distinctColours(const Vinta::CBitmap& shot);
double meanDifference(const Vinta::CBitmap& shot, const Vinta::CBitmap& other);

}  // namespace PlatformTest
