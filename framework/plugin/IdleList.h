#pragma once
#include <mutex>
#include <vector>

#include "framework/plugin/IdleClient.h"

namespace Ondra {

// One list per process of clients that get an idle call every 25 ms. The platform layer drives
// `tick` from its own timer; `timerRunning` tells it whether one is wanted.
class IdleList {
public:
    static constexpr int kPeriodMilliseconds = 25;
    static IdleList& instance();

    void add(IdleClient* client);
    // Only marks the entry: the next tick unlinks it, so a client removed between two ticks gets
    // no further call.
    void remove(IdleClient* client);
    // Skips the tick when another thread holds the list.
    void tick();
    bool timerRunning() const { return timer != 0; }
    size_t size();

private:
    struct Entry {
        IdleClient* client;
        bool removed;
    };
    std::mutex lock;
    std::vector<Entry> entries;
    int timer = 0;
};

}  // namespace Ondra
