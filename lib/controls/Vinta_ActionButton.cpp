#include "lib/controls/Vinta_ActionButton.h"

#include <algorithm>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CBitmap.h"
#include "lib/views/CControlListener.h"
#include "lib/views/VintaClock.h"

namespace Vinta {

CView* Vinta_ActionButton::CInfo::CreateObject() { return object = new Vinta_ActionButton(*this); }

Vinta_ActionButton::Vinta_ActionButton(const CInfo& info)
    : CControl(info.rect, nullptr, info.tag, info.bitmap),
      type(info.type),
      fade(info.fade),
      fadeSpeed(info.fadeSpeed),
      inverted(info.inverted),
      frameHeight(info.bitmap ? info.bitmap->getHeight() * 0.5 : info.rect.getHeight()) {
    updateHitRect();
    setVisibilityParameter(info.visibilityParameter);
    setEnableParameter(info.enableParameter);
    if (info.parameter) {
        setParameter(info.parameter);
        listenToParameter();
    }
    level = on ? 255.0f : 0.0f;
}

Vinta_ActionButton::~Vinta_ActionButton() { stopListeningToParameter(); }

bool Vinta_ActionButton::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_ActionButton") == 0) || CControl::isTypeOf(name);
}

void Vinta_ActionButton::updateHitRect() {
    const double width = background ? background->getWidth() : size.getWidth();
    hitRect = CRect(size.getTopLeft(), width, frameHeight);
}

void Vinta_ActionButton::setViewSize(const CRect& rect, bool invalidate) {
    CControl::setViewSize(rect, invalidate);
    updateHitRect();
}

bool Vinta_ActionButton::hitTest(const CPoint& where, CButtonState) { return hitRect.pointInside(where); }

void Vinta_ActionButton::touch() { tick = getVintaTicks(); }

int32_t Vinta_ActionButton::onMouseDown(const CPoint& where, CButtonState buttons) {
    if (!hitRect.pointInside(where) || !(buttons & kDragButtons)) return kMouseEventNotHandled;
    beginEdit();
    if (type == kMomentary) {
        on = true;
        level = 128.0f;
    } else {
        on = !on;
    }
    touch();
    if (parameter) {
        beginEditOf(parameter);
        parameter->setValue(this, on ? 1.0f : 0.0f);
        endEditOf(parameter);
    }
    CControl::setValue(on ? 1.0f : 0.0f);
    if (listener) listener->valueChanged(this);
    updateHoverText();
    setDirty(true);
    return kMouseEventHandled;
}

int32_t Vinta_ActionButton::onMouseUp(const CPoint&, CButtonState) {
    if (type == kMomentary && on) {
        on = false;
        touch();
        if (parameter) parameter->setValue(this, 0.0f);
        CControl::setValue(0.0f);
        if (listener) listener->valueChanged(this);
        performEditOf(parameter);
        updateHoverText();
    }
    endEdit();
    setDirty(true);
    return kMouseEventHandled;
}

void Vinta_ActionButton::setValue(float newValue) {
    CControl::setValue(newValue);
    on = newValue > 0.5f;
    touch();
    setDirty(true);
}

void Vinta_ActionButton::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        setValue(changed->getBool() ? 1.0f : 0.0f);
        return;
    }
    CControl::parameterChanged(changed);
}

void Vinta_ActionButton::draw(CDrawContext* context) {
    bool moving = false;
    if (background) {
        const CRect row(size.getTopLeft(), background->getWidth(), frameHeight);
        const CPoint upper(0.0, 0.0), lower(0.0, frameHeight);
        if (fade) {
            const double dt = std::clamp((getVintaTicks() - tick) / (60.0 * 6.0), 0.0, 1.0);
            const auto step = static_cast<float>(dt * 255.0 * fadeSpeed);
            level = std::clamp(on ? level + step : level - step, 0.0f, 255.0f);
            moving = on ? level < 255.0f : level > 0.0f;
            background->drawAlpha(context, row, lower, 255);
            background->drawAlpha(context, row, upper, static_cast<uint8_t>(level + 0.01f));
        } else {
            level = on ? 255.0f : 0.0f;
            const bool upperRow = on != inverted;
            background->drawAlpha(context, row, upperRow ? upper : lower, enabled ? 255 : 60);
        }
    }
    if (moving)
        setDirty(true);
    else
        setDirty(false);
}

} // namespace Vinta
