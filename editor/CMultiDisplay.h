#pragma once
// The display under the preset row: the response plot, the input meters at its left and the
// output meters at its right, and the page windows above them. It takes what the audio tap hands
// over and repaints on a 15 ms timer.
#include "editor/CLineVUBar.h"
#include "editor/CPlotDisplay.h"
#include "framework/parameters/ParameterChangeListener.h"
#include "framework/parameters/ParameterProperty.h"
#include "lib/views/CTimerObject.h"
#include "lib/views/CViewContainer.h"

namespace Ondra {
class OndraOS;
}

namespace ZonfraEditor {

class CMultiDisplay : public Vinta::CViewContainer, public Ondra::ParameterChangeListener, public Vinta::CTimerObject {
public:
    // What a page window takes from the audio tap; audio thread, numbers only.
    class ITapPage {
    public:
        virtual void pushEnvelope(float, float) {}
        virtual void setGainReduction(float) {}
        virtual void setRingModFrequency(float) {}
        virtual void setFreqModValues(float, float) {}
        virtual void clearHistory() {}

    protected:
        ~ITapPage() = default;
    };
    // Adds the page windows; set by the pages where they are linked in.
    using PageBuilder = void (*)(CMultiDisplay& display, Ondra::OndraOS* plugin);
    static PageBuilder pageBuilder;
    static constexpr int kMaxTapPages = 8;

    // `plotSources` as CPlotDisplay takes them; `infoPage` shows and hides the whole display.
    CMultiDisplay(const Vinta::CRect& size, Ondra::OndraOS* plugin, Ondra::IPluginParameter* const* plotSources,
                  Ondra::IPluginParameter* infoPage);
    ~CMultiDisplay() override;

    // Audio thread.
    void setInputLevels(float left, float right) { inputMeter->setLevels(left, right); }
    void setOutputLevels(float left, float right) { outputMeter->setLevels(left, right); }
    void pushSpectrum(const float* left, const float* right, int count) { plot->pushSpectrum(left, right, count); }
    void setEnvelopeCutoffs(float low, float high) { plot->setEnvelopeCutoffs(low, high); }
    void setLfoCutoffs(float low, float high) { plot->setLfoCutoffs(low, high); }
    void pushEnvelope(float low, float high);
    void setGainReduction(float gain);
    void setRingModFrequency(float hertz);
    void setFreqModValues(float frequency, float mix);
    // Any thread.
    void clearDisplays();

    void setTapPage(ITapPage* page);
    Ondra::ParameterProperty& getPageLeftParameter() { return pageLeft; }
    Ondra::ParameterProperty& getPageRightParameter() { return pageRight; }
    CPlotDisplay* getPlot() const { return plot; }
    CLineVUBar* getInputMeter() const { return inputMeter; }
    CLineVUBar* getOutputMeter() const { return outputMeter; }

    void parameterChanged(Ondra::IPluginParameter* parameter) override;
    void onTimer(uint32_t elapsedMilliseconds) override;
    const char* getClassName() const override { return "CMultiDisplay"; }

private:
    CLineVUBar* inputMeter = nullptr;
    CLineVUBar* outputMeter = nullptr;
    CPlotDisplay* plot = nullptr;
    Ondra::ParameterProperty pageLeft;
    Ondra::ParameterProperty pageRight;
    Ondra::IPluginParameter* infoPage = nullptr;
    ITapPage* tapPages[kMaxTapPages] = {};
    int tapPageCount = 0;
};

}  // namespace ZonfraEditor
