#include "editor/CMultiDisplay.h"

#include "editor/CZonfraEditor.h"
#include "framework/parameters/ParameterRecord.h"
#include "framework/parameters/UnitType.h"
#include "lib/views/VintaClock.h"

namespace ZonfraEditor {

using namespace Vinta;

CMultiDisplay::PageBuilder CMultiDisplay::pageBuilder = nullptr;

CMultiDisplay::CMultiDisplay(const CRect& rect, Ondra::OndraOS* plugin, Ondra::IPluginParameter* const* plotSources,
                             Ondra::IPluginParameter* infoPageParameter)
    : CViewContainer(rect), infoPage(infoPageParameter) {
    setTransparency(true);
    const double w = rect.getWidth(), h = rect.getHeight();
    inputMeter = new CLineVUBar(CRect(5.0, 15.0, 24.0, h - 15.0));
    addView(inputMeter);
    outputMeter = new CLineVUBar(CRect(w - 25.0, 15.0, w - 6.0, h - 15.0));
    addView(outputMeter);
    plot = new CPlotDisplay(CRect(0.0, 0.0, w, h), plotSources);
    addView(plot);
    pageLeft.initFromRecord(Ondra::ParameterRecord{"PAGELEFT", "PAGELEFT", "PAGELEFT", 0, 10, 0, 0, false, 0,
                                                   Ondra::kUnitNumber, 0x5047454C});
    pageRight.initFromRecord(Ondra::ParameterRecord{"PAGERIGHT", "PAGERIGHT", "PAGERIGHT", 0, 10, 0, 0, false, 0,
                                                    Ondra::kUnitNumber, 0x50474552});
    if (pageBuilder) pageBuilder(*this, plugin);
    if (infoPage) infoPage->addListener(this, true);
    startTimer(15);
}

CMultiDisplay::~CMultiDisplay() {
    stopTimer();
    if (infoPage) infoPage->removeListener(this);
}

void CMultiDisplay::setTapPage(ITapPage* page) {
    if (page && tapPageCount < kMaxTapPages) tapPages[tapPageCount++] = page;
}

void CMultiDisplay::pushEnvelope(float low, float high) {
    for (int i = 0; i < tapPageCount; ++i) tapPages[i]->pushEnvelope(low, high);
}

void CMultiDisplay::setGainReduction(float gain) {
    for (int i = 0; i < tapPageCount; ++i) tapPages[i]->setGainReduction(gain);
}

void CMultiDisplay::setRingModFrequency(float hertz) {
    for (int i = 0; i < tapPageCount; ++i) tapPages[i]->setRingModFrequency(hertz);
}

void CMultiDisplay::setFreqModValues(float frequency, float mix) {
    for (int i = 0; i < tapPageCount; ++i) tapPages[i]->setFreqModValues(frequency, mix);
}

void CMultiDisplay::clearDisplays() {
    plot->requestClear();
    inputMeter->clearLevels();
    outputMeter->clearLevels();
    for (int i = 0; i < tapPageCount; ++i) tapPages[i]->clearHistory();
}

void CMultiDisplay::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed == infoPage) setVisible(changed->getBool());
}

void CMultiDisplay::onTimer(uint32_t) {
    const uint32_t now = getVintaTicks();
    inputMeter->updatePeaks(now);
    outputMeter->updatePeaks(now);
    if (auto* editor = dynamic_cast<CZonfraEditor*>(getEditor())) editor->updateHoverText();
    setDirty(true);
}

}  // namespace ZonfraEditor
