#pragma once
// Reference-counted root of every toolkit object. Objects start with one reference; whoever
// holds one calls forget() to drop it, and the last forget() destroys the object. Nothing else
// deletes a CBaseObject, which is why the destructor is protected.
#include <atomic>
#include <cstdint>

namespace Vinta {

class CBaseObject;

// A message is the address of a constant name string; compare addresses, not text.
using CMessageID = const char*;

class IMessageResponder {
public:
    // Answers zero when the message is not handled.
    virtual int32_t notify(CBaseObject* sender, CMessageID message) = 0;

protected:
    ~IMessageResponder() = default;
};

class CBaseObject : public IMessageResponder {
public:
    CBaseObject() = default;
    CBaseObject(const CBaseObject&) : CBaseObject() {}
    CBaseObject& operator=(const CBaseObject&) { return *this; }

    int32_t notify(CBaseObject*, CMessageID) override { return 0; }

    virtual void forget() {
        if (referenceCount.fetch_add(-1, std::memory_order_acq_rel) - 1 <= 0)
            delete this;
    }
    virtual void remember() { referenceCount.fetch_add(1, std::memory_order_relaxed); }

    int32_t getNbReference() const { return referenceCount.load(std::memory_order_relaxed); }

protected:
    virtual ~CBaseObject() = default;

private:
    std::atomic<int32_t> referenceCount{1};
};

} // namespace Vinta
