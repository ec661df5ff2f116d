#pragma once
// An X11 window with a GLX 3.3 core context made current, for drawing through nanovg in tests and
// benchmarks (under Xvfb with Mesa's llvmpipe). `ready()` is false, with the reason, when no display
// or no such context is to be had. X11's macros stay inside the source file.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace DrawingTest {

class OffscreenGLWindow {
public:
    OffscreenGLWindow(int width, int height);
    ~OffscreenGLWindow();

    bool ready() const;
    const std::string& whyNot() const;
    // Viewport, and colour and stencil cleared.
    void beginPaint() const;
    // The back buffer as rows top down, four bytes red, green, blue, alpha each.
    std::vector<uint8_t> readPixels() const;

private:
    struct Native;
    std::unique_ptr<Native> native;
};

}  // namespace DrawingTest
