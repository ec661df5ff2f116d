#include "lib/controls/Vinta_AnimKnob.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/CControlListener.h"

namespace Vinta {

namespace {
constexpr uint8_t kDisabledAlpha = 60;
}

CView* Vinta_AnimKnob::CInfo::CreateObject() { return object = new Vinta_AnimKnob(*this); }

Vinta_AnimKnob::Vinta_AnimKnob(const CRect& rect, CControlListener* controlListener, int32_t controlTag,
                               int32_t frameCount, double frameHeight, CBitmap* filmstrip, const CPoint& offset)
    : CAnimKnob(rect, controlListener, controlTag, frameCount, frameHeight, filmstrip, offset) {
    hitRadius = static_cast<float>(rect.getWidth() * 0.5);
    makeOffscreen();
}

Vinta_AnimKnob::Vinta_AnimKnob(const CInfo& info)
    : CAnimKnob(info.rect, nullptr, info.tag, info.frameCount, info.frameHeight, info.bitmap, info.handleOffset) {
    setSnap(info.snapEnabled, info.snapCentre, info.snapBand);
    setZoomFactor(info.zoomFactor);
    hitRadius = info.hitRadius > 0.0f ? info.hitRadius : static_cast<float>(info.rect.getWidth() * 0.5);
    circularHit = info.circularHit;
    returnOnRelease = info.returnOnRelease;
    stepped = info.stepped;
    stepCount = info.stepCount;
    smoothing = info.smoothing;
    extraParameter = info.extraParameter;
    if (extraParameter) extraParameter->addListener(this, true);
    setEnableParameter(info.enableParameter);
    setVisibilityParameter(info.visibilityParameter);
    if (info.parameter) {
        setParameter(info.parameter);
        listenToParameter();
    }
    shownValue = getValue();
    makeOffscreen();
}

Vinta_AnimKnob::~Vinta_AnimKnob() {
    stopListeningToParameter();
    if (extraParameter) extraParameter->removeListener(this);
    if (offscreen) offscreen->forget();
}

bool Vinta_AnimKnob::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_AnimKnob") == 0) || CAnimKnob::isTypeOf(name);
}

void Vinta_AnimKnob::makeOffscreen() {
    if (offscreen) offscreen->forget();
    offscreen = nullptr;
    lastFrameKey = -1;
    // A double-resolution strip is drawn directly, so that its detail reaches a scaled window.
    if (background && background->getDensity() == 1.0 && subPixmaps > 1 && size.getWidth() >= 1.0 &&
        size.getHeight() >= 1.0)
        offscreen = new CBitmap(size.getWidth(), size.getHeight());
}

void Vinta_AnimKnob::setStepped(bool state, int32_t count) {
    stepped = state && count > 1;
    stepCount = count;
}

void Vinta_AnimKnob::setSnap(bool on, float centre, float band) {
    drag.snapEnabled = on;
    drag.snapCentre = centre;
    drag.snapBand = band;
    defaultValue = centre;
}

int32_t Vinta_AnimKnob::onMouseDown(const CPoint& where, CButtonState buttons) {
    dragActive = true;
    if (checkDefaultValue(buttons)) {
        shownValue = getValue();  // a reset does not glide
        dragActive = false;
        updateHoverText();
        setDirty(true);
        return kMouseEventHandledNoCapture;
    }
    beginEdit();
    firstPoint = where;
    lastDragPoint = CPoint(-1.0, -1.0);
    dragOldValue = getValue();
    drag.begin(getValue(), vmax - vmin, buttons);
    if (buttons & kDragButtons) lastDragPoint = where;
    return onMouseMoved(where, buttons);
}

int32_t Vinta_AnimKnob::onMouseMoved(const CPoint& where, CButtonState buttons) {
    if (!(buttons & kDragButtons) || !dragActive) {
        if (!hitTest(where, ~0u)) return kMouseEventNotHandled;
        updateHoverText();
        return kMouseEventHandled;
    }
    if (where == lastDragPoint) return kMouseEventHandled;
    lastDragPoint = where;
    const double next = drag.valueAt(getDragDelta(firstPoint, where), buttons);
    const float before = getValue();
    value = next;
    bounceValue();
    if (stepped) {
        const double index = std::floor(getValue() * (stepCount - 1) + 0.5);
        value = index / (stepCount - 1);
    }
    if (getValue() != before) {
        shownValue = getValue();
        if (parameter) {
            if (stepped) {
                const double index = std::floor(getValue() * (stepCount - 1) + 0.5);
                parameter->setValue(this, static_cast<float>(parameter->getMinimum() + index));
            } else {
                parameter->setNormalized(this, getValue());
            }
        }
        performEdit();
        if (listener) listener->valueChanged(this);
    }
    updateHoverText();
    setDirty(true);
    return kMouseEventHandled;
}

int32_t Vinta_AnimKnob::onMouseUp(const CPoint& where, CButtonState buttons) {
    if (returnOnRelease && parameter) {
        parameter->resetToDefault();
        performEditOf(parameter);
    }
    endEdit();
    if (!size.pointInside(where)) onMouseExited(where, buttons);
    dragActive = false;
    return kMouseEventHandled;
}

bool Vinta_AnimKnob::onWheel(const CPoint& where, float delta, CButtonState buttons) {
    if (!mouseEnabled || !enabled || !hitTest(where, buttons)) return false;
    value = value.load() + delta * wheelInc * ((buttons & kShift) ? 0.1 : 1.0);
    bounceValue();
    shownValue = getValue();
    beginEdit();
    sendToParameter(getValue());
    performEdit();
    if (listener) listener->valueChanged(this);
    endEdit();
    updateHoverText();
    setDirty(true);
    return true;
}

bool Vinta_AnimKnob::hitTest(const CPoint& where, CButtonState) {
    if (!mouseableArea.pointInside(where)) return false;
    if (!circularHit) return true;
    const double cx = std::trunc(size.left + size.getWidth() * 0.5);
    const double cy = std::trunc(size.top + size.getHeight() * 0.5);
    return std::hypot(where.x - cx, where.y - cy) <= hitRadius;
}

void Vinta_AnimKnob::setVisible(bool state) {
    shownValue = getValue();
    CAnimKnob::setVisible(state);
}

void Vinta_AnimKnob::setViewSize(const CRect& rect, bool invalidate) {
    CAnimKnob::setViewSize(rect, invalidate);
    makeOffscreen();
}

void Vinta_AnimKnob::parameterChanged(Ondra::IPluginParameter* changed) {
    if (!changed) return;
    if (changed == parameter) {
        if (stepped)
            setValue(static_cast<float>(std::floor(changed->getValue() - changed->getMinimum() + 0.5) /
                                        (stepCount - 1)));
        else
            setValue(changed->getNormalized());
    } else if (changed == extraParameter) {
        extraValue = changed->getValue();
    } else {
        CAnimKnob::parameterChanged(changed);
    }
    setDirty(true);
}

CPoint Vinta_AnimKnob::drawnPoint() const {
    if (subPixmaps < 1) return {0.0, 0.0};
    const double pos = std::clamp(static_cast<double>(getValue()), 0.0, 1.0) * (subPixmaps - 1);
    const double index = std::clamp(std::floor(pos), 0.0, static_cast<double>(subPixmaps - 1));
    return {index * 1000.0 + std::floor((pos - index) * 255.0), 0.0};
}

void Vinta_AnimKnob::draw(CDrawContext* context) {
    const float target = getValue();
    const bool gliding = smoothing && std::fabs(target - shownValue) > 0.001f;
    if (gliding)
        shownValue += 0.4f * (target - shownValue) + 1e-19f;
    else
        shownValue = target;

    if (background && subPixmaps > 0) {
        const double pos = std::clamp(static_cast<double>(shownValue), 0.0, 1.0) * (subPixmaps - 1);
        const double index = std::clamp(std::floor(pos), 0.0, static_cast<double>(subPixmaps - 1));
        const double frac = pos - index;
        const auto key = static_cast<int32_t>(pos * 10000.0);
        const CPoint source(handleOffset.x, index * heightOfOneImage);
        if (offscreen) {
            if (key != lastFrameKey) {
                lastFrameKey = key;
                offscreen->clear();
                const CRect whole(0.0, 0.0, size.getWidth(), size.getHeight());
                CDrawContext* into = offscreen->getDrawContext();
                background->drawAlpha(into, whole, source, static_cast<uint8_t>(255.0 - frac * 255.0));
                if (frac != 0.0 && index + 1 < subPixmaps)
                    background->drawAlpha(into, whole, CPoint(source.x, source.y + heightOfOneImage),
                                          static_cast<uint8_t>(frac * 255.0));
            }
            offscreen->drawAlpha(context, size, CPoint(), enabled ? 255 : kDisabledAlpha);
        } else {
            background->drawAlpha(context, size, source, enabled ? 255 : kDisabledAlpha);
        }
        lastDrawnPoint = CPoint(index * 1000.0 + std::floor(frac * 255.0), 0.0);
    }
    if (gliding)
        setDirty(true);  // the next frame goes on gliding
    else
        setDirty(false);
}

} // namespace Vinta
