#include "lib/controls/CTextEdit.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/controls/ITextEditCallback.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"
#include "lib/views/ParameterText.h"

namespace Vinta {

CTextEdit::CTextEdit(const CRect& rect, CControlListener* controlListener, int32_t controlTag, const char* initial,
                     CBitmap* bitmap, uint32_t styleBits)
    : CParamDisplay(rect, bitmap, styleBits) {
    listener = controlListener;
    tag = controlTag;
    wantsFocus = true;
    setText(initial);
}

CTextEdit::~CTextEdit() {
    if (platformControl) platformControl->forget();
}

bool CTextEdit::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CTextEdit") == 0) || CParamDisplay::isTypeOf(name);
}

void CTextEdit::setText(const char* newText) {
    std::snprintf(text, sizeof text, "%s", newText ? newText : "");
    setDirty(true);
}

void CTextEdit::setMaxLength(int32_t length) { maxLength = std::clamp(length, 0, kMaxLength); }

void CTextEdit::setTextEditConvert(CTextEditStringConvert convert, void* userData) {
    editConvert = convert;
    editConvertUserData = userData;
}

void CTextEdit::setTextEditConvert2(CTextEditStringConvert convert, void* userData) {
    editConvert2 = convert;
    editConvert2UserData = userData;
}

int32_t CTextEdit::onMouseDown(const CPoint&, CButtonState buttons) {
    if (!(buttons & kLButton)) return kMouseEventNotHandled;
    CFrame* owner = getFrame();
    if (owner && owner->getFocusView() == this) return kMouseEventNotHandled;
    if ((style & kDoubleClickStyle) && !(buttons & kDoubleClick)) return kMouseEventNotHandled;
    beginEdit();
    takeFocus();
    return kMouseEventHandledNoCapture;
}

void CTextEdit::takeFocus() {
    if (isTextParameter(parameter)) copyParameterText(parameter, text, sizeof text);
    if (platformControl) return;
    if (CFrame* owner = getFrame()) platformControl = owner->createTextEdit(getTextEditCallback());
    setDirty(true);
}

void CTextEdit::looseFocus() {
    if (!platformControl) return;
    char typed[sizeof text] = {0};
    platformControl->getText(typed, sizeof typed);
    platformControl->forget();
    platformControl = nullptr;
    if (std::strcmp(typed, text) != 0) {
        beginEditOf(parameter);
        if ((acceptFlags & kTextEditTake) && parameter)
            parameter->setFromText(typed);
        else
            setText(typed);
        if (listener) listener->valueChanged(this);
        if (CFrame* owner = getFrame()) owner->addDirtyRect(owner->getViewSize());
        endEditOf(parameter);
    }
    setDirty(true);
}

void CTextEdit::draw(CDrawContext* context) {
    if (platformControl || (style & kNoDrawStyle)) return setDirty(false);
    char shown[sizeof text] = {0};
    char converted[sizeof text] = {0};
    if (editConvert2) {
        editConvert2(text, converted, editConvert2UserData);
        std::snprintf(shown, sizeof shown, "%s", converted);
    } else if (editConvert) {
        editConvert(text, converted, editConvertUserData);
        std::snprintf(shown, sizeof shown, "%s", converted);
    } else if (valueToString || stringConvert) {
        getDisplayString(shown, sizeof shown);
    } else {
        std::snprintf(shown, sizeof shown, "%s", text);
    }
    drawBack(context);
    drawFrame(context);
    drawText(context, shown, size);
    setDirty(false);
}

} // namespace Vinta
