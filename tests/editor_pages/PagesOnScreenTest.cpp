// Each page opens in the plug-in's editor, shown through the VST3 door in a virtual X server: a
// click on its tab changes the pixels where it slides in, and a second click takes it away again.
// The main panel at 100 % and 200 % and each open page are the pictures under docs/: every capture
// must match its picture in ZONFRA_DOCS, or, with ZONFRA_SCREENSHOTS naming a folder, is written
// there instead (how the pictures are made).
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

// Compares a capture with its picture, or writes it.
void matchOrWrite(Vinta::CBitmap* shot, const std::string& name) {
    const char* written = std::getenv("ZONFRA_SCREENSHOTS");
    const char* docs = std::getenv("ZONFRA_DOCS");
    if (written) {
        EXPECT_TRUE(shot->savePNG((std::string(written) + "/" + name + ".png").c_str())) << name;
        return;
    }
    if (!docs) return;
    auto* recorded = new Vinta::CBitmap((std::string(docs) + "/" + name + ".png").c_str(), true);
    ASSERT_TRUE(recorded->isValid()) << name << ".png is missing";
    ASSERT_EQ(recorded->getPixelWidth(), shot->getPixelWidth()) << name;
    ASSERT_EQ(recorded->getPixelHeight(), shot->getPixelHeight()) << name;
    const CRect all(0, 0, shot->getPixelWidth(), shot->getPixelHeight());
    EXPECT_LT(changedShare(shot, recorded, all), 0.01)
        << "docs/" << name << ".png is out of date: run this test with ZONFRA_SCREENSHOTS=<docs folder>";
    recorded->forget();
}

TEST(PagesOnScreen, EachPageSlidesInWhereItStandsAndOutAgain) {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    const char* plugin = std::getenv("ZONFRA_PLUGIN");
    if (!plugin) GTEST_SKIP() << "ZONFRA_PLUGIN names no plug-in";
    char pattern[] = "/tmp/zonfra-editor-pages-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    setenv("XDG_CONFIG_HOME", pattern, 1);
    Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", "100");
    auto door = makeDoor("vst3");
    ASSERT_TRUE(door && door->load(plugin)) << (door ? door->error() : "no door");
    HostWindow window(kWidth, kHeight);
    ASSERT_TRUE(door->openEditor(window.getWindow())) << door->error();
    window.run(*door, 500);
    Vinta::CBitmap* panel = window.capture();
    matchOrWrite(panel, "editor-main");
    panel->forget();

    for (const ZonfraPages::PageRow& page : ZonfraPages::kPageRows) {
        SCOPED_TRACE(page.title);
        const CRect tab = inPanel(page.tabRect), full = inPanel(page.openRect);
        const int x = static_cast<int>(tab.getCenter().x), y = static_cast<int>(tab.getCenter().y);
        Vinta::CBitmap* shut = window.capture();
        window.click(*door, x, y);
        window.run(*door, kSlideMilliseconds);
        Vinta::CBitmap* open = window.capture();
        matchOrWrite(open, std::string("editor-page-") + page.name);
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

    // An editor takes the stored scale when its effect is made.
    Core::writeSetting(Core::makeKeyName("MORVANDEL", "zonfraQT"), "GuiScale", "200");
    auto sharp = makeDoor("vst3");
    ASSERT_TRUE(sharp->load(plugin)) << sharp->error();
    HostWindow large(2 * kWidth, 2 * kHeight);
    ASSERT_TRUE(sharp->openEditor(large.getWindow())) << sharp->error();
    large.run(*sharp, 500);
    panel = large.capture();
    matchOrWrite(panel, "editor-main-200");
    panel->forget();
    sharp->closeEditor();
    std::filesystem::remove_all(pattern);
}

}  // namespace
