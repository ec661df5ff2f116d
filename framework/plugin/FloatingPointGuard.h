#pragma once
#include <xmmintrin.h>

namespace Ondra {

// Runs a scope under the default SSE control word (all exceptions masked, round to nearest,
// no flush-to-zero), whatever the host has set, and restores the host's word on exit.
class FloatingPointGuard {
public:
    static constexpr unsigned kDefault = 0x1F80;
    FloatingPointGuard() : saved(_mm_getcsr()) {
        if ((saved & ~0x7Fu) != kDefault) _mm_setcsr(kDefault);
    }
    ~FloatingPointGuard() { _mm_setcsr(saved); }
    FloatingPointGuard(const FloatingPointGuard&) = delete;
    FloatingPointGuard& operator=(const FloatingPointGuard&) = delete;

private:
    unsigned saved;
};

}  // namespace Ondra
