#include "editor/update/CUpdateInfoIcon.h"

#include <cmath>

#include "editor/update/CUpdateNotification.h"
#include "editor/update/UpdateColours.h"
#include "lib/drawing/CDrawContext.h"
#include "update/UpdateTexts.h"

namespace Resko {

using namespace Vinta;

CUpdateInfoIcon::CUpdateInfoIcon(const CRect& rect, CUpdateNotification* notification)
    : CView(rect), owner(notification) {
    setTransparency(true);
}

void CUpdateInfoIcon::draw(CDrawContext* context) {
    CRect body = getViewSize();
    body.inset(2.0, 2.0);
    double shadowOffset = 5.0;
    if (!hover) {
        // The box breathes in and out; its shadow falls furthest while it is smallest.
        const double swing = std::sin(pulse.value() * 3.14 * 2.0) * 0.5 + 0.5;
        body.inset(body.getWidth() * 0.05 * swing, body.getHeight() * 0.05 * swing);
        shadowOffset = (1.0 - swing) * 7.0;
    }
    CRect shadow = body;
    shadow.offset(shadowOffset + 2.0, shadowOffset + 2.0);
    context->setFillColor(withAlpha(kBlackCColor, 180));
    context->drawRoundRect(shadow, 5.0, kDrawFilled);

    context->setLineWidth(2.0f);
    context->setFrameColor(kRedCColor);
    context->setFillColor(hover ? CColor{40, 0, 0, 255} : CColor{20, 0, 0, 255});
    context->drawRoundRect(body, 3.0, kDrawFilledAndStroked);

    context->setFont(nullptr, 10.0, 1);
    context->setFontColor(kRedCColor);
    context->drawStringMultiline(kUpdateBadgeText, getViewSize(), 0, kAlignCenter);

    if (pulse.finished()) pulse.start();
    setDirty(true);  // redrawn for as long as it shows
}

int32_t CUpdateInfoIcon::onMouseEntered(const CPoint&, CButtonState) {
    hover = true;
    setDirty(true);
    return kMouseEventHandled;
}

int32_t CUpdateInfoIcon::onMouseExited(const CPoint&, CButtonState) {
    hover = false;
    setDirty(true);
    return kMouseEventHandled;
}

int32_t CUpdateInfoIcon::onMouseDown(const CPoint&, CButtonState) {
    if (owner) owner->showQuestion();
    return kMouseEventHandledNoCapture;
}

}  // namespace Resko
