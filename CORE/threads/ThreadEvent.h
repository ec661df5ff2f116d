#pragma once
#include <condition_variable>
#include <mutex>

namespace Core::Threads {

// A waitable flag. A signal before the wait is not lost; with autoReset the wait consumes it.
class ThreadEvent {
public:
    ThreadEvent() = default;
    virtual ~ThreadEvent() = default;
    ThreadEvent(const ThreadEvent&) = delete;
    ThreadEvent& operator=(const ThreadEvent&) = delete;

    void signal();
    void wait();
    // Waits at most `milliseconds`; true if the event was signalled. Lets a worker check a stop
    // request between slices instead of being killed.
    bool waitFor(int milliseconds);
    void clear();
    bool isSignalled();
    void setAutoReset(bool on) { autoReset = on; }

private:
    std::mutex lock;
    std::condition_variable changed;
    bool signalled = false;
    bool autoReset = false;
};

}  // namespace Core::Threads
