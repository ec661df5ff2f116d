#include "lib/controls/CAnimKnob.h"

#include <cmath>
#include <cstring>

#include "lib/drawing/CBitmap.h"

namespace Vinta {

CAnimKnob::CAnimKnob(const CRect& rect, CControlListener* controlListener, int32_t controlTag, int32_t frameCount,
                     double frameHeight, CBitmap* filmstrip, const CPoint& offset)
    : CKnob(rect, controlListener, controlTag, filmstrip, nullptr, offset) {
    inset = 0;
    const double stripHeight = filmstrip ? filmstrip->getHeight() : 0.0;
    if (frameHeight <= 0.0 && frameCount > 0) frameHeight = stripHeight / frameCount;
    if (frameCount <= 0 && frameHeight > 0.0) frameCount = static_cast<int32_t>(stripHeight / frameHeight);
    heightOfOneImage = frameHeight > 0.0 ? frameHeight : rect.getHeight();
    subPixmaps = frameCount;
}

CAnimKnob::CAnimKnob(const CAnimKnob& other)
    : CKnob(other), IMultiBitmapControl(other), inverseBitmap(other.inverseBitmap) {}

bool CAnimKnob::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CAnimKnob") == 0) || CKnob::isTypeOf(name);
}

CPoint CAnimKnob::drawnPoint() const {
    if (subPixmaps < 1) return {0.0, 0.0};
    const double v = inverseBitmap ? 1.0 - getValue() : getValue();
    return {std::floor(v * (subPixmaps - 1)), 0.0};
}

bool CAnimKnob::isDirty() const {
    if (!dirty && drawnPoint() == lastDrawnPoint) return false;
    return CKnob::isDirty();
}

void CAnimKnob::draw(CDrawContext* context) {
    lastDrawnPoint = drawnPoint();
    if (background && subPixmaps > 0) {
        const double shown = std::clamp(lastDrawnPoint.x, 0.0, static_cast<double>(subPixmaps - 1));
        background->drawTransparent(context, size, CPoint(handleOffset.x, shown * heightOfOneImage));
    }
    setDirty(false);
}

} // namespace Vinta
