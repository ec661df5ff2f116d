// The plug-in's editor through the VST3 door in a virtual X server, used the way a person does:
// a right click on the browser opens the menu, the pointer walks into the category's sub-menu and
// picks its preset; a rename goes through the name box; a preset file dropped anywhere loads; "Save Preset as.." puts up the desktop's
// chooser (a stub here) while the host's loop goes on, and the editor closing takes it along.
#include <signal.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <thread>

#include "CORE/files/Settings.h"
#include "editor_presets/PresetFolderFixture.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
#include "tools/editor-host/InputScript.h"
// After gtest: Xlib defines None.
#include <X11/Xlib.h>

namespace {

using EditorHost::InputStep;
using Kind = InputStep::Kind;

bool waitFor(const std::function<bool()>& done, int milliseconds = 5000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!done()) {
        if (std::chrono::steady_clock::now() > until) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

// The test's queries race with menus the editor takes down.
int ignoreRacingWindows(Display*, XErrorEvent*) { return 0; }

// The open menu levels on the screen, in stacking order (the newest last).
std::vector<XRectangle> menuLevels(Display* display) {
    std::vector<XRectangle> levels;
    Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    for (unsigned int index = 0; index < count; ++index) {
        XWindowAttributes a{};
        if (XGetWindowAttributes(display, children[index], &a) && a.override_redirect && a.map_state == IsViewable)
            levels.push_back({static_cast<short>(a.x), static_cast<short>(a.y), static_cast<unsigned short>(a.width),
                              static_cast<unsigned short>(a.height)});
    }
    if (children) XFree(children);
    return levels;
}

struct OnScreen : PresetFolder {
    std::unique_ptr<EditorHost::EditorDoor> door;
    std::unique_ptr<EditorHost::HostWindow> window;

    void open() {
        const char* plugin = std::getenv("ZONFRA_PLUGIN");
        if (!std::getenv("DISPLAY") || !plugin) GTEST_SKIP() << "needs xvfb-run and ZONFRA_PLUGIN";
        Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", "100");
        Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "PresetFolder", folder.string());
        XSetErrorHandler(ignoreRacingWindows);  // the editor's own trap passes ours on to this
        door = EditorHost::makeDoor("vst3");
        ASSERT_TRUE(door && door->load(plugin)) << (door ? door->error() : "no door");
        window = std::make_unique<EditorHost::HostWindow>(534, 488);
        ASSERT_TRUE(door->openEditor(window->getWindow())) << door->error();
        window->run(*door, 400);
    }
    // A right click on the browser, then a left click on the row `rowTop` pixels down the menu
    // (rows are 18 pixels, separators 7), and on the first row of its sub-menu when `intoSubMenu`.
    // Runs on a thread of its own while the host's loop turns.
    void pickFromMenu(int rowTop, bool intoSubMenu) {
        std::atomic<bool> sent{false};
        std::thread person([&, host = window->getWindow()] {
            EditorHost::InputScript hand(host);
            Display* display = XOpenDisplay(nullptr);
            hand.send({Kind::RightClick, 250, 22, {}});
            if (waitFor([&] { return menuLevels(display).size() == 1; })) {
                const XRectangle menu = menuLevels(display)[0];
                hand.send({intoSubMenu ? Kind::Move : Kind::Click, menu.x + 30, menu.y + rowTop + 9, {}});
                if (intoSubMenu && waitFor([&] { return menuLevels(display).size() == 2; })) {
                    const XRectangle sub = menuLevels(display)[1];
                    hand.send({Kind::Move, sub.x + 30, sub.y + 9, {}});
                    hand.send({Kind::Click, sub.x + 30, sub.y + 9, {}});
                }
            }
            // Whatever a wrong step left open goes, so a fault fails instead of hanging.
            if (!waitFor([&] { return menuLevels(display).empty(); }, 1500))
                for (int level = 0; level < 2; ++level) hand.send({Kind::Key, 0, 0, "Escape"});
            XCloseDisplay(display);
            sent = true;
        });
        while (!sent.load()) window->run(*door, 20);
        person.join();
    }
};

TEST_F(OnScreen, APresetPickedWithThePointerFromASubMenuLoads) {
    saveWithCutoff((folder / "Bass/Deep").string(), 0.15f);
    saveWithCutoff("Top", 0.85f);
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    const int lowCutoff = door->findParameter("LowPass Frequency");
    ASSERT_GE(lowCutoff, 0);
    door->setParameter(lowCutoff, 0.5);
    window->run(*door, 200);
    pickFromMenu(6 * 18 + 3 * 7, true);  // "Bass", behind the fixed rows and their separators
    window->run(*door, 200);
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.15, 1e-3);
    door->closeEditor();
}

TEST_F(OnScreen, RenamingThroughTheNameBoxRenamesTheFile) {
    saveWithCutoff("One", 0.3f);
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    pickFromMenu(6 * 18 + 3 * 7, false);  // "1 - One" becomes current
    pickFromMenu(3 * 18 + 7, false);      // "Rename Preset" opens the name box
    EditorHost::InputScript hand(window->getWindow());
    window->run(*door, 200);
    hand.send({Kind::Type, 0, 0, "renamed"});  // the field starts with all of the old name selected
    hand.send({Kind::Key, 0, 0, "Return"});
    EXPECT_TRUE(waitFor([&] {
        window->run(*door, 20);
        return fs::exists(folder / "renamed.fxp");
    }));
    EXPECT_FALSE(fs::exists(folder / "One.fxp"));
    door->closeEditor();
}

// Drops `file` at host-window point (x, y) the way a file manager does (XDND with a uri list)
// while the host's loop turns; true when the editor said it took the drop.
bool dropFile(EditorHost::EditorDoor& door, EditorHost::HostWindow& window, const std::string& file, int x, int y) {
    Display* display = XOpenDisplay(nullptr);
    const auto atom = [&](const char* name) { return XInternAtom(display, name, False); };
    Window root = 0, parent = 0, *children = nullptr, target = 0;
    unsigned int count = 0;
    XQueryTree(display, window.getWindow(), &root, &parent, &children, &count);
    if (count > 0) target = children[0];  // the editor's window
    if (children) XFree(children);
    const Window source = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 10, 10, 0, 0, 0);
    XSetSelectionOwner(display, atom("XdndSelection"), source, CurrentTime);
    const auto send = [&](const char* type, long l1, long l2, long l3) {
        XEvent event{};
        event.xclient = {ClientMessage, 0, True, display, target, atom(type), 32, {}};
        event.xclient.data.l[0] = static_cast<long>(source);
        event.xclient.data.l[1] = l1;
        event.xclient.data.l[2] = l2;
        event.xclient.data.l[3] = l3;
        XSendEvent(display, target, False, NoEventMask, &event);
        XFlush(display);
    };
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window.getWindow(), DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    send("XdndEnter", 5L << 24, static_cast<long>(atom("text/uri-list")), 0);
    send("XdndPosition", 0, (static_cast<long>(rootX) << 16) | rootY, CurrentTime);
    send("XdndDrop", 0, CurrentTime, 0);
    const std::string list = "file://" + file + "\r\n";
    bool finished = false, accepted = false;
    waitFor([&] {
        window.run(door, 10);
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == SelectionRequest) {
                const XSelectionRequestEvent& request = event.xselectionrequest;
                XChangeProperty(display, request.requestor, request.property, request.target, 8, PropModeReplace,
                                reinterpret_cast<const unsigned char*>(list.data()), static_cast<int>(list.size()));
                XEvent reply{};
                reply.xselection = {SelectionNotify, 0, True, display, request.requestor, request.selection,
                                    request.target, request.property, request.time};
                XSendEvent(display, request.requestor, False, NoEventMask, &reply);
                XFlush(display);
            } else if (event.type == ClientMessage && event.xclient.message_type == atom("XdndFinished")) {
                finished = true;
                accepted = event.xclient.data.l[1] & 1;
            }
        }
        return finished;
    });
    XDestroyWindow(display, source);
    XCloseDisplay(display);
    return accepted;
}

TEST_F(OnScreen, APresetFileDroppedAnywhereOnTheEditorLoadsAndOtherFilesAreLeft) {
    saveWithCutoff((home.root / "Elsewhere" / "Dropped").string(), 0.15f);
    writeAll(home.root / "Elsewhere" / "notes.txt", "not a preset");
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    const int lowCutoff = door->findParameter("LowPass Frequency");
    ASSERT_GE(lowCutoff, 0);
    door->setParameter(lowCutoff, 0.5);
    window->run(*door, 100);
    EXPECT_FALSE(dropFile(*door, *window, (home.root / "Elsewhere" / "notes.txt").string(), 267, 470));
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.5, 1e-3);
    // The footer, far from the browser's arrows.
    EXPECT_TRUE(dropFile(*door, *window, (home.root / "Elsewhere" / "Dropped.fxp").string(), 267, 470));
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.15, 1e-3);
    door->closeEditor();
}

// A zenity on PATH that tells its pid, then answers what the test leaves in a file; it gives up
// (a cancel) after five seconds.
class SaveAsChooser : public OnScreen, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        OnScreen::SetUp();
        fs::create_directories(home.root / "bin");
        stub = (home.root / "bin" / "zenity").string();
        std::ofstream(stub) << "#!/bin/sh\necho $$ > \"$0.pid\"\nfor i in $(seq 250); do\n"
                            << "  [ -e \"$0.answer\" ] && exec cat \"$0.answer\"\n  sleep 0.02\ndone\nexit 1\n";
        chmod(stub.c_str(), 0755);
        oldPath = std::getenv("PATH");
        setenv("PATH", ((home.root / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
        unsetenv("KDE_FULL_SESSION");
        setenv("XDG_CURRENT_DESKTOP", "GNOME", 1);
    }
    void TearDown() override { setenv("PATH", oldPath.c_str(), 1); }
    pid_t chooser() const {
        std::ifstream file(stub + ".pid");
        pid_t pid = 0;
        file >> pid;
        return pid;
    }

    std::string stub, oldPath;
};

TEST_P(SaveAsChooser, TheHostsLoopGoesOnWhileItIsUpAndTheAnswerSavesOrTheEditorTakesItAlong) {
    const bool closeWhileUp = GetParam();
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    pickFromMenu(18, false);  // "Save Preset as.."
    ASSERT_TRUE(waitFor([&] {
        window->run(*door, 20);
        return chooser() > 0;
    }));
    window->run(*door, 300);  // returns while the chooser is up: nothing waits inside the host's call
    const pid_t child = chooser();
    EXPECT_EQ(kill(child, 0), 0) << "the chooser was gone when the host got its loop back";
    if (closeWhileUp) {
        door->closeEditor();
        EXPECT_TRUE(kill(child, 0) != 0 && errno == ESRCH);
        return;
    }
    const fs::path target = folder / "Chosen.fxp";
    writeAll(stub + ".part", target.string() + "\n");
    fs::rename(stub + ".part", stub + ".answer");
    EXPECT_TRUE(waitFor([&] {
        window->run(*door, 20);
        return fs::exists(target);
    }));
    door->closeEditor();
}

INSTANTIATE_TEST_SUITE_P(AnswerOrClose, SaveAsChooser, ::testing::Values(false, true));

}  // namespace
