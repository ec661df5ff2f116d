#pragma once
// The ring modulator: its frequency, its mix and how far the frequency follows the low-pass cutoff.
#include "editor/pages/AttachedWindow.h"
#include "editor/pages/ModLink.h"

namespace ZonfraPages {

class CRingModWin : public Vinta_AttachedWindow {
public:
    explicit CRingModWin(const CInfo& info);

    // From the audio tap: the frequency in use, which the first dial shows while linked.
    void setRingModFrequency(float hertz);
    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CRingModWin"; }
    const ModLink& getLink() const { return frequency; }

protected:
    void applyChanges() override { frequency.apply(); }

private:
    ModLink frequency;
};

}  // namespace ZonfraPages
