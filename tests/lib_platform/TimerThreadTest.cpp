// With two editors on threads of their own, a view's timer runs on its own editor's thread, the
// one that draws it, and never on the other's.
#include <mutex>
#include <set>
#include <thread>

#include "lib/views/CTimerObject.h"
#include "lib_platform/PlatformTestSupport.h"

namespace {

using namespace Vinta;
using PlatformTest::HostWindowTest;

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

TEST_F(HostWindowTest, EachEditorsTimersRunOnItsOwnThread) {
    CFrame* frames[2] = {};
    ThreadRecorder* recorders[2] = {};
    for (int i = 0; i < 2; ++i) {
        frames[i] = X11::X11Frame::openFrame(host, CRect(0, 0, 100, 100), nullptr, {X11::EventDriver::OwnThread, 1.0, false});
        ASSERT_NE(frames[i], nullptr);
        recorders[i] = new ThreadRecorder;
        frames[i]->addView(recorders[i]);
        recorders[i]->startTimer(15);
        X11::X11Frame::of(frames[i])->start();
    }
    EXPECT_TRUE(waitFor([&] {
        return !recorders[0]->threads(true).empty() && !recorders[1]->threads(true).empty() &&
               !recorders[0]->threads(false).empty() && !recorders[1]->threads(false).empty();
    }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (ThreadRecorder* recorder : recorders) {
        EXPECT_EQ(recorder->threads(true), recorder->threads(false)) << "a timer ran off the thread that draws it";
        EXPECT_EQ(recorder->threads(true).size(), 1u);
    }
    EXPECT_NE(recorders[0]->threads(false), recorders[1]->threads(false));
    for (CFrame* frame : frames) X11::X11Frame::closeFrame(frame);
}
