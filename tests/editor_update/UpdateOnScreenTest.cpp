// The update client in the plug-in's editor through the VST3 door, against a local server.
// ZONFRA_UPDATE_SHOT=FILE.png writes badge and question side by side.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>

#include "CORE/files/Settings.h"
#include "core_files/TempHome.h"
#include "lib_drawing/DrawingTestSupport.h"
#include "tools/editor-host/EditorDoor.h"
#include "tools/editor-host/HostWindow.h"
#include "update/LocalServer.h"
#include "update/Sha256.h"

namespace {

using namespace std::chrono_literals;
using DrawingTest::BitmapPtr;

const Vinta::CRect kBadge(219, 450, 319, 488), kBox(17, 144, 517, 344), kMeter(414, 438, 534, 488);
const std::string kInstaller(64 * 1024, 'z');

// Opens the editor, waits for the badge and clicks it.
class UpdateOnScreen : public ::testing::Test {
protected:
    void SetUp() override {
        server.answer([](const httplib::Request& request, httplib::Response& response) {
            if (request.path == "/update_available.php")
                return response.set_content("UPDATE=1\nSHA256=" + Resko::CSha256::hexDigest(kInstaller.data(), kInstaller.size()) +
                                                "\nURL=http://" + request.get_header_value("Host") + "/files/setup.bin\n", "text/plain");
            // A piece every 100 ms, 1.6 s in all, so that the meter can be seen.
            response.set_content_provider(kInstaller.size(), "application/octet-stream", [](size_t offset, size_t, httplib::DataSink& sink) {
                std::this_thread::sleep_for(100ms);
                return sink.write(kInstaller.data() + offset, 4096);
            });
        });
        setenv("ZONFRA_UPDATE_SERVER", server.address().c_str(), 1);
        Core::writeSetting("MORVANDEL/zonfraQT", "GuiScale", "100");
        const char* plugin = std::getenv("ZONFRA_PLUGIN");
        if (!std::getenv("DISPLAY") || !plugin || !door->load(plugin) || !window.valid() || !door->openEditor(window.getWindow()))
            GTEST_SKIP() << "needs an X display (xvfb-run) and ZONFRA_PLUGIN";
        window.run(*door, 500), shot.reset(window.capture());
        ASSERT_TRUE(waitFor(kBadge)) << "no badge";
        click(269, 469);
    }
    void TearDown() override { door->closeEditor(); }
    // Takes a new shot: the share of the pixels in `area` that differ from the one before.
    double changed(const Vinta::CRect& area) {
        last = std::move(shot), shot.reset(window.capture());
        int count = 0;
        for (auto y = uint32_t(area.top); y < area.bottom; ++y)
            for (auto x = uint32_t(area.left); x < area.right; ++x) count += last->getPixel(x, y) == shot->getPixel(x, y) ? 0 : 1;
        return count / (area.getWidth() * area.getHeight());
    }
    bool waitFor(const Vinta::CRect& area, int milliseconds = 5000) {
        for (int waited = 0; waited < milliseconds; waited += 200)
            if (window.run(*door, 200), changed(area) > 0.2) return true;
        return false;
    }
    void click(int x, int y) { window.click(*door, x, y), window.run(*door, 400); }

    TempHome home;
    LocalServer server;
    std::unique_ptr<EditorHost::EditorDoor> door = EditorHost::makeDoor("vst3");
    EditorHost::HostWindow window{534, 488};
    BitmapPtr shot, last;
};

void saveSideBySide(const BitmapPtr& left, const BitmapPtr& right, const char* path) {
    const BitmapPtr both(new Vinta::CBitmap(534 * 2 + 8, 488));
    for (int row = 0; row < 488 * 2; ++row)
        std::memcpy(both->getPixels() + row / 2 * both->getStride() + row % 2 * (534 + 8) * 4,
                    (row % 2 ? right : left)->getPixels() + row / 2 * left->getStride(), 534 * 4);
    EXPECT_TRUE(both->savePNG(path));
}

TEST_F(UpdateOnScreen, BadgeQuestionMeterAndTheFileOnTheDesktop) {
    EXPECT_GT(changed(kBox), 0.5) << "no question";
    if (const char* path = std::getenv("ZONFRA_UPDATE_SHOT")) saveSideBySide(last, shot, path);
    click(167, 308);  // "OK"
    EXPECT_GT(changed(kMeter), 0.2) << "no meter";
    EXPECT_TRUE(waitFor(kMeter)) << "the meter stands still";
    const auto landed = home.root / "Desktop" / "setup.bin";
    for (int i = 0; i < 50 && !std::filesystem::exists(landed); ++i) window.run(*door, 100);
    EXPECT_EQ(std::filesystem::exists(landed) ? std::filesystem::file_size(landed) : 0, kInstaller.size());  // checked by its digest
}

TEST_F(UpdateOnScreen, ClosingEndsTheDownloadAtOnceAndUpdateCheckZeroShowsNothingNextTime) {
    click(167, 308);
    ASSERT_GT(changed(kMeter), 0.2) << "no download under way";
    const auto closing = std::chrono::steady_clock::now();
    door->closeEditor();
    EXPECT_LT(std::chrono::steady_clock::now() - closing, 1s);  // a hang guard: the transfer would take 1.6 s
    std::this_thread::sleep_for(2s);
    EXPECT_FALSE(std::filesystem::exists(home.root / "Desktop" / "setup.bin"));
    // The offer still stands, but the next editor neither asks nor shows anything.
    Core::writeSetting("MORVANDEL/MMK zonfraQT", "UpdateCheck", "0");
    const int asked = server.requests;
    ASSERT_TRUE(door->openEditor(window.getWindow()));
    window.run(*door, 500), changed(kBadge);
    EXPECT_FALSE(waitFor(kBadge, 2500));
    EXPECT_EQ(server.requests, asked);
}

}  // namespace
