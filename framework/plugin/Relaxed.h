#pragma once
#include <atomic>

namespace Ondra {

// A word shared between a setter thread and the audio thread: plain relaxed loads and stores,
// which compile to ordinary moves on x86 but keep race detectors informed.
template <typename T>
class Relaxed {
public:
    Relaxed(T initial = T{}) : value(initial) {}
    Relaxed(const Relaxed& other) : value(other.load()) {}
    Relaxed& operator=(const Relaxed& other) {
        store(other.load());
        return *this;
    }
    Relaxed& operator=(T v) {
        store(v);
        return *this;
    }
    operator T() const { return load(); }
    T load() const { return value.load(std::memory_order_relaxed); }
    void store(T v) { value.store(v, std::memory_order_relaxed); }

private:
    std::atomic<T> value;
};

}  // namespace Ondra
