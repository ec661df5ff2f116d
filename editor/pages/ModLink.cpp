#include "editor/pages/ModLink.h"

#include <cmath>

#include "editor/pages/PageStyle.h"
#include "lib/drawing/CDrawContext.h"

namespace ZonfraPages {

using namespace Vinta;

void ModLink::makeProxy(Ondra::ParameterProperty& own) {
    proxy = &own;
    if (auto* source = dynamic_cast<Ondra::ParameterProperty*>(stored)) {
        own.copyFrom(*source);
    } else if (stored) {
        own.setName(stored->getName());
        own.setUnitType(stored->getUnitType());
        own.setMinimum(stored->getMinimum());
        own.setMaximum(stored->getMaximum());
        own.setValue(stored->getValue());
    }
    own.setAutomatable(false);
    if (stored) inForce.store(stored->getValue(), std::memory_order_relaxed);
}

void ModLink::apply() {
    const bool linked = isLinked();
    if (shown) {
        shown->setParameter(linked && proxy ? proxy : stored);
        shown->setEnabled(!linked);
    }
    if (root) root->setEnabled(linked);
    const float value = inForce.load(std::memory_order_relaxed);
    if (linked && proxy && std::isfinite(value) && proxy->getValue() != value) proxy->setValue(value);
}

void drawLinkMark(CDrawContext* context, double left, double top) {
    // Two interlocked rings, 10 by 12 units.
    context->setLineWidth(1.2f);
    context->setFrameColor(kPanelColor120);
    context->drawRoundRect(CRect(left + 1.0, top + 1.0, left + 6.0, top + 7.5), 2.0, kDrawStroked);
    context->drawRoundRect(CRect(left + 4.0, top + 4.5, left + 9.0, top + 11.0), 2.0, kDrawStroked);
}

}  // namespace ZonfraPages
