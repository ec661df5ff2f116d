// The update client in the plug-in's editor, opened through the VST3 door in a virtual X server
// against a local server: badge, question and meter appear where they stand, "OK" clicked like a
// person fetches the checked file to the desktop, closing the editor ends a download at once, and
// with UpdateCheck "0" nothing shows and nothing is asked. ZONFRA_UPDATE_SHOT=FILE.png writes the
// badge and the question side by side (docs/editor-update.png).
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "CORE/files/Settings.h"
#include "core_files/TempHome.h"
#include "lib/drawing/CBitmap.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
#include "update/LocalServer.h"
#include "update/Sha256.h"

namespace {

using namespace std::chrono_literals;
using Vinta::CBitmap;
using Vinta::CRect;

const CRect kBadge(219, 450, 319, 488), kBox(17, 144, 517, 344), kMeter(414, 438, 534, 488);
const std::string kInstaller(64 * 1024, 'z');

struct Screen {
    explicit Screen(const char* checks = "1") {
        server.answer([](const httplib::Request& request, httplib::Response& response) {
            if (request.path == "/update_available.php")
                return response.set_content("UPDATE=1\nSHA256=" + Resko::CSha256::hexDigest(kInstaller.data(), kInstaller.size()) +
                                                "\nURL=http://" + request.get_header_value("Host") + "/files/setup.bin\n",
                                            "text/plain");
            // A piece every 100 ms, so that the meter can be seen: 1.6 s in all.
            response.set_content_provider(kInstaller.size(), "application/octet-stream", [](size_t offset, size_t, httplib::DataSink& sink) {
                std::this_thread::sleep_for(100ms);
                return sink.write(kInstaller.data() + offset, 4096);
            });
        });
        setenv("ZONFRA_UPDATE_SERVER", server.address().c_str(), 1);
        Core::writeSetting("MORVANDEL/zonfraQT", "GuiScale", "100");
        Core::writeSetting("MORVANDEL/MMK zonfraQT", "UpdateCheck", checks);
        const char* plugin = std::getenv("ZONFRA_PLUGIN");
        opened = std::getenv("DISPLAY") && plugin && door && door->load(plugin) && window.valid() &&
                 door->openEditor(window.getWindow());
        if (opened) window.run(*door, 500), shot = window.capture();
    }
    ~Screen() {
        door->closeEditor();
        for (CBitmap* bitmap : {shot, blank}) if (bitmap) bitmap->forget();
    }
    // The share of pixels in `area` that differ from the last shot; takes a new one.
    double changed(const CRect& area) {
        if (blank) blank->forget();
        blank = shot, shot = window.capture();
        int count = 0;
        for (auto y = uint32_t(area.top); y < area.bottom; ++y)
            for (auto x = uint32_t(area.left); x < area.right; ++x) count += blank->getPixel(x, y) == shot->getPixel(x, y) ? 0 : 1;
        return count / (area.getWidth() * area.getHeight());
    }
    bool waitFor(const CRect& area, int milliseconds = 5000) {
        for (int waited = 0; waited < milliseconds; waited += 200)
            if (window.run(*door, 200), changed(area) > 0.2) return true;
        return false;
    }
    void click(int x, int y) { window.click(*door, x, y), window.run(*door, 400); }

    TempHome home;
    LocalServer server;
    std::unique_ptr<EditorHost::EditorDoor> door = EditorHost::makeDoor("vst3");
    EditorHost::HostWindow window{534, 488};
    bool opened = false;
    CBitmap *shot = nullptr, *blank = nullptr;
};

#define OPEN_OR_SKIP(screen) \
    if (!(screen).opened) GTEST_SKIP() << "needs an X display (xvfb-run) and ZONFRA_PLUGIN"

TEST(UpdateOnScreen, BadgeQuestionMeterAndTheFileOnTheDesktop) {
    Screen screen;
    OPEN_OR_SKIP(screen);
    ASSERT_TRUE(screen.waitFor(kBadge)) << "no badge";
    CBitmap* badge = screen.shot;
    badge->remember();
    screen.click(269, 469);
    EXPECT_GT(screen.changed(kBox), 0.5) << "no question";
    if (const char* path = std::getenv("ZONFRA_UPDATE_SHOT")) {
        auto* both = new CBitmap(534 * 2 + 8, 488);
        for (int y = 0; y < 488; ++y)
            for (int side = 0; side < 2; ++side)
                std::memcpy(both->getPixels() + y * both->getStride() + side * (534 + 8) * 4,
                            (side ? screen.shot : badge)->getPixels() + y * badge->getStride(), 534 * 4);
        EXPECT_TRUE(both->savePNG(path));
        both->forget();
    }
    badge->forget();
    screen.click(167, 308);  // "OK"
    EXPECT_GT(screen.changed(kMeter), 0.2) << "no meter";
    EXPECT_TRUE(screen.waitFor(kMeter)) << "the meter stands still";
    const auto landed = screen.home.root / "Desktop" / "setup.bin";
    for (int i = 0; i < 50 && !std::filesystem::exists(landed); ++i) screen.window.run(*screen.door, 100);
    std::ifstream file(landed, std::ios::binary);
    EXPECT_TRUE(std::string(std::istreambuf_iterator<char>(file), {}) == kInstaller) << "the file did not arrive whole";
    screen.window.run(*screen.door, 400);
    EXPECT_GT(screen.changed(kBox), 0.05) << "no message that the download finished";
}

TEST(UpdateOnScreen, ClosingTheEditorEndsTheDownloadAtOnce) {
    Screen screen;
    OPEN_OR_SKIP(screen);
    ASSERT_TRUE(screen.waitFor(kBadge));
    screen.click(269, 469);
    screen.click(167, 308);
    ASSERT_GT(screen.changed(kMeter), 0.2) << "no download under way";
    const auto closing = std::chrono::steady_clock::now();
    screen.door->closeEditor();
    EXPECT_LT(std::chrono::steady_clock::now() - closing, 1s);  // a hang guard: the transfer would take 1.6 s
    std::this_thread::sleep_for(2s);
    EXPECT_FALSE(std::filesystem::exists(screen.home.root / "Desktop" / "setup.bin"));
}

TEST(UpdateOnScreen, UpdateCheckZeroShowsAndAsksNothing) {
    Screen screen("0");
    OPEN_OR_SKIP(screen);
    EXPECT_FALSE(screen.waitFor(kBadge, 2500));
    EXPECT_EQ(screen.server.requests, 0);
}

}  // namespace
