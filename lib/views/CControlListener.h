#pragma once
#include "lib/views/VintaEvents.h"

namespace Vinta {

class CControl;

// Whoever is told of a control's activity (usually the editor).
class CControlListener {
public:
    virtual ~CControlListener() = default;
    virtual void valueChanged(CControl* control) = 0;
    // Answer true to take a click with modifiers before the control sees it.
    virtual bool controlModifierClicked(CControl*, CButtonState) { return false; }
    virtual void controlBeginEdit(CControl*) {}
    virtual void controlEndEdit(CControl*) {}
};

} // namespace Vinta
