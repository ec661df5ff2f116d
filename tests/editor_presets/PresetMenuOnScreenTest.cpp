// The plug-in's editor through the VST3 door in a virtual X server, used the way a person does:
// a right click on the browser opens the menu, the pointer walks into the category's sub-menu and
// picks its preset; "Save Preset as.." puts up the desktop's chooser (a stub here) while the host's
// loop goes on, and the editor closing takes the chooser along.
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
        door = EditorHost::makeDoor("vst3");
        ASSERT_TRUE(door && door->load(plugin)) << (door ? door->error() : "no door");
        window = std::make_unique<EditorHost::HostWindow>(534, 488);
        ASSERT_TRUE(door->openEditor(window->getWindow())) << door->error();
        window->run(*door, 400);
    }
    // A right click on the browser, then a left click on `row` of the menu (rows are 18 pixels,
    // separators 7), and on the first row of its sub-menu when `intoSubMenu`. Runs on a thread of
    // its own while the host's loop turns: the menu holds the loop inside a host call.
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
