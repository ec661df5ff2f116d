// What a window owns for itself: its size in pixels at its own scale, and its views' timers on its
// own thread (with two editors on threads of their own, never on the other's).
#include <mutex>
#include <set>
#include <thread>

#include "lib/views/CTimerObject.h"
#include "lib_platform/PlatformTestSupport.h"

using namespace Vinta;
using namespace PlatformTest;

namespace {
class ThreadRecorder : public CView, public CTimerObject {
public:
    ThreadRecorder() : CView(CRect(0, 0, 10, 10)) {}
    void draw(CDrawContext*) override { note(drawn); }
    void onTimer(uint32_t) override { note(ticked); }
    std::set<std::thread::id> threads(bool timer) {
        std::lock_guard<std::mutex> guard(lock);
        return timer ? ticked : drawn;
    }

private:
    void note(std::set<std::thread::id>& where) {
        std::lock_guard<std::mutex> guard(lock);
        where.insert(std::this_thread::get_id());
    }
    std::mutex lock;
    std::set<std::thread::id> drawn, ticked;
};
}  // namespace

// A host's onSize at 150 % must not shrink the window to the unscaled size.
TEST_F(HostWindowTest, ASizeInUnitsGrowsTheWindowByTheScale) {
    for (double scale : {1.0, 1.5, 2.0}) {
        Panel panel = open(scale, EventDriver::HostIdle);
        ASSERT_NE(panel.frame, nullptr);
        panel.frame->setSize(200.0, 120.0);
        CRect pixels;
        ASSERT_TRUE(panel.platform->getRect(pixels));
        EXPECT_EQ(pixels, CRect(0, 0, 200.0 * scale, 120.0 * scale)) << scale;
        close(panel);
    }
}

TEST_F(HostWindowTest, EachEditorsTimersRunOnItsOwnThread) {
    CFrame* frames[2] = {};
    ThreadRecorder* recorders[2] = {};
    for (int i = 0; i < 2; ++i) {
        frames[i] = X11::X11Frame::openFrame(host, CRect(0, 0, 100, 100), nullptr, {EventDriver::OwnThread, 1.0, false});
        ASSERT_NE(frames[i], nullptr);
        frames[i]->addView(recorders[i] = new ThreadRecorder);
        recorders[i]->startTimer(15);
        X11::X11Frame::of(frames[i])->start();
    }
    EXPECT_TRUE(waitFor([&] {
        for (ThreadRecorder* recorder : recorders)
            if (recorder->threads(true).empty() || recorder->threads(false).empty()) return false;
        return true;
    }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (ThreadRecorder* recorder : recorders) {
        EXPECT_EQ(recorder->threads(true), recorder->threads(false)) << "a timer ran off the thread that draws it";
        EXPECT_EQ(recorder->threads(true).size(), 1u);
    }
    EXPECT_NE(recorders[0]->threads(false), recorders[1]->threads(false));
    for (CFrame* frame : frames) X11::X11Frame::closeFrame(frame);
}
