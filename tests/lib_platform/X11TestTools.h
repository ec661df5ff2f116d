#pragma once
// What the window tests do as other X clients: wait, find the menus and the focus, drop files the
// way a file manager does, and stand in for the desktop's file chooser. Include after gtest: Xlib
// defines None and Bool as macros.
#include <X11/Xlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>
#include <vector>

namespace PlatformTest {

// Polls until `done` or the time is up (a loaded machine paints slowly).
inline bool waitFor(const std::function<bool()>& done, int milliseconds = 5000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    for (; !done(); std::this_thread::sleep_for(std::chrono::milliseconds(5)))
        if (std::chrono::steady_clock::now() > until) return false;
    return true;
}

// The test's own queries may race with windows the editor takes down (a menu closing).
inline int ignoreRacingWindows(Display*, XErrorEvent*) { return 0; }

// The menus on the screen (mapped override-redirect windows), in stacking order: the newest last.
struct Popup {
    Window window;
    XWindowAttributes shape;
};
inline std::vector<Popup> popups(Display* display) {
    std::vector<Popup> shown;
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned int index = 0; index < count; ++index) {
        XWindowAttributes shape{};
        if (XGetWindowAttributes(display, children[index], &shape) && shape.override_redirect &&
            shape.map_state == IsViewable)
            shown.push_back({children[index], shape});
    }
    if (children) XFree(children);
    return shown;
}

inline Window inputFocus(Display* display) {
    Window focus = 0;
    int revert = 0;
    XGetInputFocus(display, &focus, &revert);
    return focus;
}

// Drops `uriList` on `target` at root point (x, y) through XDND, serving the list from a window of
// `display`; `turn` runs between polls (a host's loop). True when the target said it took the drop.
inline bool dropFiles(Display* display, Window target, int x, int y, const std::string& uriList,
                      const std::function<void()>& turn = [] {}) {
    const auto atom = [&](const char* name) { return XInternAtom(display, name, False); };
    const Window source = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
    XSetSelectionOwner(display, atom("XdndSelection"), source, CurrentTime);
    const auto send = [&](Window to, XEvent event) {
        XSendEvent(display, to, False, NoEventMask, &event);
        XFlush(display);
    };
    const auto message = [&](const char* type, long l1, long l2, long l3) {
        const long data[5] = {static_cast<long>(source), l1, l2, l3, 0};
        XEvent event{};
        event.xclient = {ClientMessage, 0, True, display, target, atom(type), 32, {}};
        std::copy(data, data + 5, event.xclient.data.l);
        send(target, event);
    };
    message("XdndEnter", 5L << 24, static_cast<long>(atom("text/uri-list")), 0);
    message("XdndPosition", 0, (static_cast<long>(x) << 16) | y, CurrentTime);
    message("XdndDrop", 0, CurrentTime, 0);
    bool finished = false, accepted = false;
    waitFor([&] {
        turn();
        for (XEvent event; XPending(display);) {
            XNextEvent(display, &event);
            if (event.type == SelectionRequest) {
                const XSelectionRequestEvent& request = event.xselectionrequest;
                const auto* bytes = reinterpret_cast<const unsigned char*>(uriList.data());
                XChangeProperty(display, request.requestor, request.property, request.target, 8, PropModeReplace,
                                bytes, static_cast<int>(uriList.size()));
                XEvent reply{};
                reply.xselection = {SelectionNotify, 0, True, display, request.requestor, request.selection,
                                    request.target, request.property, request.time};
                send(request.requestor, reply);
            } else if (event.type == ClientMessage && event.xclient.message_type == atom("XdndFinished")) {
                finished = true;
                accepted = event.xclient.data.l[1] & 1;
            }
        }
        return finished;
    });
    XDestroyWindow(display, source);
    return accepted;
}

// A zenity first on PATH, in a folder of its own, that keeps its arguments and pid beside it and
// prints what the test leaves as its answer: a path, or nothing for a cancel. After ten seconds
// without one it gives up as a cancel.
struct ChooserStub {
    ChooserStub() {
        std::ofstream(stub) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.args\"\necho $$ > \"$0.pid\"\n"
                            << "for i in $(seq 500); do\n  [ -e \"$0.answer\" ] && { cat \"$0.answer\"; "
                            << "[ -s \"$0.answer\" ]; exit; }\n  sleep 0.02\ndone\nexit 1\n";
        chmod(stub.c_str(), 0755);
        setenv("PATH", (folder.string() + ":/usr/bin:/bin").c_str(), 1);
        unsetenv("KDE_FULL_SESSION");
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
    }
    ~ChooserStub() {
        setenv("PATH", oldPath.c_str(), 1);
        std::filesystem::remove_all(folder);
    }
    void answer(const std::string& text) const {
        std::ofstream(stub + ".part") << text;
        std::rename((stub + ".part").c_str(), (stub + ".answer").c_str());
    }
    std::string read(const char* suffix) const {
        std::stringstream content;
        content << std::ifstream(stub + suffix).rdbuf();
        return content.str();
    }
    pid_t pid() const { return static_cast<pid_t>(std::atol(read(".pid").c_str())); }

    std::filesystem::path folder = [] {
        char name[] = "/tmp/zonfra-chooser-XXXXXX";
        return std::string(mkdtemp(name));
    }();
    std::string stub = (folder / "zenity").string(), oldPath = std::getenv("PATH");
};

}  // namespace PlatformTest
