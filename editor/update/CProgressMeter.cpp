#include "editor/update/CProgressMeter.h"

#include <algorithm>
#include <cstdio>

#include "editor/update/UpdateColours.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace Resko {

using namespace Vinta;

CProgressMeter::CProgressMeter(const CRect& rect) : CView(rect) { setTransparency(true); }

void CProgressMeter::draw(CDrawContext* context) {
    CRect bar = getViewSize();
    bar.inset(5.0, 5.0);
    shown = std::clamp(shown + (getTarget() - shown) * 0.1f, 0.0f, 1.0f);

    context->setLineWidth(2.0f);
    context->setFrameColor(kWhiteCColor);
    context->setFillColor(withAlpha(kWhiteCColor, 128));
    context->drawRoundRect(bar, 2.0, kDrawStroked);
    bar.right = bar.left + bar.getWidth() * shown;
    context->drawRoundRect(bar, 2.0, kDrawFilled);

    char text[32];
    std::snprintf(text, sizeof text, "DOWNLOAD\n%.2f%%", static_cast<double>(shown) * 100.0);
    context->setFont(kNormalFont, 14.0, 1);
    // A blurred black copy first, so that the white text stands on the bar and beside it alike.
    context->setFontColor(kBlackCColor);
    context->setFontBlur(5.0f);
    context->drawStringMultiline(text, getViewSize(), 0, kAlignCenter);
    context->setFontColor(kWhiteCColor);
    context->setFontBlur(0.0f);
    context->drawStringMultiline(text, getViewSize(), 0, kAlignCenter);
    setDirty(true);
}

int32_t CProgressMeter::onMouseMoved(const CPoint&, CButtonState) {
    setDirty(true);
    return kMouseEventHandled;
}

}  // namespace Resko
