#pragma once
// Pixels drawn in software, put into a window: through shared memory where the server offers it
// (a local server), plain XPutImage otherwise.
#include <X11/Xlib.h>

#include <cstdint>

namespace Vinta::X11 {

class X11SoftwareSurface {
public:
    X11SoftwareSurface(Display* display, Visual* visual, int depth);
    ~X11SoftwareSurface();
    X11SoftwareSurface(const X11SoftwareSurface&) = delete;
    X11SoftwareSurface& operator=(const X11SoftwareSurface&) = delete;

    // Premultiplied RGBA rows of `source` (over black) stretched to the surface's size and put at
    // the window's origin. The surface follows the window's size.
    void present(Window window, GC gc, const uint8_t* source, uint32_t sourceWidth, uint32_t sourceHeight,
                 int32_t sourceStride, uint32_t windowWidth, uint32_t windowHeight);
    bool usesSharedMemory() const { return shared; }

private:
    bool allocate(uint32_t width, uint32_t height);
    void release();

    Display* display;
    Visual* visual;
    int depth;
    XImage* image = nullptr;
    struct SharedSegment;
    SharedSegment* segment = nullptr;
    bool shared = false;
    bool sharedRefused = false;
};

}  // namespace Vinta::X11
