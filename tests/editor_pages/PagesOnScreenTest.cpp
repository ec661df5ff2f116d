// Each page opens in the plug-in's editor, shown through the VST3 door in a virtual X server: a
// click on its tab changes the pixels where it slides in, and a second click takes it away again.
// With ZONFRA_PAGE_SHOTS naming a folder, the open pages are written there as
// editor-page-<name>.png (the pictures under docs/).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "CORE/files/Settings.h"
#include "editor/pages/PageLayouts.h"
#include "lib/drawing/CBitmap.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"

namespace {

using namespace EditorHost;
using Vinta::CRect;

constexpr int kWidth = 534, kHeight = 488;
constexpr int kSlideMilliseconds = 900;

CRect inPanel(const CRect& rect) {
    return {rect.left + ZonfraPages::kDisplayRect.left, rect.top + ZonfraPages::kDisplayRect.top,
            rect.right + ZonfraPages::kDisplayRect.left, rect.bottom + ZonfraPages::kDisplayRect.top};
}

double changedShare(Vinta::CBitmap* a, Vinta::CBitmap* b, const CRect& area) {
    int changed = 0, all = 0;
    for (auto y = static_cast<uint32_t>(area.top); y < area.bottom; ++y)
        for (auto x = static_cast<uint32_t>(area.left); x < area.right; ++x, ++all)
            changed += a->getPixel(x, y) == b->getPixel(x, y) ? 0 : 1;
    return all ? static_cast<double>(changed) / all : 0.0;
}

TEST(PagesOnScreen, EachPageSlidesInWhereItStandsAndOutAgain) {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    const char* plugin = std::getenv("ZONFRA_PLUGIN");
    if (!plugin) GTEST_SKIP() << "ZONFRA_PLUGIN names no plug-in";
    char pattern[] = "/tmp/zonfra-editor-pages-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    setenv("XDG_CONFIG_HOME", pattern, 1);
    Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", "100");
    const char* shots = std::getenv("ZONFRA_PAGE_SHOTS");

    auto door = makeDoor("vst3");
    ASSERT_TRUE(door && door->load(plugin)) << (door ? door->error() : "no door");
    HostWindow window(kWidth, kHeight);
    ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
    window.run(*door, 500);

    for (const ZonfraPages::PageRow& page : ZonfraPages::kPageRows) {
        SCOPED_TRACE(page.title);
        const CRect tab = inPanel(page.tabRect), full = inPanel(page.openRect);
        const int x = static_cast<int>(tab.getCenter().x), y = static_cast<int>(tab.getCenter().y);
        Vinta::CBitmap* shut = window.capture();
        window.click(*door, x, y);
        window.run(*door, kSlideMilliseconds);
        Vinta::CBitmap* open = window.capture();
        if (shots) open->savePNG((std::string(shots) + "/editor-page-" + page.name + ".png").c_str());
        window.click(*door, x, y);
        window.run(*door, kSlideMilliseconds);
        Vinta::CBitmap* shutAgain = window.capture();

        const CRect below(full.left, tab.bottom <= full.top + 16 ? tab.bottom : full.top, full.right,
                          tab.bottom <= full.top + 16 ? full.bottom : tab.top);
        EXPECT_GT(changedShare(shut, open, below), 0.3) << "the page did not slide in";
        EXPECT_LT(changedShare(shut, shutAgain, below), 0.05) << "the page did not slide out";
        shut->forget();
        open->forget();
        shutAgain->forget();
    }
    door->closeEditor();
    std::filesystem::remove_all(pattern);
}

}  // namespace
