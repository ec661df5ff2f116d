#include "editor/pages/EffectPageHost.h"

#include "CORE/files/ShellCommands.h"
#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "lib/platform-x11/CFileSelector.h"

extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

namespace ZonfraPages {

Ondra::IPluginParameter* EffectPageHost::findParameter(const char* key) {
    return effect ? effect->findParameter(key) : nullptr;
}

Ondra::IPluginParameter* EffectPageHost::getGlobalLimiterParameter() {
    return effect ? &effect->getGlobalLimiterParameter() : nullptr;
}

std::string EffectPageHost::getPresetFolder() { return effect ? effect->getPresetFolder() : std::string(); }

void EffectPageHost::openPresetFolder() {
    const std::string folder = getPresetFolder();
    if (!folder.empty()) Core::openWithShell(folder);
}

void EffectPageHost::changePresetFolder(Vinta::CFrame* frame) {
    if (!effect) return;
    Vinta::CFileSelector chooser(frame);
    chooser.setTitle("Preset Folder");
    chooser.setInitialPath(getPresetFolder().c_str());
    if (chooser.run(Vinta::CFileSelector::kChooseFolder) && chooser.getResultCount() > 0)
        effect->setPresetFolder(chooser.getResult(0));
}

std::string EffectPageHost::getVersion() {
    const Ondra::OndraPluginList* list = getOndraPluginListPTR();
    const Ondra::OndraPluginInfo* info = list ? list->get(0) : nullptr;
    return info && info->versionText ? info->versionText : "";
}

int EffectPageHost::getWrapperIndex() {
    Ondra::OndraCallback* callback = effect ? effect->getCallback() : nullptr;
    return callback ? callback->getPluginType() : 0;
}

}  // namespace ZonfraPages
