#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> gAllocations{0};

}  // namespace

// C allocations are counted too where the sanitizers do not own malloc.
#if !defined(__SANITIZE_ADDRESS__)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);

void* malloc(std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(n, size);
}
void* realloc(void* p, std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(p, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** out, std::size_t alignment, std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    *out = __libc_memalign(alignment, size);
    return *out ? 0 : 12;
}
}
#define ZONFRA_COUNT_IN_MALLOC 1
#endif

#if defined(ZONFRA_COUNT_IN_MALLOC)
// malloc already counts; operator new must not count twice.
void* operator new(std::size_t size) {
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    const std::size_t a = static_cast<std::size_t>(alignment);
    if (void* p = std::aligned_alloc(a, (size + a - 1) / a * a)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size, std::align_val_t alignment) { return operator new(size, alignment); }
#else
namespace {
void* countedAllocation(std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void* countedAlignedAllocation(std::size_t size, std::align_val_t alignment) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    const std::size_t a = static_cast<std::size_t>(alignment);
    const std::size_t rounded = (size + a - 1) / a * a;
    if (void* p = std::aligned_alloc(a, rounded == 0 ? a : rounded)) return p;
    throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t size) { return countedAllocation(size); }
void* operator new[](std::size_t size) { return countedAllocation(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return countedAlignedAllocation(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return countedAlignedAllocation(size, alignment);
}
#endif
// The nothrow forms too, so that memory from any form meets the matching release.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new[](size);
    } catch (...) {
        return nullptr;
    }
}
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

namespace TestSupport {

std::size_t allocationCount() { return gAllocations.load(std::memory_order_relaxed); }

AllocationScope::AllocationScope() : start(allocationCount()) {}
AllocationScope::~AllocationScope() = default;
std::size_t AllocationScope::allocations() const { return allocationCount() - start; }

}  // namespace TestSupport
