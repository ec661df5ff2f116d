#include <new>

#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "framework/presets/CPresetFormatFXB.h"
#include "framework/presets/CPresetFormatFXP.h"

#define ZONFRA_EXPORT extern "C" __attribute__((visibility("default")))

namespace {
const Ondra::OndraPluginInfo kZonfraInfo = {.uniqueId = Ondra::fourCharacterId("Vzon"),
                                             .name = "MMK Zonfra QT",
                                             .vendor = "Morvandel Mixing Kit",
                                             .maker = "Morvandel",
                                             .inputPairs = 1,
                                             .outputPairs = 1,
                                             .programCount = 1,
                                             .versionText = "1.3.0",
                                             .category = Ondra::kCategoryEffect,
                                             .wantsExtraInputPair = false,
                                             .versionNumber = 0x10300,
                                             .flag = 1};
}  // namespace

ZONFRA_EXPORT Ondra::OndraOS* createOndraInstance(Ondra::OndraCallback* callback, int /*uniqueId*/) {
    return new (std::nothrow) CZonfra(callback);
}

ZONFRA_EXPORT Ondra::OndraPluginList* getOndraPluginListPTR() {
    static Ondra::OndraPluginList list;
    if (list.getCount() == 0) {
        list.add(kZonfraInfo);
        // Preset files carry the plug-in's id; until the list is filled the formats know none.
        Ondra::presetFormatFXP().fxID = static_cast<uint32_t>(kZonfraInfo.uniqueId);
        Ondra::presetFormatFXB().fxID = static_cast<uint32_t>(kZonfraInfo.uniqueId);
    }
    return &list;
}

ZONFRA_EXPORT ISamplerEffect* getSamplerInterface(Ondra::OndraOS* plugin) {
    return plugin ? dynamic_cast<ISamplerEffect*>(plugin) : nullptr;
}
