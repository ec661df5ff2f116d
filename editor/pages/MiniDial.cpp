#include "editor/pages/MiniDial.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/UnitType.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"
#include "editor/pages/PageStyle.h"

namespace ZonfraPages {

using namespace Vinta;

CView* Vinta_MiniDial::CInfo::CreateObject() { return object = new Vinta_MiniDial(*this); }

Vinta_MiniDial::Vinta_MiniDial(const CInfo& info)
    : CControl(info.rect, nullptr, info.tag),
      flags(info.flags),
      fontSize(info.fontSize),
      textColor(info.textColor),
      labelOverride(info.labelOverride),
      stepped(info.stepped && info.stepCount > 0),
      stepCount(info.stepCount) {
    const double left = info.rect.left + info.dialOffsetX;
    const double top = info.rect.top + info.dialOffsetY;
    dialRect = CRect(left, top, left + info.dialWidth, top + info.dialHeight);
    drag.snapEnabled = info.snapEnabled;
    drag.snapCentre = info.snapCentre;
    drag.snapBand = info.snapBand;
    setTransparency(true);
    setVisibilityParameter(info.visibilityParameter);
    setEnableParameter(info.enableParameter);
    setParameter(info.parameter);
}

Vinta_MiniDial::~Vinta_MiniDial() { stopListeningToParameter(); }

bool Vinta_MiniDial::isSwitch() const { return parameter && parameter->getUnitType() == Ondra::kUnitSwitch; }

void Vinta_MiniDial::setParameter(Ondra::IPluginParameter* edited) {
    if (edited == parameter) return;
    stopListeningToParameter();
    CControl::setParameter(edited);
    if (parameter) {
        defaultValue = parameter->getDefaultNormalized();
        listenToParameter();
    }
    setDirty(true);
}

void Vinta_MiniDial::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        value = changed->getNormalized();
        setDirty(true);
    } else {
        CControl::parameterChanged(changed);
    }
}

void Vinta_MiniDial::setEnabled(bool state) {
    mouseActive = state;
    CControl::setEnabled(state);
    if (state && parameter) parameterChanged(parameter);
    setDirty(true);
}

int32_t Vinta_MiniDial::onMouseDown(const CPoint& where, CButtonState buttons) {
    if (!mouseActive || !parameter) return kMouseEventNotHandled;
    beginEdit();
    if ((buttons == kResetWordMiddle || buttons == (kLButton | kControl)) && !(buttons & kDoubleClick)) {
        value = parameter->getDefaultNormalized();
        parameter->setNormalized(this, getValue());
        performEditOf(parameter);
        endEdit();
        updateHoverText();
        setDirty(true);
        return kMouseEventHandled;
    }
    if ((buttons & kLButton) && isSwitch()) {
        parameter->setNormalized(this, parameter->getBool() ? 0.0f : 1.0f);
        value = parameter->getNormalized();
        performEditOf(parameter);
        endEdit();
        setDirty(true);
        return kMouseEventHandledNoCapture;
    }
    dragging = true;
    dragStart = where;
    drag.begin(getValue(), vmax - vmin, buttons);
    return onMouseMoved(where, buttons);
}

int32_t Vinta_MiniDial::onMouseMoved(const CPoint& where, CButtonState buttons) {
    if (!dragging || !(buttons & kDragButtons)) return CControl::onMouseMoved(where, buttons);
    double next = std::clamp(drag.valueAt(dragStart.y - where.y, buttons), 0.0, 1.0);
    if (stepped) next = std::floor(next * stepCount + 0.5) / stepCount;
    value = next;
    parameter->setNormalized(this, static_cast<float>(next));
    performEditOf(parameter);
    updateHoverText();
    setDirty(true);
    return kMouseEventHandled;
}

int32_t Vinta_MiniDial::onMouseUp(const CPoint&, CButtonState) {
    if (dragging) endEdit();
    dragging = false;
    return kMouseEventHandled;
}

void Vinta_MiniDial::drawKnob(CDrawContext* context) {
    const uint8_t strength = mouseActive ? 255 : 110;
    context->setLineWidth(0.8f);
    context->setFrameColor(withAlpha(kDialRim, strength == 255 ? kDialRim.alpha : 90));
    if (isSwitch()) {
        CRect box = dialRect;
        box.inset(1.0, 1.0);
        context->setFillColor(parameter->getBool() ? withAlpha(kValueColor, strength) : kDialFace);
        context->drawRect(box, kDrawFilledAndStroked);
        return;
    }
    context->setFillColor(kDialFace);
    context->drawEllipse(dialRect, kDrawFilledAndStroked);
    const double r = dialRect.getWidth() * 0.5;
    const double angle = 1.25 * std::numbers::pi - std::clamp(getValue(), 0.0f, 1.0f) * 1.5 * std::numbers::pi;
    const double cx = dialRect.left + r + 0.5, cy = dialRect.top + r + 0.5;
    context->setLineWidth(2.5f);
    context->setFrameColor(withAlpha(kValueColor, strength));
    context->drawLine(cx, cy, cx + r * std::cos(angle), cy - r * std::sin(angle));
}

void Vinta_MiniDial::draw(CDrawContext* context) {
    if (!context) return;
    const uint8_t strength = mouseActive ? 255 : 110;
    context->setFont(kNormalFont, fontSize, 0);
    if ((flags & kDialLabel) && parameter) {
        context->setFontColor(withAlpha(textColor, strength));
        const CRect room(size.left, size.top, dialRect.left - 3.0, size.bottom);
        context->drawString(labelOverride ? labelOverride : parameter->getName(), room, 0,
                            (flags & kDialLabelLeft) ? 0 : 2);
    }
    if (parameter) drawKnob(context);
    if ((flags & kDialValue) && parameter) {
        char text[Ondra::kParameterTextSize] = {0};
        parameter->getDisplayText(parameter->getValue(), text, (flags & kDialValueUnit) ? Ondra::kDisplayWithUnit : 0);
        context->setFontColor(withAlpha(kValueColor, strength));
        const CRect room(dialRect.right + 3.0, size.top, size.right, size.bottom);
        context->drawString(text, room, 0, (flags & kDialValueLeft) ? 0 : 2);
    }
    setDirty(false);
}

}  // namespace ZonfraPages
