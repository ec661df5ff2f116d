// Puts the pages into every display the editor builds and routes the audio tap's numbers to them.
#include <memory>

#include "editor/CMultiDisplay.h"
#include "editor/pages/EffectPageHost.h"
#include "effect/CZonfra.h"

namespace ZonfraPages {

namespace {

// The host the pages keep, which also takes the display's feeds for them.
class DisplayPageHost : public EffectPageHost, public ZonfraEditor::CMultiDisplay::ITapPage {
public:
    using EffectPageHost::EffectPageHost;

    void pushEnvelope(float low, float high) override { pages.pushEnvelope(low, high); }
    void setGainReduction(float gain) override { pages.setGainReduction(gain); }
    void setRingModFrequency(float hertz) override { pages.setRingModFrequency(hertz); }
    void setFreqModValues(float frequency, float mix) override { pages.setFreqModValues(frequency, mix); }
    void clearHistory() override { pages.clearDisplays(); }

    PageSet pages;
};

void buildPages(ZonfraEditor::CMultiDisplay& display, Ondra::OndraOS* plugin) {
    auto host = std::make_unique<DisplayPageHost>(dynamic_cast<CZonfra*>(plugin));
    DisplayPageHost* tap = host.get();
    tap->pages = addPages(display, std::move(host));
    display.setTapPage(tap);
}

[[maybe_unused]] const bool registered = (ZonfraEditor::CMultiDisplay::pageBuilder = buildPages, true);

}  // namespace

}  // namespace ZonfraPages
