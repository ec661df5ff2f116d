#include "lib/views/VintaClock.h"

#include <atomic>

#include "CORE/threads/Threads.h"

namespace Vinta {

namespace {
std::atomic<TickSource> tickSource{nullptr};
}

uint32_t getVintaTicks() {
    const TickSource source = tickSource.load(std::memory_order_relaxed);
    return source ? source() : Core::Threads::getTicks();
}

void setTickSource(TickSource source) { tickSource.store(source, std::memory_order_relaxed); }

} // namespace Vinta
