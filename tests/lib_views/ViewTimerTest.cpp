#include <atomic>
#include <thread>

#include "ViewTestSupport.h"
#include "lib/views/CTimerObject.h"
#include "lib/views/VintaClock.h"

using namespace VintaTest;

namespace {
struct FakeSystemTimer : ISystemTimer {
    void start(uint32_t period) override { log += "start" + std::to_string(period) + " "; }
    void stop() override { log += "stop "; }
    std::string log;
};

struct CountingTimer : CTimerObject {
    void onTimer(uint32_t elapsed) override { calls.push_back(elapsed); }
    std::vector<uint32_t> calls;
};

struct TimerFixture : ::testing::Test {
    void SetUp() override {
        setTickSource(fakeClock);
        CTimerRegistry::instance().setSystemTimer(&system);
    }
    void TearDown() override {
        CTimerRegistry::instance().setSystemTimer(nullptr);
        setTickSource(nullptr);
    }
    void tick(int count) {
        for (int i = 0; i < count; ++i) {
            fakeNow += CTimerRegistry::instance().getBasePeriod();
            CTimerRegistry::instance().tick();
        }
    }
    FakeSystemTimer system;
};
}  // namespace

TEST_F(TimerFixture, SharedTimerRunsAtTheShortestIntervalAndCallsEachInTurn) {
    CountingTimer slow, fast;
    slow.startTimer(60);
    fast.startTimer(15, true);  // restarts the system timer at 15 and is called at once
    EXPECT_EQ(system.log, "start60 stop start15 ");
    EXPECT_EQ(fast.calls, std::vector<uint32_t>{0});
    tick(8);
    EXPECT_EQ(fast.calls.size(), 9u);
    EXPECT_EQ(slow.calls, (std::vector<uint32_t>{60, 60}));  // every fourth tick, 60 ms apart
    slow.stopTimer();
    fast.stopTimer();
    EXPECT_EQ(system.log, "start60 stop start15 stop ");
    tick(4);
    EXPECT_EQ(fast.calls.size(), 9u);
}

TEST_F(TimerFixture, TickSkipsWhileTheRegistryIsBusyAndDestroyedObjectsLeave) {
    // A callback that holds the registry on another thread until released.
    struct BlockingTimer : CTimerObject {
        std::atomic<int> phase{0};
        void onTimer(uint32_t) override {
            if (phase == 2) return;
            phase = 1;
            while (phase != 2) std::this_thread::yield();
        }
    } blocker;
    blocker.startTimer(10);
    std::thread holder([] { CTimerRegistry::instance().tick(); });
    while (blocker.phase != 1) std::this_thread::yield();
    EXPECT_FALSE(CTimerRegistry::instance().tick());
    blocker.phase = 2;
    holder.join();
    EXPECT_TRUE(CTimerRegistry::instance().tick());
    {
        CountingTimer shortLived;
        shortLived.startTimer(10);
        EXPECT_EQ(CTimerRegistry::instance().getActiveCount(), 2);
    }
    EXPECT_EQ(CTimerRegistry::instance().getActiveCount(), 1);
    tick(1);  // the dead object's entry is dropped, not called
    blocker.stopTimer();
}
