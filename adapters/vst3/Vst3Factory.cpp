#include "adapters/vst3/Vst3Factory.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

#include "adapters/vst3/Ondra_VST3.h"
#include "adapters/vst3/sdk-helpers/StringConvert.h"
#include "framework/plugin/OndraPluginInfo.h"

extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

using namespace Steinberg;
using Steinberg::StringConvert::copyField;

namespace {
const char* const kFactoryVendor = "Halvren Audio / Morvandel";
const char* const kFactoryUrl = "http://www.morvandel.com";
const char* const kFactoryEmail = "mailto:support@morvandel.com";
const char* const kSdkVersion = "VST 3.1.0";
const char* const kCategory = "Audio Module Class";

// One creation function per class slot; they differ only in the entry of the plug-in list.
template <int classIndex>
FUnknown* createClass(void*) {
    auto* instance = new (std::nothrow) Ondra_VST3(classIndex);
    return instance ? static_cast<Vst::IAudioProcessor*>(instance) : nullptr;
}

template <int... index>
constexpr auto creatorsFor(std::integer_sequence<int, index...>) {
    return std::array<CPluginFactory::CreateFunction, sizeof...(index)>{createClass<index>...};
}
constexpr auto kCreators = creatorsFor(std::make_integer_sequence<int, Vst3Factory::kMaxClasses>{});

PFactoryInfo factoryInfo() {
    PFactoryInfo info{};
    copyField(info.vendor, sizeof info.vendor, kFactoryVendor);
    copyField(info.url, sizeof info.url, kFactoryUrl);
    copyField(info.email, sizeof info.email, kFactoryEmail);
    info.flags = PFactoryInfo::kUnicode;
    return info;
}

PClassInfo2 classInfo(const Ondra::OndraPluginInfo& plugin) {
    PClassInfo2 info;
    std::memset(&info, 0, sizeof info);
    Vst3Factory::classId(plugin.uniqueId).toTUID(info.cid);
    info.cardinality = PClassInfo::kManyInstances;
    copyField(info.category, sizeof info.category, kCategory);
    copyField(info.name, sizeof info.name, plugin.name);
    info.classFlags = 0;
    copyField(info.subCategories, sizeof info.subCategories,
              plugin.category == Ondra::kCategoryInstrument ? "Instrument" : "Fx|Morvandel");
    copyField(info.vendor, sizeof info.vendor, plugin.vendor);
    copyField(info.version, sizeof info.version, plugin.versionText);
    copyField(info.sdkVersion, sizeof info.sdkVersion, kSdkVersion);
    return info;
}

bool registerClasses(CPluginFactory& factory) {
    Ondra::OndraPluginList* list = getOndraPluginListPTR();
    const int classes = list ? std::min(list->getCount(), Vst3Factory::kMaxClasses) : 0;
    for (int index = 0; index < classes; ++index)
        if (const Ondra::OndraPluginInfo* plugin = list->get(index))
            factory.registerClass(classInfo(*plugin), kCreators[static_cast<size_t>(index)]);
    return true;
}
}  // namespace

namespace Vst3Factory {

CPluginFactory& instance() {
    static CPluginFactory factory(factoryInfo());
    [[maybe_unused]] static const bool registered = registerClasses(factory);
    return factory;
}

FUID classId(int32_t uniqueId) {
    return FUID(0x64754164, 0x4E564347, 0x57525052, static_cast<uint32>(uniqueId));  // "duAd" "NVCG" "WRPR"
}

}  // namespace Vst3Factory
