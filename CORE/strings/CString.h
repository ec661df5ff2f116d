#pragma once
#include <cstdint>

namespace Core {

// Abstract text holder. The slots after c_str are kept free for later additions.
class IString {
public:
    virtual void assign(const char* source) = 0;
    virtual char* c_str() const = 0;
    virtual void reserved0() {}
    virtual void reserved1() {}
    virtual void reserved2() {}
    virtual void reserved3() {}
    virtual void reserved4() {}

protected:
    ~IString() = default;
};

// Bounded text over storage it does not own; never allocates, so it is safe on the audio thread.
class CString : public IString {
public:
    CString(char* storage, int32_t capacityBytes) : buffer(storage), capacity(capacityBytes) {}
    CString(const CString&) = delete;
    CString& operator=(const CString&) = delete;
    virtual ~CString() = default;

    void assign(const char* source) override;
    char* c_str() const override { return buffer; }
    void copyTo(char* destination) const;
    void toUpper();
    void toLower();
    void replaceAll(const char* what, const char* with);
    int32_t getCapacity() const { return capacity; }

protected:
    char* buffer;
    int32_t capacity;
};

// A CString followed by its own N bytes of storage.
template <int N>
class CStringBufferd : public CString {
public:
    CStringBufferd() : CString(storage, N) { storage[0] = 0; }
    explicit CStringBufferd(const char* text) : CStringBufferd() { assign(text); }

private:
    char storage[N];
};

}  // namespace Core
