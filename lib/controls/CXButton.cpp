#include "lib/controls/CXButton.h"

#include <cstring>

#include "lib/drawing/CDrawContext.h"

namespace Vinta {

CView* CXButton::CInfo::CreateObject() { return object = new CXButton(*this); }

CXButton::CXButton(const CInfo& info) : CControl(info.rect, nullptr, info.tag), windows(info.windows) {
    setVisibilityParameter(info.visibilityParameter);
    setEnableParameter(info.enableParameter);
}

bool CXButton::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CXButton") == 0) || CControl::isTypeOf(name);
}

int32_t CXButton::onMouseDown(const CPoint&, CButtonState buttons) {
    if (!(buttons & kLButton)) return kMouseEventNotHandled;
    pressed = true;
    setDirty(true);
    return kMouseEventHandled;
}

int32_t CXButton::onMouseUp(const CPoint&, CButtonState) {
    if (pressed)
        for (IAttachedWindow* window : windows) window->setOpen(false);
    pressed = false;
    setDirty(true);
    return kMouseEventHandled;
}

void CXButton::draw(CDrawContext* context) {
    CRect cross = size;
    cross.inset(size.getWidth() * 0.25, size.getHeight() * 0.25);
    context->setLineWidth(pressed ? 2.0f : 1.5f);
    context->setFrameColor(enabled ? kWhiteCColor : kGreyCColor);
    context->drawLine(cross.left, cross.top, cross.right, cross.bottom);
    context->drawLine(cross.left, cross.bottom, cross.right, cross.top);
    setDirty(false);
}

} // namespace Vinta
