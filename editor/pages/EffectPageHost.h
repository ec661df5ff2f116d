#pragma once
// The pages' way to the effect: its parameters, its preset folder, the desktop's file manager and
// folder chooser, and the support report.
#include "editor/pages/Pages.h"

class CZonfra;

namespace ZonfraPages {

class EffectPageHost : public PageHost {
public:
    explicit EffectPageHost(CZonfra* zonfra) : effect(zonfra) {}

    Ondra::IPluginParameter* findParameter(const char* key) override;
    Ondra::IPluginParameter* getGlobalLimiterParameter() override;
    std::string getPresetFolder() override;
    void openPresetFolder() override;
    void changePresetFolder(Vinta::CFrame* frame) override;
    void writeSupportReport(Vinta::CFrame* frame) override;
    std::string getVersion() override;
    int getWrapperIndex() override;

private:
    CZonfra* effect;
};

}  // namespace ZonfraPages
