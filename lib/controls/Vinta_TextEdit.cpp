#include "lib/controls/Vinta_TextEdit.h"

#include <cstdio>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"
#include "lib/views/IVintaEditor.h"
#include "lib/views/ParameterText.h"

namespace Vinta {

CView* Vinta_TextEdit::CInfo::CreateObject() { return object = new Vinta_TextEdit(*this); }

Vinta_TextEdit::Vinta_TextEdit(const CInfo& info)
    : CTextEdit(info.rect, nullptr, info.tag),
      dragEditable(info.dragEditable),
      hideName(info.hideName),
      twoLines(info.twoLines),
      preciseText(info.preciseText),
      editFontSize(info.editFontSize) {
    mouseEnabled = info.mouseEnabled;
    fontColor = info.fontColor;
    backColor = info.backColor;
    if (info.font) fontID = info.font;
    horiTxtAlign = info.align;
    fontSize = info.fontSize;
    setMaxLength(info.maxChars);
    setVisibilityParameter(info.visibilityParameter);
    setEnableParameter(info.enableParameter);
    if (info.parameter) {
        setParameter(info.parameter);
        listenToParameter();
        updateTextFromParameter();
    }
}

Vinta_TextEdit::~Vinta_TextEdit() { stopListeningToParameter(); }

bool Vinta_TextEdit::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_TextEdit") == 0) || CTextEdit::isTypeOf(name);
}

void Vinta_TextEdit::setSnap(bool on, float centre, float band) {
    drag.snapEnabled = on;
    drag.snapCentre = centre;
    drag.snapBand = band;
}

void Vinta_TextEdit::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        // Any thread: keep the value, make the text on the window's thread.
        value = changed->getNormalized();
        textPending = true;
        setDirty(true);
        return;
    }
    CTextEdit::parameterChanged(changed);
}

void Vinta_TextEdit::updateTextFromParameter() {
    textPending = false;
    if (!parameter) return;
    char fresh[sizeof text] = {0};
    copyParameterText(parameter, fresh, sizeof fresh, !hideName, !twoLines, preciseText);
    if (isTextParameter(parameter)) fresh[maxLength] = 0;
    if (std::strcmp(fresh, text) != 0) setText(fresh);
}

int32_t Vinta_TextEdit::onMouseDown(const CPoint& where, CButtonState buttons) {
    if ((buttons & (kLButton | kDoubleClick)) == (kLButton | kDoubleClick)) {
        if (isTextParameter(parameter)) copyParameterText(parameter, text, sizeof text);
        if (CFrame* owner = getFrame()) owner->setFocusView(nullptr);
        takeFocus();
        return kMouseEventHandledNoCapture;
    }
    if ((style & kDoubleClickStyle) || !dragEditable) return kMouseEventNotHandled;
    beginEdit();
    dragActive = true;
    if (buttons == kResetWordMiddle || buttons == kResetWordLeftControl) {
        value = getDefaultValue();
        sendToParameter(getValue());
        endEdit();
        dragActive = false;
        textPending = true;
        setDirty(true);
        return kMouseEventHandledNoCapture;
    }
    firstPoint = where;
    drag.begin(getValue(), vmax - vmin, buttons);
    lastDragPoint = (buttons & kDragButtons) ? where : CPoint(-1.0, -1.0);
    return onMouseMoved(where, buttons);
}

int32_t Vinta_TextEdit::onMouseMoved(const CPoint& where, CButtonState buttons) {
    if (!dragEditable) return kMouseEventNotHandled;
    if (!dragActive || !(buttons & kDragButtons)) return CTextEdit::onMouseMoved(where, buttons);
    if (where == lastDragPoint) return kMouseEventHandled;
    lastDragPoint = where;
    const float before = getValue();
    value = drag.valueAt(firstPoint.y - where.y, buttons);
    bounceValue();
    if (getValue() != before) {
        sendToParameter(getValue());
        performEdit();
        if (listener) listener->valueChanged(this);
        textPending = true;
    }
    setDirty(true);
    return kMouseEventHandled;
}

int32_t Vinta_TextEdit::onMouseUp(const CPoint&, CButtonState) {
    endEdit();
    if (dragEditable)
        if (CFrame* owner = getFrame()) owner->setFocusView(nullptr);
    dragActive = false;
    return kMouseEventHandled;
}

void Vinta_TextEdit::takeFocus() {
    CTextEdit::takeFocus();
    // Being the focus view is what closes the field again: a clear of the focus runs looseFocus.
    if (CFrame* owner = getFrame()) owner->setFocusView(this);
}

void Vinta_TextEdit::textEditDidEnd(int32_t flags) {
    remember();
    acceptFlags = flags;
    CFrame* owner = getFrame();
    if (owner && owner->getFocusView() == this)
        owner->setFocusView(nullptr);
    else
        looseFocus();
    forget();
}

CRect Vinta_TextEdit::getVisibleRect() const {
    CRect shown;
    getVisibleSize(shown);
    CPoint origin;
    localToFrame(origin);
    return shown.offset(origin.x, origin.y);
}

CPoint Vinta_TextEdit::getOrigin() const {
    CPoint origin;
    return localToFrame(origin);
}

CRect Vinta_TextEdit::scaleRect(const CRect& rect) const {
    const IVintaEditor* editor = getEditor();
    const double scale = editor ? editor->getGuiScale() : 1.0;
    return {rect.left * scale, rect.top * scale, rect.right * scale, rect.bottom * scale};
}

void Vinta_TextEdit::draw(CDrawContext* context) {
    if (textPending) updateTextFromParameter();
    if (platformControl || (style & kNoDrawStyle)) return setDirty(false);
    drawBack(context);
    drawFrame(context);
    if (!twoLines || !parameter) {
        drawText(context, text, size);
    } else {
        const double middle = size.top + size.getHeight() * 0.5;
        const double half = fontSize * 0.5;
        CRect upper = size, lower = size;
        upper.offset(0.0, (middle - half) - size.getCenter().y);
        lower.offset(0.0, (middle + half) - size.getCenter().y);
        drawText(context, text, upper);
        char unit[sizeof text] = {0};
        parameter->copyUnitLabel(unit);
        drawText(context, unit, lower);
    }
    setDirty(false);
}

} // namespace Vinta
