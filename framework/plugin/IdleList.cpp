#include "framework/plugin/IdleList.h"

#include <algorithm>

namespace Ondra {

IdleList& IdleList::instance() {
    static IdleList list;
    return list;
}

void IdleList::add(IdleClient* client) {
    std::lock_guard<std::mutex> guard(lock);
    entries.push_back({client, false});
    if (timer == 0) timer = 1;
}

void IdleList::remove(IdleClient* client) {
    std::lock_guard<std::mutex> guard(lock);
    for (auto& e : entries)
        if (e.client == client) e.removed = true;
}

void IdleList::tick() {
    std::unique_lock<std::mutex> guard(lock, std::try_to_lock);
    if (!guard.owns_lock()) return;
    entries.erase(std::remove_if(entries.begin(), entries.end(), [](const Entry& e) { return e.removed; }),
                  entries.end());
    for (auto& e : entries)
        if (e.client && e.client->isOpen()) e.client->idle();
}

size_t IdleList::size() {
    std::lock_guard<std::mutex> guard(lock);
    return entries.size();
}

}  // namespace Ondra
