#pragma once
#include <cstddef>

#include "adapters/vst3/sdk/Vst3Types.h"

namespace Steinberg {

// Interfaces have no virtual destructor: their slot order is the binary contract.
class FUnknown {
public:
    virtual tresult queryInterface(const TUID iid, void** object) = 0;
    virtual uint32 addRef() = 0;
    virtual uint32 release() = 0;
    static constexpr Uid iid = makeUid(0x00000000, 0x00000000, 0xC0000000, 0x00000046);

protected:
    ~FUnknown() = default;
};

class IBStream : public FUnknown {
public:
    enum SeekMode : int32 { kIBSeekSet = 0, kIBSeekCur = 1, kIBSeekEnd = 2 };
    virtual tresult read(void* buffer, int32 numBytes, int32* numBytesRead) = 0;
    virtual tresult write(void* buffer, int32 numBytes, int32* numBytesWritten) = 0;
    virtual tresult seek(int64 position, int32 mode, int64* result) = 0;
    virtual tresult tell(int64* position) = 0;
    static constexpr Uid iid = makeUid(0xC3BF6EA2, 0x30994752, 0x9B6BF990, 0x1EE33E9B);

protected:
    ~IBStream() = default;
};

class IPluginBase : public FUnknown {
public:
    virtual tresult initialize(FUnknown* context) = 0;
    virtual tresult terminate() = 0;
    static constexpr Uid iid = makeUid(0x22888DDB, 0x156E45AE, 0x8358B348, 0x08190625);

protected:
    ~IPluginBase() = default;
};

struct PFactoryInfo {
    enum : int32 { kNoFlags = 0, kClassesDiscardable = 1, kLicenseCheck = 2, kComponentNonDiscardable = 8, kUnicode = 16 };
    char8 vendor[64];
    char8 url[256];
    char8 email[128];
    int32 flags;
};
static_assert(sizeof(PFactoryInfo) == 452);

struct PClassInfo {
    enum : int32 { kManyInstances = 0x7FFFFFFF };
    TUID cid;
    int32 cardinality;
    char8 category[32];
    char8 name[64];
};
static_assert(sizeof(PClassInfo) == 116);

struct PClassInfo2 {
    TUID cid;
    int32 cardinality;
    char8 category[32];
    char8 name[64];
    uint32 classFlags;
    char8 subCategories[128];
    char8 vendor[64];
    char8 version[64];
    char8 sdkVersion[64];
};
static_assert(offsetof(PClassInfo2, classFlags) == 116);
static_assert(sizeof(PClassInfo2) == 440);

struct PClassInfoW {
    TUID cid;
    int32 cardinality;
    char8 category[32];
    char16 name[64];
    uint32 classFlags;
    char8 subCategories[128];
    char16 vendor[64];
    char16 version[64];
    char16 sdkVersion[64];
};
static_assert(sizeof(PClassInfoW) == 696);

class IPluginFactory : public FUnknown {
public:
    virtual tresult getFactoryInfo(PFactoryInfo* info) = 0;
    virtual int32 countClasses() = 0;
    virtual tresult getClassInfo(int32 index, PClassInfo* info) = 0;
    virtual tresult createInstance(FIDString cid, FIDString iid, void** object) = 0;
    static constexpr Uid iid = makeUid(0x7A4D811C, 0x52114A1F, 0xAED9D2EE, 0x0B43BF9F);

protected:
    ~IPluginFactory() = default;
};

class IPluginFactory2 : public IPluginFactory {
public:
    virtual tresult getClassInfo2(int32 index, PClassInfo2* info) = 0;
    static constexpr Uid iid = makeUid(0x0007B650, 0xF24B4C0B, 0xA464EDB9, 0xF00B2ABB);

protected:
    ~IPluginFactory2() = default;
};

class IPluginFactory3 : public IPluginFactory2 {
public:
    virtual tresult getClassInfoUnicode(int32 index, PClassInfoW* info) = 0;
    virtual tresult setHostContext(FUnknown* context) = 0;
    static constexpr Uid iid = makeUid(0x4555A2AB, 0xC1234E57, 0x9B122910, 0x36878931);

protected:
    ~IPluginFactory3() = default;
};

namespace Vst {

class IHostApplication : public FUnknown {
public:
    virtual tresult getName(String128 name) = 0;
    virtual tresult createInstance(TUID cid, TUID iid, void** object) = 0;
    static constexpr Uid iid = makeUid(0x58E595CC, 0xDB2D4969, 0x8B6AAF8C, 0x36A664E5);

protected:
    ~IHostApplication() = default;
};

}  // namespace Vst
}  // namespace Steinberg
