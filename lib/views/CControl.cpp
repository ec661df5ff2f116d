#include "lib/views/CControl.h"

#include <algorithm>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"
#include "lib/views/ParameterText.h"

namespace Vinta {

CControl::CControl(const CRect& rect, CControlListener* controlListener, int32_t controlTag, CBitmap* bitmap)
    : CView(rect), listener(controlListener), tag(controlTag) {
    if (bitmap) setBackground(bitmap);
    setDirty(false);
}

CControl::CControl(const CControl& other)
    : CView(other),
      Ondra::ParameterChangeListener(other),
      listener(other.listener),
      tag(other.tag),
      oldValue(other.getOldValue()),
      defaultValue(other.defaultValue),
      value(other.value.load(std::memory_order_relaxed)),
      vmin(other.vmin),
      vmax(other.vmax),
      wheelInc(other.wheelInc),
      lastPoint(other.lastPoint) {
    std::memcpy(hoverText, other.hoverText, sizeof hoverText);
    setVisibilityParameter(other.visibilityParameter);
    setEnableParameter(other.enableParameter);
    parameter = other.parameter;
}

CControl::~CControl() {
    if (visibilityParameter) visibilityParameter->removeListener(this);
    if (enableParameter) enableParameter->removeListener(this);
}

bool CControl::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CControl") == 0) || CView::isTypeOf(name);
}

void CControl::draw(CDrawContext* context) { CView::draw(context); }

void CControl::drawRect(CDrawContext* context, const CRect& updateRect) {
    const double before = value.load(std::memory_order_relaxed);
    CView::drawRect(context, updateRect);
    if (value.load(std::memory_order_relaxed) != before) setDirty(true);
}

bool CControl::isDirty() const {
    return static_cast<float>(value.load(std::memory_order_relaxed)) != getOldValue() || dirty;
}

void CControl::setDirty(bool state) {
    const float current = static_cast<float>(value.load(std::memory_order_relaxed));
    if (state)
        oldValue = current == -1.0f ? 0.0f : -1.0f;
    else {
        oldValue = current;
        dirty = false;
    }
}

float CControl::getDefaultValue() const {
    return parameter ? parameter->getDefaultNormalized() : defaultValue;
}

void CControl::bounceValue() {
    const double current = value.load(std::memory_order_relaxed);
    value = std::clamp(current, static_cast<double>(vmin), static_cast<double>(vmax));
}

bool CControl::checkDefaultValue(CButtonState buttons) {
    const bool doubleClick = (buttons & kDoubleClick) && (buttons & kLButton);
    if (buttons != kResetWordMiddle && buttons != kResetWordLeftControl && !doubleClick) return false;
    beginEdit();
    value = getDefaultValue();
    sendToParameter(getValue());
    performEdit();
    if (listener) listener->valueChanged(this);
    endEdit();
    return true;
}

void CControl::sendToParameter(float normalized) {
    if (parameter) parameter->setNormalized(this, normalized);
}

void CControl::beginEditOf(Ondra::IPluginParameter* edited) {
    if (CFrame* owner = getFrame()) owner->beginEdit(edited);
}

void CControl::beginEdit() {
    if (listener) listener->controlBeginEdit(this);
    if (CFrame* owner = getFrame()) owner->setFocusView(this);
    beginEditOf(parameter);
}

void CControl::endEditOf(Ondra::IPluginParameter* edited) {
    if (CFrame* owner = getFrame()) owner->endEdit(edited);
}

void CControl::endEdit() {
    endEditOf(parameter);
    if (listener) listener->controlEndEdit(this);
}

void CControl::performEditOf(Ondra::IPluginParameter* edited) {
    if (CFrame* owner = getFrame()) owner->performEdit(edited);
}

void CControl::performEdit() { performEditOf(parameter); }

void CControl::setParameter(Ondra::IPluginParameter* edited) {
    parameter = edited;
    if (edited) parameterChanged(edited);
}

void CControl::listenToParameter() {
    if (parameter) parameter->addListener(this, false);
}

void CControl::stopListeningToParameter() {
    if (parameter) parameter->removeListener(this);
}

void CControl::setVisibilityParameter(Ondra::IPluginParameter* shownBy) {
    if (visibilityParameter == shownBy) return;
    if (visibilityParameter) visibilityParameter->removeListener(this);
    visibilityParameter = shownBy;
    if (shownBy) shownBy->addListener(this, true);
}

void CControl::setEnableParameter(Ondra::IPluginParameter* enabledBy) {
    if (enableParameter == enabledBy) return;
    if (enableParameter) enableParameter->removeListener(this);
    enableParameter = enabledBy;
    if (enabledBy) enabledBy->addListener(this, true);
}

void CControl::parameterChanged(Ondra::IPluginParameter* changed) {
    if (!changed) return;
    if (changed == visibilityParameter) setVisible(changed->getBool());
    if (changed == enableParameter) setEnabled(changed->getBool());
}

void CControl::updateHoverText() {
    if (!parameter) return;
    copyParameterText(parameter, hoverText, sizeof hoverText);
    if (CFrame* owner = getFrame()) owner->setHoverText(hoverText);
}

int32_t CControl::onMouseMoved(const CPoint& where, CButtonState buttons) {
    if (enabled && hitTest(where, buttons)) updateHoverText();
    return kMouseEventNotHandled;
}

int32_t CControl::onMouseEntered(const CPoint&, CButtonState buttons) {
    if ((buttons & (kLButton | kMButton | kRButton)) == 0) updateHoverText();
    return kMouseEventHandled;
}

int32_t CControl::onMouseExited(const CPoint&, CButtonState buttons) {
    if ((buttons & (kLButton | kMButton | kRButton)) == 0)
        if (CFrame* owner = getFrame()) owner->setHoverText("");
    return kMouseEventHandled;
}

} // namespace Vinta
