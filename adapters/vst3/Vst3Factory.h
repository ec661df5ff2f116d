#pragma once
#include <atomic>

#include "adapters/vst3/sdk/Vst3Base.h"

// The factory a VST 3 host gets from GetPluginFactory: one class per plug-in of the library.
class Vst3Factory : public Steinberg::IPluginFactory3 {
public:
    static constexpr int kMaxClasses = 10;

    Vst3Factory();
    virtual ~Vst3Factory() = default;

    Steinberg::tresult queryInterface(const Steinberg::TUID interfaceId, void** object) override;
    Steinberg::uint32 addRef() override;
    Steinberg::uint32 release() override;
    Steinberg::tresult getFactoryInfo(Steinberg::PFactoryInfo* info) override;
    Steinberg::int32 countClasses() override;
    Steinberg::tresult getClassInfo(Steinberg::int32 index, Steinberg::PClassInfo* info) override;
    Steinberg::tresult createInstance(Steinberg::FIDString cid, Steinberg::FIDString interfaceId, void** object) override;
    Steinberg::tresult getClassInfo2(Steinberg::int32 index, Steinberg::PClassInfo2* info) override;
    Steinberg::tresult getClassInfoUnicode(Steinberg::int32 index, Steinberg::PClassInfoW* info) override;
    Steinberg::tresult setHostContext(Steinberg::FUnknown* context) override;

    // "duAdNVCGWRPR" followed by the plug-in's four-character id.
    static Steinberg::Uid classId(int32_t uniqueId);

private:
    std::atomic<Steinberg::uint32> references{1};
    int classes = 0;
};
