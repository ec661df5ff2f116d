#pragma once
// The frequency modulator: frequency and mix, each of which may follow the low-pass cutoff.
#include "editor/pages/AttachedWindow.h"
#include "editor/pages/ModLink.h"

namespace ZonfraPages {

class CFreqModWindow : public Vinta_AttachedWindow {
public:
    explicit CFreqModWindow(const CInfo& info);

    // From the audio tap: the frequency and the mix in use.
    void setFreqModValues(float frequency, float mix);
    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CFreqModWindow"; }
    const ModLink& getFrequencyLink() const { return frequency; }
    const ModLink& getMixLink() const { return mix; }

protected:
    void applyChanges() override {
        frequency.apply();
        mix.apply();
    }

private:
    ModLink frequency;
    ModLink mix;
};

}  // namespace ZonfraPages
