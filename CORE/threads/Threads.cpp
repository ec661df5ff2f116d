#include "CORE/threads/Threads.h"

#include <pthread.h>
#include <sched.h>
#include <time.h>

#include <chrono>
#include <new>

namespace Core::Threads {

struct ThreadHandle {
    pthread_t thread;
    void (*routine)(void*);
    void* argument;
};

namespace {
// The new thread's own copy of what to run: the caller may close the handle at once.
struct ThreadStart {
    void (*routine)(void*);
    void* argument;
};

void* trampoline(void* raw) {
    const ThreadStart start = *static_cast<ThreadStart*>(raw);
    delete static_cast<ThreadStart*>(raw);
    start.routine(start.argument);
    return nullptr;
}
}  // namespace

ThreadHandle* startThread(void (*routine)(void*), void* argument, int priority) {
    if (!routine) return nullptr;
    auto* handle = new (std::nothrow) ThreadHandle{{}, routine, argument};
    auto* start = new (std::nothrow) ThreadStart{routine, argument};
    if (!handle || !start || pthread_create(&handle->thread, nullptr, trampoline, start) != 0) {
        delete handle;
        delete start;
        return nullptr;
    }
    if (priority < 0) {
        // Below normal: a background thread under the default policy takes the idle-friendly class.
        sched_param parameters{};
        pthread_setschedparam(handle->thread, SCHED_BATCH, &parameters);
    }
    return handle;
}

void joinThread(ThreadHandle* handle) {
    if (!handle) return;
    pthread_join(handle->thread, nullptr);
    delete handle;
}

void closeThreadHandle(ThreadHandle* handle) {
    if (!handle) return;
    pthread_detach(handle->thread);
    delete handle;
}

void sleepMilliseconds(int milliseconds) {
    if (milliseconds <= 0) {
        sched_yield();
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

uint32_t getTicks() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(static_cast<uint64_t>(now.tv_sec) * 1000u + static_cast<uint64_t>(now.tv_nsec) / 1000000u);
}

CThread::CThread(std::function<void()> callable, uint64_t threadFlags) : entry(std::move(callable)), flags(threadFlags) {
    std::lock_guard<std::mutex> guard(constructing);
    handle = std::thread([this] { run(); });
    // A self-deleting thread is never joined.
    if (!(flags & kKeepObject)) handle.detach();
}

CThread::~CThread() {
    if (handle.joinable()) {
        if (handle.get_id() == std::this_thread::get_id())
            handle.detach();
        else
            handle.join();
    }
}

void CThread::run() {
    { std::lock_guard<std::mutex> wait(constructing); }
    if (entry) entry();
    if (cleanup) cleanup();
    if (!(flags & kKeepObject)) delete this;
}

void CThread::join() {
    if (!joinable() || !handle.joinable()) return;
    handle.join();
}

bool CThread::joinable() const { return handle.get_id() != std::this_thread::get_id(); }

}  // namespace Core::Threads

namespace Core::Time {

CMiniTimer::CMiniTimer() : startTicks(Threads::getTicks()) {}

uint64_t CMiniTimer::start() {
    startTicks = Threads::getTicks();
    return startTicks;
}

uint64_t CMiniTimer::elapsed() { return static_cast<uint32_t>(Threads::getTicks() - static_cast<uint32_t>(startTicks)); }

}  // namespace Core::Time
