#pragma once
// A host window in the test's own X connection, a small panel to open in it, and XTest input.
// gtest first: Xlib defines None and Bool as macros.
#include <gtest/gtest.h>
#include <X11/Xlib.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "lib/platform-x11/X11Frame.h"
#include "lib/views/CControl.h"
#include "lib/views/CFrame.h"

namespace PlatformTest {

using Vinta::X11::EventDriver;

// Views the panel holds, reachable by the tests.
struct Panel {
    Vinta::CFrame* frame = nullptr;
    Vinta::X11::X11Frame* platform = nullptr;
    Vinta::CControl* knob = nullptr;
    Vinta::CView* recorder = nullptr;  // takes the focus, records keys and drops
};

std::vector<std::string>& recordedKeys();
std::vector<std::string>& recordedDrops();

class HostWindowTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Units 300 x 200; the panel: background, a filmstrip knob, a key and drop recorder.
    Panel open(double scale, EventDriver driver, bool allowGL = true);
    void close(Panel& panel);

    // XTest input at window pixels of the panel's window.
    void moveTo(const Panel& panel, int x, int y);
    void button(unsigned int number, bool down);
    void click(const Panel& panel, int x, int y, unsigned int number = 1);
    // Both clicks go out together: a busy editor thread cannot stretch them apart.
    void doubleClick(const Panel& panel, int x, int y);
    void key(unsigned long keysym, bool shift = false);
    void type(const char* text);
    // Polls until `done` or five seconds pass (a loaded machine paints slowly).
    static bool waitFor(const std::function<bool()>& done, int milliseconds = 5000);

    Display* display = nullptr;
    Window host = 0;
};

// Window pixels of a screenshot, RGBA.
struct Shot {
    uint32_t width = 0, height = 0;
    std::vector<uint8_t> pixels;
    int distinctColours() const;
    double meanDifference(const Shot& other) const;
};
Shot takeShot(Vinta::X11::X11Frame& platform);

}  // namespace PlatformTest
