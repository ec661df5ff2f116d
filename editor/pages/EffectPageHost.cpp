#include "editor/pages/EffectPageHost.h"

#include "CORE/report/SupportReport.h"
#include "lib/platform-x11/CMessageBox.h"

#include "CORE/files/ShellCommands.h"
#include "effect/CZonfra.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "lib/platform-x11/CFileSelector.h"
#include "lib/views/CFrame.h"

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
    // The effect outlives the editor, and the answer never comes once the editor has closed.
    chooser.run(Vinta::CFileSelector::kChooseFolder,
                [zonfra = effect, tree = frame](const std::vector<std::string>& paths) {
                    if (paths.empty()) return;
                    zonfra->setPresetFolder(paths.front());
                    tree->addDirtyRect(tree->getViewSize());  // the system page shows the new folder
                });
}

void EffectPageHost::writeSupportReport(Vinta::CFrame* frame) {
    if (!effect) return;
    Ondra::OndraCallback* callback = effect->getCallback();
    char product[256] = {0}, vendor[256] = {0};
    std::string version;
    if (callback) {
        callback->getHostProductString(product);
        callback->getHostVendorString(vendor);
        if (const int number = callback->getHostVendorVersion()) version = std::to_string(number);
    }
    const char* type = effect->getHostedPluginTypeName();
    const Core::SupportReportOutcome outcome = Core::writeSupportReport(
        Core::buildProductSection(getVersion().c_str(), getPresetFolder(), type),
        Core::buildHostSection(effect->getBlockSize(), effect->getSampleRate(), type, product, vendor, version));
    if (outcome.tellUser && frame) Vinta::CMessageBox::show(frame, outcome.title, outcome.text, {outcome.button}, nullptr);
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
