#include "adapters/vst3/sdk-helpers/CPluginFactory.h"

#include <cstring>

#include "adapters/vst3/sdk-helpers/StringConvert.h"

namespace Steinberg {

namespace {
// A fixed 8-bit field need not hold a terminator when it is full.
template <size_t N>
void fieldToUtf16(const char (&field)[N], char16* out, int capacity) {
    char text[N + 1];
    std::memcpy(text, field, N);
    text[N] = 0;
    StringConvert::toUtf16(text, out, capacity);
}
}  // namespace

CPluginFactory::CPluginFactory(const PFactoryInfo& info) : factoryInfo(info) {}

CPluginFactory::~CPluginFactory() = default;

bool CPluginFactory::registerClass(const PClassInfo2& info, CreateFunction create, void* context) {
    if (!create || isRegistered(info.cid)) return false;
    classes.push_back({info, create, context});
    return true;
}

bool CPluginFactory::isRegistered(const char* cid) const {
    for (const ClassEntry& c : classes)
        if (cid && std::memcmp(c.info.cid, cid, sizeof c.info.cid) == 0) return true;
    return false;
}

const CPluginFactory::ClassEntry* CPluginFactory::entry(int32 index) const {
    if (index < 0 || index >= static_cast<int32>(classes.size())) return nullptr;
    return &classes[static_cast<size_t>(index)];
}

tresult CPluginFactory::queryInterface(const TUID interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    if (!sameUid(interfaceId, FUnknown::iid) && !sameUid(interfaceId, IPluginFactory::iid) &&
        !sameUid(interfaceId, IPluginFactory2::iid) && !sameUid(interfaceId, IPluginFactory3::iid))
        return kNoInterface;
    *object = static_cast<IPluginFactory3*>(this);
    addRef();
    return kResultOk;
}

uint32 CPluginFactory::addRef() { return references.fetch_add(1) + 1; }

uint32 CPluginFactory::release() { return references.fetch_sub(1) - 1; }

tresult CPluginFactory::getFactoryInfo(PFactoryInfo* info) {
    if (!info) return kInvalidArgument;
    *info = factoryInfo;
    return kResultOk;
}

int32 CPluginFactory::countClasses() { return static_cast<int32>(classes.size()); }

tresult CPluginFactory::getClassInfo(int32 index, PClassInfo* info) {
    const ClassEntry* c = entry(index);
    if (!c || !info) return kInvalidArgument;
    std::memset(info, 0, sizeof *info);
    std::memcpy(info->cid, c->info.cid, sizeof info->cid);
    info->cardinality = c->info.cardinality;
    std::memcpy(info->category, c->info.category, sizeof info->category);
    std::memcpy(info->name, c->info.name, sizeof info->name);
    return kResultOk;
}

tresult CPluginFactory::getClassInfo2(int32 index, PClassInfo2* info) {
    const ClassEntry* c = entry(index);
    if (!c || !info) return kInvalidArgument;
    *info = c->info;
    return kResultOk;
}

tresult CPluginFactory::getClassInfoUnicode(int32 index, PClassInfoW* info) {
    const ClassEntry* c = entry(index);
    if (!c || !info) return kInvalidArgument;
    std::memset(info, 0, sizeof *info);
    std::memcpy(info->cid, c->info.cid, sizeof info->cid);
    info->cardinality = c->info.cardinality;
    std::memcpy(info->category, c->info.category, sizeof info->category);
    fieldToUtf16(c->info.name, info->name, 64);
    info->classFlags = c->info.classFlags;
    std::memcpy(info->subCategories, c->info.subCategories, sizeof info->subCategories);
    fieldToUtf16(c->info.vendor, info->vendor, 64);
    fieldToUtf16(c->info.version, info->version, 64);
    fieldToUtf16(c->info.sdkVersion, info->sdkVersion, 64);
    return kResultOk;
}

tresult CPluginFactory::setHostContext(FUnknown*) { return kResultOk; }

tresult CPluginFactory::createInstance(FIDString cid, FIDString interfaceId, void** object) {
    if (!object) return kInvalidArgument;
    *object = nullptr;
    for (const ClassEntry& c : classes) {
        if (!cid || std::memcmp(c.info.cid, cid, sizeof c.info.cid) != 0) continue;
        FUnknown* instance = c.create(c.context);
        if (!instance) return kOutOfMemory;
        const tresult result = instance->queryInterface(interfaceId, object);
        instance->release();  // the caller holds the one reference queryInterface gave
        return result;
    }
    return kInvalidArgument;
}

}  // namespace Steinberg
