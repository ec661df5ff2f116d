#include "CORE/threads/ThreadEvent.h"

#include <chrono>

namespace Core::Threads {

void ThreadEvent::signal() {
    // Notified under the lock: a waiter that wakes may destroy the event at once.
    std::lock_guard<std::mutex> guard(lock);
    signalled = true;
    changed.notify_all();
}

void ThreadEvent::wait() {
    std::unique_lock<std::mutex> guard(lock);
    changed.wait(guard, [this] { return signalled; });
    if (autoReset) signalled = false;
}

bool ThreadEvent::waitFor(int milliseconds) {
    std::unique_lock<std::mutex> guard(lock);
    const bool got = changed.wait_for(guard, std::chrono::milliseconds(milliseconds < 0 ? 0 : milliseconds),
                                      [this] { return signalled; });
    if (got && autoReset) signalled = false;
    return got;
}

void ThreadEvent::clear() {
    std::lock_guard<std::mutex> guard(lock);
    signalled = false;
}

bool ThreadEvent::isSignalled() {
    std::lock_guard<std::mutex> guard(lock);
    return signalled;
}

}  // namespace Core::Threads
