// The plug-in's editor through the VST3 door in a virtual X server, used the way a person does:
// a right click on the browser opens the menu, the pointer walks into the category's sub-menu and
// picks its preset; a rename goes through the name box; a preset file dropped anywhere loads;
// "Save Preset as.." puts up the desktop's chooser (a stub here) while the host's loop goes on, and
// the editor closing takes it along.
#include <signal.h>

#include <atomic>
#include <cerrno>

#include "CORE/files/Settings.h"
#include "editor_presets/PresetFolderFixture.h"
#include "lib_platform/X11TestTools.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
#include "tools/editor-host/InputScript.h"

namespace {

using namespace PlatformTest;
using EditorHost::InputStep;
using Kind = InputStep::Kind;

struct OnScreen : PresetFolder {
    std::unique_ptr<EditorHost::EditorDoor> door;
    std::unique_ptr<EditorHost::HostWindow> window;
    int lowCutoff = -1;

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
        lowCutoff = door->findParameter("LowPass Frequency");
        ASSERT_GE(lowCutoff, 0);
        door->setParameter(lowCutoff, 0.5);
        window->run(*door, 200);
    }
    // Turns the host's loop until `done`; false after five seconds.
    bool runUntil(const std::function<bool()>& done) {
        return waitFor([&] {
            window->run(*door, 20);
            return done();
        });
    }
    // A right click on the browser, then a left click on the row `rowTop` pixels down the menu
    // (rows are 18 pixels, separators 7), and on the first row of its sub-menu when `intoSubMenu`.
    // Runs on a thread of its own while the host's loop turns.
    void pickFromMenu(int rowTop, bool intoSubMenu) {
        std::atomic<bool> sent{false};
        std::thread person([&, host = window->getWindow()] {
            EditorHost::InputScript hand(host);
            Display* display = XOpenDisplay(nullptr);
            std::vector<Popup> shown;
            hand.send({Kind::RightClick, 250, 22, {}});
            if (waitFor([&] { return (shown = popups(display)).size() == 1; })) {
                const XWindowAttributes menu = shown[0].shape;
                hand.send({intoSubMenu ? Kind::Move : Kind::Click, menu.x + 30, menu.y + rowTop + 9, {}});
                if (intoSubMenu && waitFor([&] { return (shown = popups(display)).size() == 2; })) {
                    const XWindowAttributes sub = shown[1].shape;
                    hand.send({Kind::Move, sub.x + 30, sub.y + 9, {}});
                    hand.send({Kind::Click, sub.x + 30, sub.y + 9, {}});
                }
            }
            // Whatever a wrong step left open goes, so a fault fails instead of hanging.
            if (!waitFor([&] { return popups(display).empty(); }, 1500))
                for (int level = 0; level < 2; ++level) hand.send({Kind::Key, 0, 0, "Escape"});
            XCloseDisplay(display);
            sent = true;
        });
        while (!sent.load()) window->run(*door, 20);
        person.join();
    }
    // Drops `file` at host-window point (x, y) as a file manager does; true when the editor took it.
    bool dropFile(const fs::path& file, int x, int y) {
        Display* display = XOpenDisplay(nullptr);
        const Window host = window->getWindow();
        Window editor = 0, child = 0;  // the editor's window is the host's child under the point
        int rootX = 0, rootY = 0;
        XTranslateCoordinates(display, host, host, x, y, &rootX, &rootY, &editor);
        XTranslateCoordinates(display, host, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
        const bool taken = dropFiles(display, editor, rootX, rootY, "file://" + file.string() + "\r\n",
                                     [&] { window->run(*door, 10); });
        XCloseDisplay(display);
        return taken;
    }
};

TEST_F(OnScreen, APresetPickedWithThePointerFromASubMenuLoads) {
    saveWithCutoff((folder / "Bass/Deep").string(), 0.15f);
    saveWithCutoff("Top", 0.85f);
    open();
    if (IsSkipped() || HasFatalFailure()) return;
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
    EXPECT_TRUE(runUntil([&] { return fs::exists(folder / "renamed.fxp"); }));
    EXPECT_FALSE(fs::exists(folder / "One.fxp"));
    door->closeEditor();
}

TEST_F(OnScreen, APresetFileDroppedAnywhereOnTheEditorLoadsAndOtherFilesAreLeft) {
    saveWithCutoff((home.root / "Elsewhere" / "Dropped").string(), 0.15f);
    writeAll(home.root / "Elsewhere" / "notes.txt", "not a preset");
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    // The footer, far from the browser's arrows.
    EXPECT_FALSE(dropFile(home.root / "Elsewhere" / "notes.txt", 267, 470));
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.5, 1e-3);
    EXPECT_TRUE(dropFile(home.root / "Elsewhere" / "Dropped.fxp", 267, 470));
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.15, 1e-3);
    door->closeEditor();
}

struct SaveAsChooser : OnScreen, ::testing::WithParamInterface<bool> {
    ChooserStub stub;
};

TEST_P(SaveAsChooser, TheHostsLoopGoesOnWhileItIsUpAndTheAnswerSavesOrTheEditorTakesItAlong) {
    open();
    if (IsSkipped() || HasFatalFailure()) return;
    pickFromMenu(18, false);  // "Save Preset as.."
    ASSERT_TRUE(runUntil([&] { return stub.pid() > 0; }));
    window->run(*door, 300);  // returns while the chooser is up: nothing waits inside the host's call
    const pid_t child = stub.pid();
    EXPECT_EQ(kill(child, 0), 0) << "the chooser was gone when the host got its loop back";
    if (GetParam()) {  // the editor closes with the chooser up
        door->closeEditor();
        EXPECT_TRUE(kill(child, 0) != 0 && errno == ESRCH);
        return;
    }
    stub.answer((folder / "Chosen.fxp").string() + "\n");
    EXPECT_TRUE(runUntil([&] { return fs::exists(folder / "Chosen.fxp"); }));
    door->closeEditor();
}

INSTANTIATE_TEST_SUITE_P(AnswerOrClose, SaveAsChooser, ::testing::Values(false, true));

}  // namespace
