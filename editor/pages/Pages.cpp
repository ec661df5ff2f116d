#include "editor/pages/Pages.h"

#include "editor/pages/DistWindow.h"
#include "editor/pages/EnvelopeWindow.h"
#include "editor/pages/FreqModWindow.h"
#include "editor/pages/LfoWindow.h"
#include "editor/pages/LimiterWindow.h"
#include "editor/pages/RingModWindow.h"
#include "editor/pages/SyspageWindow.h"

namespace ZonfraPages {

namespace {

PageSet buildPages(Vinta::CViewContainer& display, PageHost& host, std::unique_ptr<PageHost> kept) {
    auto* sides = new PageSides;
    sides->keptHost = std::move(kept);
    PageSet set;
    set.envelope = new CEnvelopeWindow(pageRecord(kEnvelopePage, sides, host));
    set.lfo = new CLFOWindow(pageRecord(kLfoPage, sides, host));
    set.ringMod = new CRingModWin(pageRecord(kRingModPage, sides, host));
    set.freqMod = new CFreqModWindow(pageRecord(kFreqModPage, sides, host));
    set.distortion = new CDistWindow(pageRecord(kDistPage, sides, host));
    set.limiter = new CLimiterWindow(pageRecord(kLimiterPage, sides, host));
    set.system = new CSyspageWindow(pageRecord(kSystemPage, sides, host), host);
    sides->forget();  // the pages hold it now

    Vinta::CXButton::CInfo close;
    close.rect = kCloseButtonRect;
    for (Vinta_AttachedWindow* page : set.pages()) {
        display.addView(page);
        close.windows.push_back(page);
    }
    set.closeButton = static_cast<Vinta::CXButton*>(close.CreateObject());
    display.addView(set.closeButton);
    return set;
}

}  // namespace

PageSet addPages(Vinta::CViewContainer& display, PageHost& host) { return buildPages(display, host, nullptr); }

PageSet addPages(Vinta::CViewContainer& display, std::unique_ptr<PageHost> host) {
    if (!host) return {};
    PageHost& used = *host;
    return buildPages(display, used, std::move(host));
}

std::array<Vinta_AttachedWindow*, kPageCount> PageSet::pages() const {
    return {envelope, lfo, ringMod, freqMod, distortion, limiter, system};
}

void PageSet::pushEnvelope(float low, float high) {
    if (envelope) envelope->pushEnvelope(low, high);
}

void PageSet::setGainReduction(float gain) {
    if (limiter) limiter->setGainReduction(gain);
}

void PageSet::setRingModFrequency(float hertz) {
    if (ringMod) ringMod->setRingModFrequency(hertz);
}

void PageSet::setFreqModValues(float frequency, float mix) {
    if (freqMod) freqMod->setFreqModValues(frequency, mix);
}

void PageSet::clearDisplays() {
    if (envelope) envelope->clearHistory();
    if (limiter) limiter->resetGain();
}

}  // namespace ZonfraPages
