#pragma once
#include <memory>
#include <mutex>

namespace Core::Threads {

// A lock behind a pointer, created and destroyed explicitly.
class CCriticalSection {
public:
    CCriticalSection() { create(); }
    void create() {
        if (!section) section = std::make_unique<std::recursive_mutex>();
    }
    void destroy() { section.reset(); }
    void enter() {
        if (section) section->lock();
    }
    void leave() {
        if (section) section->unlock();
    }
    bool tryEnter() { return section && section->try_lock(); }

private:
    std::unique_ptr<std::recursive_mutex> section;
};

}  // namespace Core::Threads
