#pragma once
// The LFO: rate, shape, tempo sync, its depth on each filter, the phase shift and the tempo of its
// own, with a drawing of one cycle of the chosen shape.
#include "dsp/generators/CLfoGenerator.h"
#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class CLFOWindow : public Vinta_AttachedWindow {
public:
    explicit CLFOWindow(const CInfo& info);

    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CLFOWindow"; }
    // The shape the preview draws for a shape value: the random steps (5) show as ramps (7), which
    // read better at this size.
    static int previewShape(int shape) { return shape == 5 ? 7 : shape; }

private:
    Ondra::IPluginParameter* shape;
    Ondra::IPluginParameter* shift;
    Vinta::CRect chart;
    DSP::CLfoGenerator preview;
};

}  // namespace ZonfraPages
