#include "lib/views/CTimerObject.h"

#include <algorithm>

#include "lib/views/CView.h"
#include "lib/views/VintaClock.h"

namespace Vinta {

CTimerObject::~CTimerObject() { CTimerRegistry::instance().remove(this); }

bool CTimerObject::startTimer(uint32_t intervalMilliseconds, bool callNow) {
    return CTimerRegistry::instance().add(this, intervalMilliseconds, callNow);
}

void CTimerObject::stopTimer() { CTimerRegistry::instance().remove(this); }

CTimerRegistry& CTimerRegistry::instance() {
    static CTimerRegistry registry;
    return registry;
}

void CTimerRegistry::setSystemTimer(ISystemTimer* timer) {
    lock.enter();
    if (systemTimer && running) systemTimer->stop();
    systemTimer = timer;
    if (systemTimer && running) systemTimer->start(basePeriod);
    lock.leave();
}

uint32_t CTimerRegistry::reloadFor(uint32_t interval) const {
    return std::max<uint32_t>(1, basePeriod ? interval / basePeriod : 1);
}

bool CTimerRegistry::add(CTimerObject* object, uint32_t interval, bool callNow) {
    if (!object || interval == 0) return false;
    lock.enter();
    if (!running) {
        basePeriod = interval;
        running = true;
        if (systemTimer) systemTimer->start(basePeriod);
    } else if (interval < basePeriod) {
        if (systemTimer) systemTimer->stop();
        basePeriod = interval;
        if (systemTimer) systemTimer->start(basePeriod);
        for (Entry& entry : entries) entry.countdown = entry.reload = reloadFor(entry.interval);
    }
    const uint32_t reload = reloadFor(interval);
    entries.push_back(Entry{object, interval, reload, reload, false});
    object->lastTick = getVintaTicks();
    lock.leave();
    if (callNow) object->onTimer(0);
    return true;
}

void CTimerRegistry::remove(CTimerObject* object) {
    lock.enter();
    bool anyLeft = false;
    for (Entry& entry : entries) {
        if (entry.object == object) entry.removed = true;
        anyLeft = anyLeft || !entry.removed;
    }
    if (!anyLeft && running) {
        if (systemTimer) systemTimer->stop();
        running = false;
        basePeriod = 0;
    }
    lock.leave();
}

int32_t CTimerRegistry::getActiveCount() {
    lock.enter();
    const auto count = std::count_if(entries.begin(), entries.end(), [](const Entry& e) { return !e.removed; });
    lock.leave();
    return static_cast<int32_t>(count);
}

bool CTimerRegistry::tick(const CFrame* frame) {
    if (!lock.tryEnter()) return false;
    std::erase_if(entries, [](const Entry& entry) { return entry.removed; });
    // Objects may add or remove timers from onTimer, so walk by index over the entries present now.
    const size_t count = entries.size();
    for (size_t index = 0; index < count; ++index) {
        if (entries[index].removed) continue;
        // A view ticks only with its own window (not at all while in none): never on the thread of
        // another editor, which would reach for this one's frame while it closes.
        const auto* view = dynamic_cast<const CView*>(entries[index].object);
        if (frame && view && view->getFrame() != frame) continue;
        if (--entries[index].countdown > 0) continue;
        entries[index].countdown = entries[index].reload;
        CTimerObject* object = entries[index].object;
        const uint32_t now = getVintaTicks();
        const uint32_t elapsed = now - object->lastTick;
        object->lastTick = now;
        object->onTimer(elapsed);
    }
    lock.leave();
    return true;
}

} // namespace Vinta
