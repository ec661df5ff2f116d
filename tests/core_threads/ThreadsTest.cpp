#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "CORE/threads/CCriticalSection.h"
#include "CORE/threads/ThreadEvent.h"
#include "CORE/threads/Threads.h"

using namespace Core::Threads;

TEST(ThreadEvent, SignalBeforeWaitReturnsAtOnceAndAnotherThreadWakesTheWaiter) {
    ThreadEvent event;
    event.signal();
    event.wait();
    event.wait();  // without auto reset the signal stays
    EXPECT_TRUE(event.isSignalled());
    event.setAutoReset(true);
    event.wait();
    EXPECT_FALSE(event.isSignalled());
    EXPECT_FALSE(event.waitFor(20));
    std::thread signaller([&] {
        sleepMilliseconds(30);
        event.signal();
    });
    EXPECT_TRUE(event.waitFor(5000));  // another thread wakes the waiter
    signaller.join();
}

TEST(Threads, StartJoinAndCloseNull) {
    std::atomic<int> ran{0};
    const auto count = [](void* counter) { static_cast<std::atomic<int>*>(counter)->fetch_add(1); };
    ThreadHandle* handle = startThread(count, &ran, -1);
    ASSERT_NE(handle, nullptr);
    joinThread(handle);
    EXPECT_EQ(ran.load(), 1);
    closeThreadHandle(nullptr);
    joinThread(nullptr);
    EXPECT_EQ(startThread(nullptr, nullptr, 0), nullptr);
    // A handle closed at once must not take the new thread's routine with it.
    for (int i = 0; i < 100; ++i) closeThreadHandle(startThread(count, &ran, 0));
    for (int wait = 0; wait < 500 && ran.load() < 101; ++wait) usleep(10000);
    EXPECT_EQ(ran.load(), 101);
}

TEST(Threads, JoinFromTheThreadItselfDoesNotDeadlock) {
    ThreadEvent ready, done;
    CThread* thread = nullptr;
    thread = new CThread(
        [&] {
            ready.wait();
            EXPECT_FALSE(thread->joinable());
            thread->join();  // returns at once
            done.signal();
        },
        CThread::kKeepObject);
    ready.signal();
    EXPECT_TRUE(done.waitFor(5000));
    EXPECT_TRUE(thread->joinable());
    thread->join();
    delete thread;
}

TEST(Threads, SelfDeletingThreadRunsItsEntry) {
    ThreadEvent done;
    new CThread([&] { done.signal(); }, 0);
    EXPECT_TRUE(done.waitFor(5000));
    sleepMilliseconds(20);  // let it finish deleting itself before the event goes
}

TEST(Threads, CriticalSectionTryEnter) {
    CCriticalSection section;
    section.enter();
    bool other = true;
    std::thread([&] { other = section.tryEnter(); }).join();
    EXPECT_FALSE(other);
    section.leave();
    EXPECT_TRUE(section.tryEnter());
    section.leave();
    section.destroy();
    EXPECT_FALSE(section.tryEnter());
}

TEST(Timer, StartsAtZeroAndCounts) {
    Core::Time::CMiniTimer timer;
    timer.start();
    EXPECT_LE(timer.elapsed(), 1u);
    sleepMilliseconds(25);
    EXPECT_GE(timer.elapsed(), 20u);
}
