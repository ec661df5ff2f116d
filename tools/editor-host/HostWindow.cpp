#include "tools/editor-host/HostWindow.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <chrono>
#include <thread>

#include "lib/drawing/CBitmap.h"
#include "tools/editor-host/EditorDoor.h"

namespace EditorHost {

// Xvfb resets, and refuses connections for a moment, whenever its last client leaves: one
// connection stays open for the life of the process, so windows can come and go.
Display* serverAnchor = nullptr;

namespace {
void keepServerUp() {
    if (!serverAnchor) serverAnchor = XOpenDisplay(nullptr);
}
}  // namespace

HostWindow::HostWindow(int width, int height, int left, const char* title) {
    keepServerUp();
    display = XOpenDisplay(nullptr);
    if (!display) return;
    const int screen = DefaultScreen(display);
    XSetWindowAttributes attributes{};
    attributes.background_pixel = BlackPixel(display, screen);
    attributes.event_mask = StructureNotifyMask | ExposureMask;
    window = XCreateWindow(display, RootWindow(display, screen), left, 0, static_cast<unsigned>(width),
                           static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, CopyFromParent,
                           CWBackPixel | CWEventMask, &attributes);
    XStoreName(display, window, title);
    XMapRaised(display, window);
    XSync(display, False);
    // Wait for the map so that the editor opens into a viewable window.
    for (int tries = 0; tries < 200; ++tries) {
        XWindowAttributes state{};
        XGetWindowAttributes(display, window, &state);
        if (state.map_state == IsViewable) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

HostWindow::~HostWindow() {
    if (!display) return;
    if (window) XDestroyWindow(display, window);
    XCloseDisplay(display);
}

void HostWindow::resize(int width, int height) {
    if (!valid() || width <= 0 || height <= 0) return;
    XResizeWindow(display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display, False);
}

bool HostWindow::childSize(int& width, int& height) {
    if (!valid()) return false;
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    XSync(display, False);
    if (!XQueryTree(display, window, &root, &parent, &children, &count) || count == 0) {
        if (children) XFree(children);
        return false;
    }
    XWindowAttributes state{};
    XGetWindowAttributes(display, children[0], &state);
    XFree(children);
    width = state.width;
    height = state.height;
    return true;
}

void HostWindow::drainEvents() {
    while (XPending(display)) {
        XEvent event;
        XNextEvent(display, &event);
    }
}

void HostWindow::run(EditorDoor& door, int milliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    do {
        door.idle();
        if (display) drainEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
    } while (std::chrono::steady_clock::now() < end);
}

Vinta::CBitmap* HostWindow::capture() {
    if (!valid()) return nullptr;
    XWindowAttributes state{};
    XGetWindowAttributes(display, window, &state);
    XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(state.width),
                              static_cast<unsigned>(state.height), AllPlanes, ZPixmap);
    if (!image) return nullptr;
    auto* bitmap = new Vinta::CBitmap(state.width, state.height);
    uint8_t* pixels = bitmap->getPixels();
    for (int y = 0; y < state.height; ++y) {
        uint8_t* row = pixels + static_cast<ptrdiff_t>(y) * bitmap->getStride();
        for (int x = 0; x < state.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            row[4 * x + 0] = static_cast<uint8_t>((pixel & image->red_mask) >> __builtin_ctzl(image->red_mask));
            row[4 * x + 1] = static_cast<uint8_t>((pixel & image->green_mask) >> __builtin_ctzl(image->green_mask));
            row[4 * x + 2] = static_cast<uint8_t>((pixel & image->blue_mask) >> __builtin_ctzl(image->blue_mask));
            row[4 * x + 3] = 255;
        }
    }
    XDestroyImage(image);
    return bitmap;
}

bool HostWindow::saveScreenshot(const std::string& path) {
    Vinta::CBitmap* bitmap = capture();
    if (!bitmap) return false;
    const bool saved = bitmap->savePNG(path.c_str());
    bitmap->forget();
    return saved;
}

void HostWindow::moveTo(int x, int y) {
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, DefaultScreen(display), rootX, rootY, CurrentTime);
    XFlush(display);
}

void HostWindow::drag(EditorDoor& door, int fromX, int fromY, int toX, int toY, int steps) {
    if (!valid()) return;
    moveTo(fromX, fromY);
    run(door, 60);
    XTestFakeButtonEvent(display, 1, True, CurrentTime);
    XFlush(display);
    run(door, 60);
    for (int step = 1; step <= steps; ++step) {
        moveTo(fromX + (toX - fromX) * step / steps, fromY + (toY - fromY) * step / steps);
        run(door, 25);
    }
    XTestFakeButtonEvent(display, 1, False, CurrentTime);
    XFlush(display);
    run(door, 80);
}

void HostWindow::hover(EditorDoor& door, int x, int y) {
    if (!valid()) return;
    moveTo(x, y);
    run(door, 80);
}

void HostWindow::click(EditorDoor& door, int x, int y) {
    if (!valid()) return;
    moveTo(x, y);
    run(door, 40);
    XTestFakeButtonEvent(display, 1, True, CurrentTime);
    XTestFakeButtonEvent(display, 1, False, CurrentTime);
    XFlush(display);
    run(door, 80);
}

}  // namespace EditorHost
