#include "editor/pages/FreqModWindow.h"


namespace ZonfraPages {

// Parameters: frequency, mix, frequency link amount, mix link amount.
CFreqModWindow::CFreqModWindow(const CInfo& info) : Vinta_AttachedWindow(info) {
    frequency.stored = info.parameters[0];
    frequency.amount = info.parameters[2];
    frequency.makeProxy(ownParameter());
    mix.stored = info.parameters[1];
    mix.amount = info.parameters[3];
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
