#pragma once
// Files dropped onto the editor from a file manager (the XDND protocol, text/uri-list), handed to
// the view under the pointer as the tree's drag events; a drop it leaves goes to the frame's
// handler for unclaimed drops.
#include <X11/Xlib.h>

#include "lib/views/VintaTypes.h"

namespace Vinta {
class CDragContainer;
class CView;
}  // namespace Vinta

namespace Vinta::X11 {

class X11Frame;

class X11DropTarget {
public:
    explicit X11DropTarget(X11Frame& frame);
    ~X11DropTarget();
    X11DropTarget(const X11DropTarget&) = delete;
    X11DropTarget& operator=(const X11DropTarget&) = delete;

    // True for the protocol's messages and the selection that carries the dropped list.
    bool handleEvent(XEvent& event);

private:
    void onPosition(const XClientMessageEvent& message);
    void onDrop(const XClientMessageEvent& message);
    void onSelection(const XSelectionEvent& selection);
    void reply(Atom type, long accepted, long action);
    CView* viewAt(CPoint& where) const;
    void leave();

    X11Frame& frame;
    Display* display;
    Window window;
    Atom aware, enter, position, status, leaveAtom, drop, finished, selectionAtom, typeList, uriList, actionCopy,
        property;
    Window source = 0;
    bool offersFiles = false;
    CPoint lastPoint{-1.0, -1.0};
    CDragContainer* current = nullptr;
};

}  // namespace Vinta::X11
