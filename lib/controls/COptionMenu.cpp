#include "lib/controls/COptionMenu.h"

#include <cstdio>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/controls/CMenuItem.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"
#include "lib/views/KeepAlive.h"

namespace Vinta {

COptionMenu::COptionMenu(const CRect& rect, CControlListener* controlListener, int32_t controlTag, CBitmap* bitmap,
                         uint32_t styleBits)
    : CParamDisplay(rect, bitmap, styleBits) {
    listener = controlListener;
    tag = controlTag;
}

COptionMenu::~COptionMenu() { removeAllEntry(); }

bool COptionMenu::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "COptionMenu") == 0) || CParamDisplay::isTypeOf(name);
}

CMenuItem* COptionMenu::addEntry(CMenuItem* item, int32_t index) {
    if (!item) return nullptr;
    if (index < 0 || index > getNbEntries())
        entries.push_back(item);
    else
        entries.insert(entries.begin() + index, item);
    return item;
}

CMenuItem* COptionMenu::addEntry(const char* title, int32_t index, uint32_t flags) {
    return addEntry(new CMenuItem(title, -1, flags), index);
}

CMenuItem* COptionMenu::getEntry(int32_t index) const {
    return index >= 0 && index < getNbEntries() ? entries[static_cast<size_t>(index)] : nullptr;
}

bool COptionMenu::removeAllEntry() {
    for (CMenuItem* item : entries) item->forget();
    entries.clear();
    currentIndex = -1;
    return true;
}

bool COptionMenu::checkEntry(int32_t index, bool state) {
    CMenuItem* item = getEntry(index);
    if (!item || item->isSeparator()) return false;
    item->setChecked(state);
    return true;
}

bool COptionMenu::setCurrent(int32_t index) {
    if (!getEntry(index)) return false;
    if (style & kCheckStyle) {
        checkEntry(currentIndex, false);
        checkEntry(index, true);
    }
    currentIndex = index;
    CParamDisplay::setValue(static_cast<float>(index));
    setDirty(true);
    return true;
}

void COptionMenu::setValue(float newValue) {
    const auto index = static_cast<int32_t>(newValue + 0.02f);
    if (getEntry(index)) setCurrent(index);
    CParamDisplay::setValue(newValue);
}

void COptionMenu::getEntryTitle(int32_t index, char* out, size_t capacity) const {
    const CMenuItem* item = getEntry(index);
    const char* title = item ? item->getTitle() : "";
    switch (prefixNumbers) {
        case 2: std::snprintf(out, capacity, "%1d %s", index + 1, title); break;
        case 3: std::snprintf(out, capacity, "%02d %s", index + 1, title); break;
        case 4: std::snprintf(out, capacity, "%03d %s", index + 1, title); break;
        default: std::snprintf(out, capacity, "%s", title); break;
    }
}

void COptionMenu::getDisplayString(char* out, size_t capacity) const {
    if (valueToString || stringConvert) return CParamDisplay::getDisplayString(out, capacity);
    getEntryTitle(currentIndex, out, capacity);
}

bool COptionMenu::popup(IOSOptionMenu::Chosen chosen) {
    CFrame* owner = getFrame();
    IOSOptionMenu* native = owner ? owner->createOptionMenu(this) : nullptr;
    if (!native) return false;
    const bool shown = native->popup(this, std::move(chosen));
    native->forget();
    return shown;
}

int32_t COptionMenu::onMouseDown(const CPoint&, CButtonState buttons) {
    if (!(buttons & (kLButton | kRButton | 128u))) return kMouseEventNotHandled;
    setDirty(true);
    popup([self = keepAlive(this)](const COptionMenuResult& chosen) { self->takeChoice(chosen); });
    return kMouseEventHandledNoCapture;
}

void COptionMenu::takeChoice(const COptionMenuResult& chosen) {
    if (!chosen.menu) return;
    beginEdit();
    chosen.menu->setValue(static_cast<float>(chosen.index));
    setDirty(true);
    if (parameter) parameter->setValue(this, static_cast<float>(chosen.index));
    if (listener) listener->valueChanged(this);
    endEdit();
}

} // namespace Vinta
