#include "lib/platform-x11/X11DropTarget.h"

#include <X11/Xatom.h>

#include <string>

#include "lib/platform-x11/CDragContainer.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/views/CFrame.h"

namespace Vinta::X11 {

namespace {
constexpr long kProtocolVersion = 5;
}

X11DropTarget::X11DropTarget(X11Frame& owner)
    : frame(owner), display(owner.getDisplay()), window(owner.getWindow()) {
    const auto atom = [this](const char* name) { return XInternAtom(display, name, False); };
    aware = atom("XdndAware");
    enter = atom("XdndEnter");
    position = atom("XdndPosition");
    status = atom("XdndStatus");
    leaveAtom = atom("XdndLeave");
    drop = atom("XdndDrop");
    finished = atom("XdndFinished");
    selectionAtom = atom("XdndSelection");
    typeList = atom("XdndTypeList");
    uriList = atom("text/uri-list");
    actionCopy = atom("XdndActionCopy");
    property = atom("ZONFRA_DROP");
    const long version = kProtocolVersion;
    XChangeProperty(display, window, aware, XA_ATOM, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&version),
                    1);
}

X11DropTarget::~X11DropTarget() {
    if (current) current->forget();
}

void X11DropTarget::reply(Atom type, long accepted, long action) {
    if (!source) return;
    XEvent answer{};
    answer.xclient.type = ClientMessage;
    answer.xclient.display = display;
    answer.xclient.window = source;
    answer.xclient.message_type = type;
    answer.xclient.format = 32;
    answer.xclient.data.l[0] = static_cast<long>(window);
    answer.xclient.data.l[1] = accepted;
    answer.xclient.data.l[4] = action;
    if (type == finished) answer.xclient.data.l[2] = action;
    XSendEvent(display, source, False, NoEventMask, &answer);
    XFlush(display);
}

CView* X11DropTarget::viewAt(CPoint& where) const {
    CFrame* tree = frame.getFrame();
    if (!tree) return nullptr;
    CView* view = tree->getViewAt(where, true);
    if (view) view->frameToLocal(where);
    return view ? view : tree;
}

void X11DropTarget::leave() {
    if (current) {
        CPoint where = lastPoint;
        if (CView* view = viewAt(where)) view->onDragLeave(current, where);
        current->forget();
        current = nullptr;
    }
    source = 0;
    offersFiles = false;
    lastPoint = CPoint(-1.0, -1.0);
}

bool X11DropTarget::handleEvent(XEvent& event) {
    if (event.type == SelectionNotify && event.xselection.requestor == window &&
        event.xselection.selection == selectionAtom) {
        onSelection(event.xselection);
        return true;
    }
    if (event.type != ClientMessage || event.xclient.window != window) return false;
    const XClientMessageEvent& message = event.xclient;
    if (message.message_type == enter) {
        leave();
        source = static_cast<Window>(message.data.l[0]);
        if (message.data.l[1] & 1) {
            Atom type = 0;
            int format = 0;
            unsigned long count = 0, remaining = 0;
            unsigned char* data = nullptr;
            if (XGetWindowProperty(display, source, typeList, 0, 64, False, XA_ATOM, &type, &format, &count, &remaining,
                                   &data) == Success && data) {
                const auto* types = reinterpret_cast<const Atom*>(data);
                for (unsigned long index = 0; index < count; ++index) offersFiles |= types[index] == uriList;
                XFree(data);
            }
        } else {
            for (int index = 2; index < 5; ++index) offersFiles |= static_cast<Atom>(message.data.l[index]) == uriList;
        }
        current = new CDragContainer;
    } else if (message.message_type == position) {
        onPosition(message);
    } else if (message.message_type == leaveAtom) {
        leave();
    } else if (message.message_type == drop) {
        onDrop(message);
    } else {
        return false;
    }
    return true;
}

void X11DropTarget::onPosition(const XClientMessageEvent& message) {
    if (!current) return;
    const int rootX = static_cast<int>((message.data.l[2] >> 16) & 0xffff);
    const int rootY = static_cast<int>(message.data.l[2] & 0xffff);
    int x = 0, y = 0;
    Window child = 0;
    XTranslateCoordinates(display, DefaultRootWindow(display), window, rootX, rootY, &x, &y, &child);
    const double scale = frame.getScale();
    const bool first = lastPoint.x < 0.0;
    lastPoint = CPoint(x / scale, y / scale);
    CPoint where = lastPoint;
    if (CView* view = viewAt(where)) {
        if (first)
            view->onDragEnter(current, where);
        else
            view->onDragMove(current, where);
    }
    reply(status, offersFiles ? 1 : 0, offersFiles ? static_cast<long>(actionCopy) : 0);
}

void X11DropTarget::onDrop(const XClientMessageEvent& message) {
    if (!offersFiles) {
        reply(finished, 0, 0);
        leave();
        return;
    }
    XConvertSelection(display, selectionAtom, uriList, property, window, static_cast<Time>(message.data.l[2]));
    XFlush(display);
}

void X11DropTarget::onSelection(const XSelectionEvent& selection) {
    std::string list;
    if (selection.property != None) {
        Atom type = 0;
        int format = 0;
        unsigned long count = 0, remaining = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(display, window, property, 0, 1 << 20, True, AnyPropertyType, &type, &format, &count,
                               &remaining, &data) == Success && data) {
            list.assign(reinterpret_cast<const char*>(data), count);
            XFree(data);
        }
    }
    CDragContainer* dropped = CDragContainer::fromUriList(list);
    CPoint where = lastPoint;
    bool taken = false;
    if (CView* view = viewAt(where)) taken = view->onDrop(dropped, where);
    if (!taken && frame.getFrame()) taken = frame.getFrame()->offerUnclaimedDrop(dropped);
    dropped->forget();
    reply(finished, taken ? 1 : 0, taken ? static_cast<long>(actionCopy) : 0);
    if (current) current->forget();
    current = nullptr;
    source = 0;
    offersFiles = false;
    lastPoint = CPoint(-1.0, -1.0);
}

}  // namespace Vinta::X11
