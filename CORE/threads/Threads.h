#pragma once
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace Core::Threads {

struct ThreadHandle;  // opaque

// Starts `routine(argument)`; a priority below 0 asks for a lower scheduling priority. Null when
// the platform refuses.
ThreadHandle* startThread(void (*routine)(void*), void* argument, int priority);
// Waits for the thread without limit, then frees the handle.
void joinThread(ThreadHandle* handle);
// Frees a handle without waiting; the thread runs on by itself. Null is allowed.
void closeThreadHandle(ThreadHandle* handle);
// Sleeps; 0 or less only yields.
void sleepMilliseconds(int milliseconds);
// Monotonic milliseconds, 32 bits: callers compare small differences.
uint32_t getTicks();

// A thread around a callable. Unless `kKeepObject` is set, the object deletes itself when its
// thread ends, and nobody joins it.
class CThread {
public:
    static constexpr uint64_t kKeepObject = 2;

    CThread(std::function<void()> callable, uint64_t threadFlags);
    ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    // From any other thread waits for the end; from its own thread returns at once.
    void join();
    bool joinable() const;

private:
    void run();

    std::mutex constructing;  // held until the constructor is done with the object
    std::thread handle;
    std::function<void()> entry;
    std::function<void()> cleanup;
    uint64_t flags;
};

}  // namespace Core::Threads

namespace Core::Time {

// A stopwatch in milliseconds.
class CMiniTimer {
public:
    CMiniTimer();
    virtual ~CMiniTimer() = default;
    virtual uint64_t start();
    virtual uint64_t elapsed();

private:
    uint64_t startTicks;
};

}  // namespace Core::Time
