#include "editor/pages/RingModWindow.h"


namespace ZonfraPages {

// Parameters: frequency, mix, link amount.
CRingModWin::CRingModWin(const CInfo& info) : Vinta_AttachedWindow(info) {
    frequency.stored = info.parameters[0];
    frequency.amount = info.parameters[2];
    frequency.makeProxy(ownParameter());

    DialColumn column{5.0, 4.0, 105.0, 45.0};
    frequency.shown = addRow(column, frequency.stored);
    addRow(column, info.parameters[1], 5.0);
    addRow(column, frequency.amount);
    frequency.root = addRow(column, frequency.stored, 0.0, "RootFreq");
    listenTo(frequency.amount);
    frequency.apply();
}

void CRingModWin::setRingModFrequency(float hertz) {
    frequency.inForce.store(hertz, std::memory_order_relaxed);
    if (frequency.isLinked()) markChanged();
}

void CRingModWin::drawContent(Vinta::CDrawContext* context) {
    if (frequency.isLinked()) drawLinkMark(context, 30.0, 3.0);
}

}  // namespace ZonfraPages
