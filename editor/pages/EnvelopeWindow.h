#pragma once
// The envelope follower of each filter: attack, release and strength for the low-pass and the
// high-pass, where the level is measured and its boost, with a strip chart of each envelope.
#include <array>
#include <atomic>

#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class CEnvelopeWindow : public Vinta_AttachedWindow {
public:
    static constexpr int kHistoryLength = 80;  // one value per pixel of the charts
    static constexpr int kTapsPerPixel = 5;

    explicit CEnvelopeWindow(const CInfo& info);

    // From the audio tap: keeps the peaks, and every fifth call moves the charts on by a pixel.
    void pushEnvelope(float low, float high);
    void clearHistory();
    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CEnvelopeWindow"; }

    // The chart value `age` pixels back from the newest (0), for tests and drawing.
    float historyAt(bool lowSide, int age) const;
    Ondra::ParameterProperty& getZoomParameter() { return zoom; }

private:
    void drawChart(Vinta::CDrawContext* context, const Vinta::CRect& chart, bool lowSide);

    Ondra::ParameterProperty& zoom;
    Vinta::CRect lowChart;
    Vinta::CRect highChart;
    std::array<std::atomic<float>, kHistoryLength> low{};
    std::array<std::atomic<float>, kHistoryLength> high{};
    std::atomic<uint32_t> newest{0};
    float lowPeak = 0.0f;
    float highPeak = 0.0f;
    int count = 0;
};

}  // namespace ZonfraPages
