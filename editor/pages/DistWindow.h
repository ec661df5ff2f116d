#pragma once
// Distortion and rate reduction: their levels, whether each runs before or after the filters, and
// how far the rate follows the low-pass cutoff.
#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class PageHost;

class CDistWindow : public Vinta_AttachedWindow {
public:
    CDistWindow(PageHost& host, PageSides* pageSides);

    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CDistWindow"; }

private:
    Ondra::IPluginParameter* rateLink;
};

}  // namespace ZonfraPages
