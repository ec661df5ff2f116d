#pragma once
// The editor's side of the update check: an invisible view that ticks the session from a 15 ms
// timer, hears it as its listener, and shows the badge, the question box and the download meter.
#include <atomic>
#include <cstdint>

#include "lib/views/CTimerObject.h"
#include "lib/views/CView.h"
#include "update/ReskoSession.h"

namespace Vinta {
class CViewContainer;
}

namespace Resko {

class CUpdateInfoIcon;
class CUpdateMessageBox;
class CProgressMeter;

class CUpdateNotification : public Vinta::CView, public IReskoSessionListener, public Vinta::CTimerObject {
public:
    explicit CUpdateNotification(CReskoSession* session);

    // Window thread: the views' answers.
    void showQuestion();  // the badge was clicked
    void accept();        // "OK" on the question
    void decline();       // "Cancel" on the question
    // Before the session goes: no tick, no call of the session, no call from it reaches this view.
    void releaseSession();

    CUpdateInfoIcon* getIcon() const { return icon; }
    CUpdateMessageBox* getMessageBox() const { return messageBox; }
    CProgressMeter* getMeter() const { return meter; }
    CReskoSession* getSession() const { return session; }

    // The listener's operations may come on the transfer's thread. Only the progress goes straight
    // to the meter; the rest waits for the next tick, so that visibility and the frame's dirty list
    // change on the window's thread alone.
    bool usesOwnUserInterface() override { return true; }
    void* getWindowHandle() override { return nullptr; }
    void onUpdateAvailable() override { pending.fetch_or(kOffered); }
    void onDownloadProgress(float fraction) override;
    void onDownloadFinished() override { pending.fetch_or(kFinished); }
    void onDownloadFailed() override { pending.fetch_or(kFailed); }

    void onTimer(uint32_t elapsedMilliseconds) override;
    bool attached(Vinta::CView* parentView) override;
    bool removed(Vinta::CView* parentView) override;
    const char* getClassName() const override { return "CUpdateNotification"; }

private:
    friend CUpdateNotification* createUpdateNotification(Vinta::CViewContainer*, const Vinta::CPoint&,
                                                         CReskoSession*);
    enum : int { kOffered = 1, kFinished = 2, kFailed = 4 };

    ~CUpdateNotification() override;
    void showEnd(int mode);

    CReskoSession* session = nullptr;
    CUpdateInfoIcon* icon = nullptr;
    CUpdateMessageBox* messageBox = nullptr;
    CProgressMeter* meter = nullptr;
    std::atomic<int> pending{0};
};

// Adds the notification, the badge at `position`, the question box over the whole container and
// the meter in its lower right corner, in that order, all hidden. The container keeps them; the
// caller may keep the notification by `remember`.
CUpdateNotification* createUpdateNotification(Vinta::CViewContainer* container, const Vinta::CPoint& position,
                                              CReskoSession* session);

}  // namespace Resko
