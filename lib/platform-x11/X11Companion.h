#pragma once
// Something of ours that lives beside the frame's window (text field, menu, a dialog program):
// the frame hands it every event first, gives it a turn on each pump, and tells it when the
// connection goes so that it lets go of what it holds.
#include <X11/Xlib.h>

namespace Vinta::X11 {

class X11Companion {
public:
    virtual ~X11Companion() = default;
    // True when the event was for this companion.
    virtual bool handleEvent(XEvent& event) = 0;
    // One turn on the frame's thread after the events of a pump; it may leave the frame from here.
    virtual void service() {}
    // The connection closes: free X resources now; later calls do nothing.
    virtual void detach() = 0;
    // While true the frame's own window takes no input (a menu is up).
    virtual bool isModal() const { return false; }
};

}  // namespace Vinta::X11
