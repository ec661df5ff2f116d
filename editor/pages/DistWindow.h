#pragma once
// Distortion and rate reduction: their levels, whether each runs before or after the filters, and
// how far the rate follows the low-pass cutoff.
#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class CDistWindow : public Vinta_AttachedWindow {
public:
    explicit CDistWindow(const CInfo& info);

    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CDistWindow"; }

private:
    Ondra::IPluginParameter* rateLink;
};

}  // namespace ZonfraPages
