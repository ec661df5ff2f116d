// The update views over a real session and a local server: badge, question, meter and the end
// messages follow the user's answers; the cover flashes at a click beside the box; a hovered button
// grows; the meter creeps towards what the transfer reports.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "core_files/TempHome.h"
#include "editor/update/CProgressMeter.h"
#include "editor/update/CUpdateInfoIcon.h"
#include "editor/update/CUpdateMessageBox.h"
#include "editor/update/CUpdateNotification.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/CViewContainer.h"
#include "lib/views/VintaClock.h"
#include "update/LocalServer.h"

namespace {

using namespace Resko;
using Vinta::CPoint;

uint32_t fakeNow = 1000;
uint32_t fakeTicks() { return fakeNow; }

// A temporary home, a server that offers `offered`, a session and the views in a panel-sized container.
struct Stage {
    explicit Stage(const char* file = "setup.bin") : offered(file) {
        setenv("ZONFRA_UPDATE_SERVER", server.address().c_str(), 1);
        server.answer([this](const httplib::Request& request, httplib::Response& response) {
            if (request.path == "/update_available.php")
                return response.set_content("UPDATE=1\nURL=http://" + server.address() + "/files/" + offered, "text/plain");
            ++downloads;
            if (request.path.ends_with("setup.bin")) response.set_content("INSTALLER", "application/octet-stream");
            else response.status = 404;
        });
        session.init("MMK zonfraQT", "ZONFRAQT", 0x10300);
        session.setTimings({0, 2000, 2000, 2000});
        notification = createUpdateNotification(editor, CPoint(219, 450), &session);
    }
    ~Stage() {
        editor->forget();
        canvas->forget();
        Vinta::setTickSource(nullptr);
    }
    template <class Done>
    bool tickUntil(Done done) {
        for (int i = 0; i < 1000; ++i, std::this_thread::sleep_for(std::chrono::milliseconds(5)))
            if (notification->onTimer(15), done()) return true;
        return false;
    }
    void click(const CPoint& where) {
        editor->onMouseDown(where, Vinta::kLButton);
        editor->onMouseUp(where, Vinta::kLButton);
    }
    // What shows, in the order badge, box, meter; and the box's mode.
    std::string shown() const {
        std::string flags;
        for (const Vinta::CView* view : {static_cast<Vinta::CView*>(icon()), static_cast<Vinta::CView*>(box()),
                                         static_cast<Vinta::CView*>(meter())})
            flags += view->isVisible() ? '1' : '0';
        return flags + " " + std::to_string(box()->getMode());
    }
    Vinta::CColor pixelOfBox(const CPoint& at) {
        canvas->getDrawContext()->clear();
        box()->draw(canvas->getDrawContext());
        return canvas->getPixel(static_cast<uint32_t>(at.x), static_cast<uint32_t>(at.y));
    }
    CUpdateInfoIcon* icon() const { return notification->getIcon(); }
    CUpdateMessageBox* box() const { return notification->getMessageBox(); }
    CProgressMeter* meter() const { return notification->getMeter(); }

    TempHome home;
    std::string offered;
    std::atomic<int> downloads{0};
    LocalServer server;
    CReskoSession session{1};
    Vinta::CViewContainer* editor = new Vinta::CViewContainer(Vinta::CRect(0, 0, 534, 488));
    Vinta::CBitmap* canvas = new Vinta::CBitmap(534, 488);
    CUpdateNotification* notification = nullptr;
};

TEST(UpdateViews, FollowTheAnswersFromBadgeToTheEndOfTheDownload) {
    const struct { const char* file; int endMode; bool landed; } cases[] = {
        {"setup.bin", CUpdateMessageBox::kFinished, true}, {"missing.bin", CUpdateMessageBox::kFailed, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        Stage stage(c.file);
        ASSERT_TRUE(stage.tickUntil([&] { return stage.icon()->isVisible(); }));
        EXPECT_EQ(stage.shown(), "100 0");
        const CPoint badge = stage.icon()->getViewSize().getCenter();
        stage.click(badge);
        EXPECT_EQ(stage.shown(), "010 0");
        stage.click(CPoint(5, 5));  // beside the box: nothing changes, nothing below is reached
        EXPECT_EQ(stage.shown(), "010 0");
        stage.click(stage.box()->getCancelButton().getCenter());
        EXPECT_EQ(stage.shown(), "100 0");
        stage.click(badge);
        stage.click(stage.box()->getAcceptButton().getCenter());
        EXPECT_EQ(stage.shown(), "001 0");
        ASSERT_TRUE(stage.tickUntil([&] { return stage.box()->isVisible(); }));
        EXPECT_EQ(stage.shown(), "010 " + std::to_string(c.endMode));
        stage.click(stage.box()->getOkButton().getCenter());
        EXPECT_EQ(stage.shown(), "000 " + std::to_string(c.endMode));
        EXPECT_EQ(stage.downloads, 1);
        EXPECT_EQ(std::filesystem::exists(stage.home.root / "Desktop" / c.file), c.landed);
    }
}

TEST(UpdateViews, CoverFlashesAtAClickBesideTheBoxAndAHoveredButtonGrows) {
    Stage stage;
    auto* box = stage.box();
    Vinta::setTickSource(fakeTicks);
    stage.notification->showQuestion();
    fakeNow += 1000;  // the fade-in is over
    const CPoint corner(5, 5), besideButton(box->getAcceptButton().left - 2, box->getAcceptButton().getCenter().y);
    const Vinta::CColor cover = stage.pixelOfBox(corner), button = stage.pixelOfBox(besideButton);
    box->onMouseDown(corner, Vinta::kLButton);
    EXPECT_GT(stage.pixelOfBox(corner).red, cover.red + 20);
    fakeNow += 150;
    EXPECT_EQ(stage.pixelOfBox(corner), cover);
    EXPECT_EQ(box->getMode(), CUpdateMessageBox::kQuestion);

    box->onMouseMoved(box->getAcceptButton().getCenter(), 0);
    EXPECT_NE(stage.pixelOfBox(besideButton), button);
    box->onMouseMoved(corner, 0);
    EXPECT_EQ(stage.pixelOfBox(besideButton), button);
}

TEST(UpdateViews, MeterCreepsATenthOfTheGapAtEachPaint) {
    Stage stage;
    auto* meter = stage.meter();
    meter->setTarget(1.0f);
    for (const float expected : {0.1f, 0.19f, 0.271f}) {
        meter->draw(stage.canvas->getDrawContext());
        EXPECT_NEAR(meter->getShown(), expected, 1e-5f);
    }
    stage.notification->onDownloadProgress(0.0f);
    meter->draw(stage.canvas->getDrawContext());
    EXPECT_NEAR(meter->getShown(), 0.2439f, 1e-4f);
}

}  // namespace
