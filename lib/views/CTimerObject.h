#pragma once
// Timers of the toolkit. All timer objects share one system timer, run at the shortest interval
// asked for; each object is called every (its interval / that period) ticks with the
// milliseconds since its last call. A timer that is a view in a window runs on that window's
// ticks, so that it never runs on another editor's thread.
#include <cstdint>
#include <vector>

#include "CORE/threads/CCriticalSection.h"

namespace Vinta {

class CFrame;

class CTimerObject {
public:
    CTimerObject() = default;
    CTimerObject(const CTimerObject&) = delete;
    CTimerObject& operator=(const CTimerObject&) = delete;
    // Leaves the registry, so that no tick reaches a dead object.
    virtual ~CTimerObject();
    virtual void onTimer(uint32_t elapsedMilliseconds) = 0;

    bool startTimer(uint32_t intervalMilliseconds, bool callNow = false);
    void stopTimer();

    uint32_t lastTick = 0;
};

// The one periodic timer of the platform; it calls CTimerRegistry::tick on the window's thread.
class ISystemTimer {
public:
    virtual ~ISystemTimer() = default;
    virtual void start(uint32_t periodMilliseconds) = 0;
    virtual void stop() = 0;
};

class CTimerRegistry {
public:
    static CTimerRegistry& instance();

    void setSystemTimer(ISystemTimer* timer);
    bool add(CTimerObject* object, uint32_t intervalMilliseconds, bool callNow = false);
    void remove(CTimerObject* object);
    // One period of the system timer: for `frame`'s views and the timers that are not views, or
    // without a frame for all. Skipped (false) when the registry is busy elsewhere.
    bool tick(const CFrame* frame = nullptr);

    uint32_t getBasePeriod() const { return basePeriod; }
    bool isRunning() const { return running; }
    int32_t getActiveCount();

private:
    struct Entry {
        CTimerObject* object;
        uint32_t interval;
        uint32_t countdown;
        uint32_t reload;
        bool removed;
    };
    uint32_t reloadFor(uint32_t interval) const;

    Core::Threads::CCriticalSection lock;
    std::vector<Entry> entries;
    ISystemTimer* systemTimer = nullptr;
    uint32_t basePeriod = 0;
    bool running = false;
};

} // namespace Vinta
