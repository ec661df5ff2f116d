#pragma once
#include <atomic>
#include <vector>

#include "adapters/vst3/sdk/Vst3Base.h"

namespace Steinberg {

// A factory that describes and creates the classes registered with it. Every form of class
// information comes from the one PClassInfo2 given at registration. The count only serves the
// host's bookkeeping: whoever made the factory decides how long it lives.
class CPluginFactory : public IPluginFactory3 {
public:
    // Makes one object with one reference, or null.
    using CreateFunction = FUnknown* (*)(void* context);

    explicit CPluginFactory(const PFactoryInfo& info);
    virtual ~CPluginFactory();
    CPluginFactory(const CPluginFactory&) = delete;
    CPluginFactory& operator=(const CPluginFactory&) = delete;

    // Copies the description; false without a creation function or for a class id already taken.
    bool registerClass(const PClassInfo2& info, CreateFunction create, void* context = nullptr);
    bool isRegistered(const char* cid) const;

    tresult queryInterface(const TUID interfaceId, void** object) override;
    uint32 addRef() override;
    uint32 release() override;
    tresult getFactoryInfo(PFactoryInfo* info) override;
    int32 countClasses() override;
    tresult getClassInfo(int32 index, PClassInfo* info) override;
    tresult createInstance(FIDString cid, FIDString interfaceId, void** object) override;
    tresult getClassInfo2(int32 index, PClassInfo2* info) override;
    tresult getClassInfoUnicode(int32 index, PClassInfoW* info) override;
    tresult setHostContext(FUnknown* context) override;

private:
    struct ClassEntry {
        PClassInfo2 info;
        CreateFunction create;
        void* context;
    };
    const ClassEntry* entry(int32 index) const;

    PFactoryInfo factoryInfo;
    std::vector<ClassEntry> classes;
    std::atomic<uint32> references{1};
};

}  // namespace Steinberg
