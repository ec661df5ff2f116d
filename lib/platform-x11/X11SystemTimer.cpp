#include "lib/platform-x11/X11SystemTimer.h"

#include <mutex>


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
    running = true;
}

void X11SystemTimer::stop() { running = false; }

uint32_t X11SystemTimer::service(uint32_t now, Schedule& schedule, const CFrame* frame) {
    if (!running.load()) return kStoppedWait;
    const uint32_t current = period.load();
    if (schedule.period != current) {
        schedule.period = current;
        schedule.due = now + current;
    }
    const auto wait = static_cast<int32_t>(schedule.due - now);
    if (wait > 0) return static_cast<uint32_t>(wait);
    // A late frame schedules from now rather than catching up; one that finds the registry busy
    // (another frame ticking) tries again at its next turn.
    if (CTimerRegistry::instance().tick(frame)) schedule.due = now + current;
    return current;
}

}  // namespace Vinta::X11
