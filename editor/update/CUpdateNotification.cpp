#include "editor/update/CUpdateNotification.h"

#include "CORE/files/ShellCommands.h"
#include "editor/update/CProgressMeter.h"
#include "editor/update/CUpdateInfoIcon.h"
#include "editor/update/CUpdateMessageBox.h"
#include "lib/views/CViewContainer.h"

namespace Resko {

using namespace Vinta;

CUpdateNotification::CUpdateNotification(CReskoSession* owned) : CView(CRect()), session(owned) {
    setVisible(false);
    setMouseEnabled(false);
}

CUpdateNotification::~CUpdateNotification() {
    releaseSession();
    for (CView* view : {static_cast<CView*>(icon), static_cast<CView*>(messageBox), static_cast<CView*>(meter)})
        if (view) view->forget();
}

void CUpdateNotification::releaseSession() {
    // The transfer tells the listener under the session's lock: once detached, no call is under
    // way and none comes.
    if (session) session->detachListener();
    stopTimer();
    session = nullptr;
    if (icon) icon->setOwner(nullptr);
    if (messageBox) messageBox->setOwner(nullptr);
}

bool CUpdateNotification::attached(CView* parentView) {
    const bool result = CView::attached(parentView);
    if (session) startTimer(15);
    return result;
}

bool CUpdateNotification::removed(CView* parentView) {
    stopTimer();
    return CView::removed(parentView);
}

void CUpdateNotification::onTimer(uint32_t) {
    if (!session) return;
    session->handleAutoUpdate(this);
    const int events = pending.exchange(0);
    if (events & kOffered) icon->setVisible(true);
    if (events & kFinished) showEnd(CUpdateMessageBox::kFinished);
    if (events & kFailed) showEnd(CUpdateMessageBox::kFailed);
}

void CUpdateNotification::onDownloadProgress(float fraction) {
    meter->setTarget(fraction);
    // The meter repaints itself while shown; marking it here would take the frame's lock on the
    // transfer's thread.
}

void CUpdateNotification::showEnd(int mode) {
    icon->setVisible(false);
    messageBox->setMode(mode);
    messageBox->setVisible(true);
    meter->setVisible(false);
}

void CUpdateNotification::showQuestion() {
    icon->setVisible(false);
    messageBox->setMode(CUpdateMessageBox::kQuestion);
    messageBox->setVisible(true);
    meter->setVisible(false);
}

void CUpdateNotification::accept() {
    if (!session) return;
    if (session->getUpdateMode() == 2) {
        meter->setVisible(false);
        session->startDownload(false, this);
        Core::openWithShell(session->getUrl());
        return;
    }
    meter->setTarget(0.0f);
    meter->setVisible(true);
    meter->setDirty(true);
    session->startDownload(true, this);
}

void CUpdateNotification::decline() {
    icon->setVisible(true);
    meter->setVisible(false);
    messageBox->setVisible(false);
    // Changes nothing in the session: the badge offers the update again for as long as the editor
    // stays open.
    if (session) session->startDownload(false, this);
}

CUpdateNotification* createUpdateNotification(CViewContainer* container, const CPoint& position,
                                              CReskoSession* session) {
    if (!container || !session) return nullptr;
    if (!session->isFinished()) session->restart();
    const double width = container->getWidth(), height = container->getHeight();
    auto* notification = new CUpdateNotification(session);
    notification->icon = new CUpdateInfoIcon(CRect(position, 100.0, 40.0), notification);
    notification->messageBox =
        new CUpdateMessageBox(CRect(0.0, 0.0, width, height), notification, session->getUpdateMode());
    notification->meter = new CProgressMeter(CRect(width - 120.0, height - 50.0, width, height));
    // In this order, so that the box covers the badge and the meter covers the box.
    container->addView(notification);
    for (CView* view : {static_cast<CView*>(notification->icon), static_cast<CView*>(notification->messageBox),
                        static_cast<CView*>(notification->meter)}) {
        view->setVisible(false);
        view->remember();  // the notification's own reference: the views outlive the listener
        container->addView(view);
    }
    return notification;
}

}  // namespace Resko
