// The plug-in's editor through the VST3 door in a virtual X server: a right click on the browser
// opens the menu, the keyboard walks into the category's sub-menu, and its preset loads.
#include <chrono>
#include <thread>

#include "CORE/files/Settings.h"
#include "editor_presets/PresetFolderFixture.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
// After gtest: Xlib defines None.
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

TEST_F(PresetFolder, OnScreenAPresetChosenFromASubMenuLoads) {
    const char* plugin = std::getenv("ZONFRA_PLUGIN");
    if (!std::getenv("DISPLAY") || !plugin) GTEST_SKIP() << "needs xvfb-run and ZONFRA_PLUGIN";
    saveWithCutoff((folder / "Bass/Deep").string(), 0.15f);
    saveWithCutoff("Top", 0.85f);
    Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", "100");
    Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "PresetFolder", folder.string());
    auto door = EditorHost::makeDoor("vst3");
    ASSERT_TRUE(door && door->load(plugin)) << (door ? door->error() : "no door");
    EditorHost::HostWindow window(534, 488);
    ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
    const int lowCutoff = door->findParameter("LowPass Frequency");
    ASSERT_GE(lowCutoff, 0);
    door->setParameter(lowCutoff, 0.5);
    window.run(*door, 400);

    // Up from no row reaches the last row (the top-level preset), once more the category; the
    // closing Escapes shut whatever a wrong step left open, so a fault fails instead of hanging.
    std::thread keys([host = window.getWindow()] {
        Display* display = XOpenDisplay(nullptr);
        int x = 0, y = 0;  // the browser, on the root window
        Window child = 0;
        XTranslateCoordinates(display, host, DefaultRootWindow(display), 250, 22, &x, &y, &child);
        XTestFakeMotionEvent(display, -1, x, y, CurrentTime);
        for (KeySym key : {KeySym(0), KeySym(XK_Up), KeySym(XK_Up), KeySym(XK_Right), KeySym(XK_Return),
                           KeySym(XK_Escape), KeySym(XK_Escape)}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(250));
            for (Bool down : {True, False})  // a right click first, then the keys
                key ? XTestFakeKeyEvent(display, XKeysymToKeycode(display, key), down, 0)
                    : XTestFakeButtonEvent(display, 3, down, 0);
            XFlush(display);
        }
        XCloseDisplay(display);
    });
    window.run(*door, 2500);
    keys.join();
    window.run(*door, 200);
    EXPECT_NEAR(door->getParameter(lowCutoff), 0.15, 1e-3);
    door->closeEditor();
}
