#include "lib/controls/CKnob.h"

#include <cmath>
#include <cstring>
#include <numbers>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"

namespace Vinta {

namespace {
constexpr double kTwoPi = 2.0 * std::numbers::pi;
}

CKnob::CKnob(const CRect& rect, CControlListener* controlListener, int32_t controlTag, CBitmap* bitmap,
             CBitmap* handle, const CPoint& offset)
    : CControl(rect, controlListener, controlTag, bitmap), handleOffset(offset) {
    setHandleBitmap(handle);
    compute();
}

CKnob::CKnob(const CKnob& other)
    : CControl(other),
      handleOffset(other.handleOffset),
      shadowColor(other.shadowColor),
      handleColor(other.handleColor),
      inset(other.inset),
      startAngle(other.startAngle),
      rangeAngle(other.rangeAngle),
      zoomFactor(other.zoomFactor) {
    setHandleBitmap(other.handleBitmap);
    inset = other.inset;
    compute();
}

CKnob::~CKnob() {
    if (handleBitmap) handleBitmap->forget();
}

bool CKnob::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CKnob") == 0) || CControl::isTypeOf(name);
}

void CKnob::setHandleBitmap(CBitmap* bitmap) {
    if (bitmap == handleBitmap) return;
    if (bitmap) bitmap->remember();
    if (handleBitmap) handleBitmap->forget();
    handleBitmap = bitmap;
    if (bitmap) inset = static_cast<int32_t>(bitmap->getWidth() * 0.5 + 2.5);
}

void CKnob::compute() {
    aCoef = (vmax - vmin) / rangeAngle;
    bCoef = vmin - aCoef * startAngle;
    halfAngle = static_cast<float>((kTwoPi - std::fabs(rangeAngle)) * 0.5);
    radius = static_cast<float>(size.getWidth() * 0.5);
}

void CKnob::setStartAngle(float angle) {
    startAngle = angle;
    compute();
}

void CKnob::setRangeAngle(float angle) {
    if (angle == 0.0f) return;
    rangeAngle = angle;
    compute();
}

void CKnob::setMin(float limit) {
    CControl::setMin(limit);
    compute();
}

void CKnob::setMax(float limit) {
    CControl::setMax(limit);
    compute();
}

void CKnob::setViewSize(const CRect& rect, bool invalidate) {
    CControl::setViewSize(rect, invalidate);
    compute();
}

CPoint CKnob::valueToPoint() const {
    const double alpha = (getValue() - bCoef) / aCoef;
    const double reach = radius - inset;
    return {radius + 0.5 + std::cos(alpha) * reach, radius + 0.5 - std::sin(alpha) * reach};
}

float CKnob::valueFromPoint(const CPoint& point) const {
    double angle = std::atan2(radius - point.y, point.x - radius);
    const double low = std::min<double>(startAngle, startAngle + rangeAngle);
    const double high = std::max<double>(startAngle, startAngle + rangeAngle);
    while (angle < low) angle += kTwoPi;
    while (angle >= low + kTwoPi) angle -= kTwoPi;
    if (angle > high) angle = (angle - high < low + kTwoPi - angle) ? high : low;
    return static_cast<float>(aCoef * angle + bCoef);
}

float CKnob::rangeFor(CButtonState buttons) const {
    return (buttons & kShift) ? 200.0f * zoomFactor : 200.0f;
}

int32_t CKnob::onMouseDown(const CPoint& where, CButtonState buttons) {
    if (!(buttons & (kLButton | kMButton))) return kMouseEventNotHandled;
    beginEdit();
    if (checkDefaultValue(buttons)) {
        endEdit();
        return kMouseEventHandledNoCapture;
    }
    firstPoint = where;
    lastDragPoint = CPoint(-1.0, -1.0);
    dragOldValue = getValue();
    startValue = getValue();
    oldButton = buttons;
    linearMode = (buttons & kAlt) && (buttons & kLButton);
    dragRange = linearMode ? rangeFor(buttons) : 200.0f;
    dragCoef = (vmax - vmin) / dragRange;
    if (!linearMode) {
        value = valueFromPoint(where - size.getTopLeft());
        bounceValue();
        if (listener && isDirty()) listener->valueChanged(this);
    }
    onMouseMoved(where, buttons);
    return kMouseEventHandled;
}

int32_t CKnob::onMouseUp(const CPoint&, CButtonState) {
    endEdit();
    return kMouseEventHandled;
}

int32_t CKnob::onMouseMoved(const CPoint& where, CButtonState buttons) {
    if (!(buttons & kLButton)) return CControl::onMouseMoved(where, buttons);
    if (where == lastDragPoint) return kMouseEventHandled;
    lastDragPoint = where;
    const float before = getValue();
    if (linearMode) {
        const double delta = (firstPoint.y - where.y) + (where.x - firstPoint.x);
        if (buttons != oldButton) {
            const float newCoef = (vmax - vmin) / rangeFor(buttons);
            startValue += static_cast<float>((dragCoef - newCoef) * delta);
            dragCoef = newCoef;
            oldButton = buttons;
        }
        value = startValue + delta * dragCoef;
    } else {
        float next = valueFromPoint(where - size.getTopLeft());
        // A jump of more than half the range is the pointer crossing the dead zone: stay at the end.
        if (std::fabs(next - before) > (vmax - vmin) * 0.5f) next = before > (vmin + vmax) * 0.5f ? vmax : vmin;
        value = next;
    }
    bounceValue();
    if (getValue() != before && listener) listener->valueChanged(this);
    if (isDirty()) invalidRect(size);
    return kMouseEventHandled;
}

bool CKnob::onWheel(const CPoint&, float delta, CButtonState buttons) {
    const double step = delta * wheelInc * ((buttons & kShift) ? 0.1 : 1.0);
    value = value.load() + step;
    bounceValue();
    if (isDirty() && listener) {
        beginEdit();
        listener->valueChanged(this);
        endEdit();
    }
    return true;
}

int32_t CKnob::onKeyDown(const VstKeyCode& key) {
    CFrame* owner = getFrame();
    if (!owner || owner->getFocusView() != this) return kKeyNotHandled;
    double direction = 0.0;
    switch (key.virt) {
        case VKEY_LEFT:
        case VKEY_DOWN: direction = -1.0; break;
        case VKEY_UP:
        case VKEY_RIGHT: direction = 1.0; break;
        default: return kKeyNotHandled;
    }
    if (key.modifier & kKeyShift) direction *= 0.1;
    value = value.load() + direction * wheelInc;
    bounceValue();
    if (isDirty() && listener) {
        beginEdit();
        listener->valueChanged(this);
        endEdit();
    }
    return 1;
}

void CKnob::draw(CDrawContext* context) {
    if (background) drawBackground(context, size);
    drawHandle(context);
    setDirty(false);
}

void CKnob::drawHandle(CDrawContext* context) {
    CPoint handle = valueToPoint();
    if (handleBitmap) {
        const double w = handleBitmap->getWidth(), h = handleBitmap->getHeight();
        CRect where(size.left + handle.x - w * 0.5, size.top + handle.y - h * 0.5, 0, 0);
        where.setWidth(w).setHeight(h);
        handleBitmap->drawTransparent(context, where, handleOffset);
        return;
    }
    const CPoint centre(size.left + radius, size.top + radius);
    handle.offset(size.left, size.top);
    context->setLineWidth(1.0f);
    context->setFrameColor(shadowColor);
    context->drawLine(centre.x + 1, centre.y + 1, handle.x + 1, handle.y + 1);
    context->setFrameColor(handleColor);
    context->drawLine(centre.x, centre.y, handle.x, handle.y);
}

} // namespace Vinta
