#pragma once
#include <atomic>

namespace DSP::MEMORY {

// An object shared by reference count; the last release deletes it.
class CReferencedObject {
public:
    virtual ~CReferencedObject() = default;
    virtual void addRef() { referenceCount.fetch_add(1, std::memory_order_relaxed); }
    virtual void release() {
        if (referenceCount.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }
    int references() const { return referenceCount.load(std::memory_order_relaxed); }

private:
    std::atomic<int> referenceCount{1};
};

}  // namespace DSP::MEMORY
