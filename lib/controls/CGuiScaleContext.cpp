#include "lib/controls/CGuiScaleContext.h"

#include <cmath>
#include <cstdio>

#include "lib/controls/CMenuItem.h"
#include "lib/views/IVintaEditor.h"

namespace Vinta {

namespace {
constexpr int32_t kScales[] = {100, 125, 150, 175, 200};
}

CGuiScaleContext::CGuiScaleContext(const CRect& rect, CBitmap* bitmap) : COptionMenu(rect, nullptr, 0, bitmap, kCheckStyle) {
    listener = this;
    for (const int32_t percent : kScales) {
        char title[16];
        std::snprintf(title, sizeof title, "%d", percent);
        addEntry(new CMenuItem(title, percent));
    }
}

void CGuiScaleContext::draw(CDrawContext* context) {
    if (background) drawBackground(context, size);
    setDirty(false);
}

int32_t CGuiScaleContext::onMouseDown(const CPoint& where, CButtonState buttons) {
    // Show the present size checked.
    if (IVintaEditor* editor = getEditor()) {
        const auto percent = static_cast<int32_t>(std::lround(editor->getGuiScale() * 100.0));
        for (int32_t index = 0; index < getNbEntries(); ++index)
            if (getEntry(index)->getTag() == percent) setCurrent(index);
    }
    return COptionMenu::onMouseDown(where, buttons);
}

void CGuiScaleContext::valueChanged(CControl*) {
    const CMenuItem* item = getEntry(getCurrent());
    IVintaEditor* editor = getEditor();
    if (!item || !editor) return;
    editor->setGuiScale(item->getTag() / 100.0);
    editor->saveGuiScale();
}

} // namespace Vinta
