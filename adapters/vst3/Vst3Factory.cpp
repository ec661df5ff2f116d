#include "adapters/vst3/Vst3Factory.h"

#include <cstring>
#include <new>

#include "adapters/vst3/Ondra_VST3.h"
#include "adapters/vst3/Vst3Text.h"
#include "framework/plugin/OndraPluginInfo.h"

extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

using namespace Steinberg;

namespace {
const char* const kFactoryVendor = "Halvren Audio / Morvandel";
const char* const kFactoryUrl = "http://www.morvandel.com";
const char* const kFactoryEmail = "mailto:support@morvandel.com";
const char* const kSdkVersion = "VST 3.1.0";
const char* const kCategory = "Audio Module Class";

const Ondra::OndraPluginInfo* entry(int index) {
    Ondra::OndraPluginList* list = getOndraPluginListPTR();
    return list ? list->get(index) : nullptr;
}

// The fields every form of class information shares.
template <typename Info>
void fillIdentity(Info& info, const Ondra::OndraPluginInfo& plugin) {
    std::memset(&info, 0, sizeof info);
    std::memcpy(info.cid, Vst3Factory::classId(plugin.uniqueId).bytes, 16);
    info.cardinality = PClassInfo::kManyInstances;
    Vst3Text::copyField(info.category, sizeof info.category, kCategory);
}

const char* subCategoriesOf(const Ondra::OndraPluginInfo& info) {
    return info.category == Ondra::kCategoryKind1002 ? "Instrument" : "Fx|Morvandel";
}
}  // namespace

Vst3Factory::Vst3Factory() {
    Ondra::OndraPluginList* list = getOndraPluginListPTR();
    classes = list ? std::min(list->getCount(), kMaxClasses) : 0;
}

Uid Vst3Factory::classId(int32_t uniqueId) {
    Uid uid{};
    std::memcpy(uid.bytes, "duAdNVCGWRPR", 12);
    const uint32_t id = static_cast<uint32_t>(uniqueId);
    for (int b = 0; b < 4; ++b) uid.bytes[12 + b] = static_cast<char>((id >> (24 - 8 * b)) & 0xFF);
    return uid;
}

tresult Vst3Factory::queryInterface(const TUID interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    if (sameUid(interfaceId, FUnknown::iid) || sameUid(interfaceId, IPluginFactory::iid) || sameUid(interfaceId, IPluginFactory2::iid) ||
        sameUid(interfaceId, IPluginFactory3::iid)) {
        *object = static_cast<IPluginFactory3*>(this);
        addRef();
        return kResultOk;
    }
    return kNoInterface;
}

uint32 Vst3Factory::addRef() { return references.fetch_add(1) + 1; }

uint32 Vst3Factory::release() {
    // The factory lives as long as the library: hosts may release it to 0 and ask again.
    const uint32 left = references.fetch_sub(1) - 1;
    return left;
}

tresult Vst3Factory::getFactoryInfo(PFactoryInfo* info) {
    if (!info) return kInvalidArgument;
    std::memset(info, 0, sizeof *info);
    Vst3Text::copyField(info->vendor, sizeof info->vendor, kFactoryVendor);
    Vst3Text::copyField(info->url, sizeof info->url, kFactoryUrl);
    Vst3Text::copyField(info->email, sizeof info->email, kFactoryEmail);
    info->flags = PFactoryInfo::kUnicode;
    return kResultOk;
}

int32 Vst3Factory::countClasses() { return classes; }

tresult Vst3Factory::getClassInfo(int32 index, PClassInfo* info) {
    const Ondra::OndraPluginInfo* plugin = index >= 0 && index < classes ? entry(index) : nullptr;
    if (!plugin || !info) return kInvalidArgument;
    fillIdentity(*info, *plugin);
    Vst3Text::copyField(info->name, sizeof info->name, plugin->name);
    return kResultOk;
}

tresult Vst3Factory::getClassInfo2(int32 index, PClassInfo2* info) {
    const Ondra::OndraPluginInfo* plugin = index >= 0 && index < classes ? entry(index) : nullptr;
    if (!plugin || !info) return kInvalidArgument;
    fillIdentity(*info, *plugin);
    Vst3Text::copyField(info->name, sizeof info->name, plugin->name);
    info->classFlags = 0;
    Vst3Text::copyField(info->subCategories, sizeof info->subCategories, subCategoriesOf(*plugin));
    Vst3Text::copyField(info->vendor, sizeof info->vendor, plugin->vendor);
    Vst3Text::copyField(info->version, sizeof info->version, plugin->versionText);
    Vst3Text::copyField(info->sdkVersion, sizeof info->sdkVersion, kSdkVersion);
    return kResultOk;
}

tresult Vst3Factory::getClassInfoUnicode(int32 index, PClassInfoW* info) {
    const Ondra::OndraPluginInfo* plugin = index >= 0 && index < classes ? entry(index) : nullptr;
    if (!plugin || !info) return kInvalidArgument;
    fillIdentity(*info, *plugin);
    Vst3Text::toUtf16(plugin->name, info->name, 64);
    Vst3Text::copyField(info->subCategories, sizeof info->subCategories, subCategoriesOf(*plugin));
    Vst3Text::toUtf16(plugin->vendor, info->vendor, 64);
    Vst3Text::toUtf16(plugin->versionText, info->version, 64);
    Vst3Text::toUtf16(kSdkVersion, info->sdkVersion, 64);
    return kResultOk;
}

tresult Vst3Factory::setHostContext(FUnknown*) { return kResultOk; }

tresult Vst3Factory::createInstance(FIDString cid, FIDString interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    for (int index = 0; index < classes; ++index) {
        const Ondra::OndraPluginInfo* plugin = entry(index);
        if (!plugin || !sameUid(cid, classId(plugin->uniqueId))) continue;
        auto* instance = new (std::nothrow) Ondra_VST3(index);
        if (!instance) return kOutOfMemory;
        const tresult result = instance->queryInterface(interfaceId, object);
        instance->release();  // the host holds the one reference queryInterface gave
        return result;
    }
    return kInvalidArgument;
}
