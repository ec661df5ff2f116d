#include "lib/controls/Vinta_ContextMenu.h"

#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/controls/CMenuItem.h"
#include "lib/views/CFrame.h"

namespace Vinta {

Vinta_ContextMenu::Vinta_ContextMenu(const CRect& rect, CControlListener* controlListener, int32_t controlTag,
                                     CBitmap* bitmap, Ondra::IPluginParameter* edited)
    : COptionMenu(rect, controlListener, controlTag, bitmap) {
    if (edited) {
        setParameter(edited);
        listenToParameter();
    }
}

Vinta_ContextMenu::~Vinta_ContextMenu() { stopListeningToParameter(); }

bool Vinta_ContextMenu::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_ContextMenu") == 0) || COptionMenu::isTypeOf(name);
}

CMenuItem* Vinta_ContextMenu::addEntry(CMenuItem* item, int32_t index) {
    if (item && item->getSubmenu()) item->getSubmenu()->setListener(this);
    return COptionMenu::addEntry(item, index);
}

void Vinta_ContextMenu::draw(CDrawContext* context) {
    if (background) drawBackground(context, size);
    setDirty(false);
}

void Vinta_ContextMenu::valueChanged(CControl*) {}

bool Vinta_ContextMenu::deliver(COptionMenu* chosen, int32_t index) {
    if (chosen == this) {
        if (parameter) parameter->setValue(this, static_cast<float>(index));
        return true;
    }
    for (CMenuItem* item : entries) {
        auto* sub = dynamic_cast<Vinta_ContextMenu*>(item->getSubmenu());
        if (sub && sub->deliver(chosen, index)) return true;
    }
    return false;
}

void Vinta_ContextMenu::takeChoice(const COptionMenuResult& chosen) {
    if (!chosen.menu) return;
    if (CFrame* owner = getFrame()) owner->setFocusView(nullptr);
    endEdit();
    lastMenu = chosen.menu;
    chosen.menu->setValue(static_cast<float>(chosen.index));
    deliver(chosen.menu, chosen.index);
    if (listener) listener->valueChanged(this);
}

} // namespace Vinta
