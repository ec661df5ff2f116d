// The update views over a session that never asks, told by hand what the transfer would tell.
#include <gtest/gtest.h>

#include "editor/update/CProgressMeter.h"
#include "editor/update/CUpdateInfoIcon.h"
#include "editor/update/CUpdateMessageBox.h"
#include "editor/update/CUpdateNotification.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/CViewContainer.h"
#include "lib/views/VintaClock.h"

namespace {

using namespace Resko;
using Vinta::CPoint;

uint32_t fakeNow = 1000;

struct Stage {
    Stage() {
        session.setTimings({1 << 30, 0, 0, 0});  // the check never becomes due
        Vinta::setTickSource([] { return fakeNow; });
    }
    ~Stage() {
        panel->forget();
        canvas->forget();
        Vinta::setTickSource(nullptr);
    }
    void click(const CPoint& at) {
        panel->onMouseDown(at, Vinta::kLButton);
        panel->onMouseUp(at, Vinta::kLButton);
        fakeNow += 1000;  // fades and flashes are over
    }
    // Badge, box and meter shown or not, and the box's mode, after the next tick.
    std::string shown() const {
        notification->onTimer(15);
        auto flag = [](const Vinta::CView* view) { return view->isVisible() ? '1' : '0'; };
        return {flag(notification->getIcon()), flag(box), flag(notification->getMeter()), ' ', char('0' + box->getMode())};
    }
    Vinta::CColor pixel(const CPoint& at) {
        canvas->getDrawContext()->clear();
        box->draw(canvas->getDrawContext());
        return canvas->getPixel(static_cast<uint32_t>(at.x), static_cast<uint32_t>(at.y));
    }

    CReskoSession session{1};
    Vinta::CViewContainer* panel = new Vinta::CViewContainer(Vinta::CRect(0, 0, 534, 488));
    Vinta::CBitmap* canvas = new Vinta::CBitmap(534, 488);
    CUpdateNotification* notification = createUpdateNotification(panel, CPoint(219, 450), &session);
    CUpdateMessageBox* box = notification->getMessageBox();
};

TEST(UpdateViews, FollowTheAnswersFromTheBadgeToTheEndMessages) {
    for (auto end : {&CUpdateNotification::onDownloadFinished, &CUpdateNotification::onDownloadFailed}) {
        Stage stage;
        EXPECT_EQ(stage.shown(), "000 0");
        stage.notification->onUpdateAvailable();
        EXPECT_EQ(stage.shown(), "100 0");
        const CPoint badge(269, 470), corner(5, 5), accept = stage.box->getAcceptButton().getCenter();
        const CPoint besideAccept(stage.box->getAcceptButton().left - 2, accept.y);
        stage.click(badge);
        EXPECT_EQ(stage.shown(), "010 0");
        const Vinta::CColor cover = stage.pixel(corner), button = stage.pixel(besideAccept);
        stage.box->onMouseMoved(accept, 0);  // the button grows by 3 under the pointer
        EXPECT_NE(stage.pixel(besideAccept), button);
        stage.box->onMouseMoved(corner, 0);
        EXPECT_EQ(stage.pixel(besideAccept), button);
        stage.box->onMouseDown(corner, Vinta::kLButton);  // beside the box: the cover flares up, nothing else
        EXPECT_GT(stage.pixel(corner).red, cover.red + 20);
        fakeNow += 150;
        EXPECT_EQ(stage.pixel(corner), cover);
        stage.click(corner);
        EXPECT_EQ(stage.shown(), "010 0");
        stage.click(stage.box->getCancelButton().getCenter());
        EXPECT_EQ(stage.shown(), "100 0");
        stage.click(badge);
        stage.click(accept);
        EXPECT_EQ(stage.shown(), "001 0");
        stage.notification->onDownloadProgress(1.0f);
        for (int paint = 0; paint < 3; ++paint) stage.notification->getMeter()->draw(stage.canvas->getDrawContext());
        EXPECT_NEAR(stage.notification->getMeter()->getShown(), 0.271f, 1e-4f);  // a tenth of the gap at each paint
        (stage.notification->*end)();
        EXPECT_EQ(stage.shown(), end == &CUpdateNotification::onDownloadFinished ? "010 1" : "010 2");
        stage.click(stage.box->getOkButton().getCenter());
        EXPECT_EQ(stage.shown().substr(0, 3), "000");
    }
}

}  // namespace
