#include "lib/platform-x11/X11SystemTimer.h"

#include <mutex>

#include "lib/views/VintaClock.h"

namespace Vinta::X11 {

namespace {
std::mutex usersLock;
int users = 0;
constexpr uint32_t kStoppedWait = 1000;
}  // namespace

X11SystemTimer& X11SystemTimer::instance() {
    static X11SystemTimer timer;
    return timer;
}

void X11SystemTimer::addUser() {
    std::lock_guard<std::mutex> guard(usersLock);
    if (users++ == 0) CTimerRegistry::instance().setSystemTimer(&instance());
}

void X11SystemTimer::removeUser() {
    std::lock_guard<std::mutex> guard(usersLock);
    if (--users == 0) CTimerRegistry::instance().setSystemTimer(nullptr);
}

void X11SystemTimer::start(uint32_t periodMilliseconds) {
    period = periodMilliseconds ? periodMilliseconds : 1;
    nextDue = getVintaTicks() + period.load();
    running = true;
}

void X11SystemTimer::stop() { running = false; }

uint32_t X11SystemTimer::service(uint32_t now) {
    if (!running.load()) return kStoppedWait;
    uint32_t due = nextDue.load();
    const auto wait = static_cast<int32_t>(due - now);
    if (wait > 0) return static_cast<uint32_t>(wait);
    // One frame wins the period; a late one schedules from now rather than catching up.
    if (nextDue.compare_exchange_strong(due, now + period.load())) CTimerRegistry::instance().tick();
    return period.load();
}

}  // namespace Vinta::X11
