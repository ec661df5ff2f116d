#pragma once
// The host's side of the screen: a top-level X11 window that parents the editor, its pixels, and
// pointer input sent through XTest as a user would.
#include <string>

struct _XDisplay;

namespace Vinta {
class CBitmap;
}

namespace EditorHost {

class EditorDoor;

class HostWindow {
public:
    // Opens a display of its own; `valid()` is false without one.
    HostWindow(int width, int height, int left = 0, const char* title = "zonfra-editor-host");
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    bool valid() const { return display != nullptr && window != 0; }
    unsigned long getWindow() const { return window; }
    void resize(int width, int height);
    // Size of the editor's window inside this one (the first child), false without one.
    bool childSize(int& width, int& height);

    // Turns of the host's loop for `milliseconds`: the door's idle and this window's events.
    void run(EditorDoor& door, int milliseconds);
    // The window's pixels as the screen shows them; the caller forgets the bitmap.
    Vinta::CBitmap* capture();
    bool saveScreenshot(const std::string& path);

    // Pointer input in window pixels, with the host's loop turning between the steps.
    void drag(EditorDoor& door, int fromX, int fromY, int toX, int toY, int steps = 12);
    void click(EditorDoor& door, int x, int y);
    void hover(EditorDoor& door, int x, int y);

private:
    void moveTo(int x, int y);
    void drainEvents();

    _XDisplay* display = nullptr;
    unsigned long window = 0;
};

}  // namespace EditorHost
