#include "editor/pages/FreqModWindow.h"

#include "editor/pages/Pages.h"

namespace ZonfraPages {

CFreqModWindow::CFreqModWindow(PageHost& host, PageSides* pageSides)
    : Vinta_AttachedWindow(pageLayout(kFreqModPage, pageSides), pageSides) {
    frequency.stored = host.findParameter("FreqModFreq");
    frequency.amount = host.findParameter("FreqModLinkFreqPerc.");
    frequency.makeProxy(ownParameter());
    mix.stored = host.findParameter("FreqModeStrength");
    mix.amount = host.findParameter("FreqModLinkMixPercent");
    mix.makeProxy(ownParameter());

    DialColumn column{5.0, 4.0, 105.0, 45.0};
    frequency.shown = addRow(column, frequency.stored);
    mix.shown = addRow(column, mix.stored, 5.0);
    addRow(column, frequency.amount);
    addRow(column, mix.amount);
    frequency.root = addRow(column, frequency.stored, 0.0, "FreqRoot");
    mix.root = addRow(column, mix.stored, 0.0, "Mix Root");
    listenTo(frequency.amount);
    listenTo(mix.amount);
    applyChanges();
}

void CFreqModWindow::setFreqModValues(float frequencyInForce, float mixInForce) {
    frequency.inForce.store(frequencyInForce, std::memory_order_relaxed);
    mix.inForce.store(mixInForce, std::memory_order_relaxed);
    if (frequency.isLinked() || mix.isLinked()) markChanged();
}

void CFreqModWindow::drawContent(Vinta::CDrawContext* context) {
    if (frequency.isLinked()) drawLinkMark(context, 30.0, 3.0);
    if (mix.isLinked()) drawLinkMark(context, 30.0, 17.0);
}

}  // namespace ZonfraPages
