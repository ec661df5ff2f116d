#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> gAllocations{0};

void count() { gAllocations.fetch_add(1, std::memory_order_relaxed); }
}  // namespace

// C allocations are counted too where the sanitizers do not own malloc; operator new then goes
// through malloc and must not count twice.
#if !defined(__SANITIZE_ADDRESS__)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);

void* malloc(std::size_t size) { return count(), __libc_malloc(size); }
void* calloc(std::size_t n, std::size_t size) { return count(), __libc_calloc(n, size); }
void* realloc(void* p, std::size_t size) { return count(), __libc_realloc(p, size); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { return count(), __libc_memalign(alignment, size); }
int posix_memalign(void** out, std::size_t alignment, std::size_t size) {
    count();
    *out = __libc_memalign(alignment, size);
    return *out ? 0 : 12;
}
}
constexpr bool kNewCounts = false;
#else
constexpr bool kNewCounts = true;
#endif

namespace {
void* allocate(std::size_t size, std::size_t alignment = 0) {
    if (kNewCounts) count();
    const std::size_t rounded = alignment ? (size + alignment - 1) / alignment * alignment : size;
    if (void* p = alignment ? std::aligned_alloc(alignment, rounded ? rounded : alignment) : std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t a) { return allocate(size, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t size, std::align_val_t a) { return allocate(size, static_cast<std::size_t>(a)); }
// The nothrow forms too, so that memory from any form meets the matching release.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
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

}  // namespace TestSupport
