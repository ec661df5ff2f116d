#include "editor/update/CUpdateMessageBox.h"

#include <cmath>

#include "editor/update/CUpdateNotification.h"
#include "editor/update/UpdateColours.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"
#include "update/UpdateTexts.h"

namespace Resko {

using namespace Vinta;

namespace {
constexpr double kBoxWidth = 500.0, kBoxHeight = 200.0;
constexpr double kButtonWidth = 100.0, kButtonHeight = 30.0;
}  // namespace

CUpdateMessageBox::CUpdateMessageBox(const CRect& rect, CUpdateNotification* notification, int32_t sessionMode)
    : CView(rect), owner(notification), updateMode(sessionMode) {
    setTransparency(true);
    layout();
}

void CUpdateMessageBox::layout() {
    const CRect& whole = getViewSize();
    const double left = std::round(whole.left + whole.getWidth() / 2.0 - kBoxWidth / 2.0);
    const double top = std::round(whole.top + whole.getHeight() / 2.0 - kBoxHeight / 2.0);
    // Edges half a unit inside whole numbers, so that one-unit lines fall on the pixel grid.
    boxRect = CRect(left + 0.5, top + 0.5, left + kBoxWidth - 0.5, top + kBoxHeight - 0.5);
    const double buttonTop = boxRect.bottom - 50.0;
    auto button = [&](double buttonLeft) { return CRect(CPoint(buttonLeft, buttonTop), kButtonWidth, kButtonHeight); };
    acceptButton = button(boxRect.left + 100.0);
    okButton = button(boxRect.getCenter().x - kButtonWidth / 2.0);
    cancelButton = button(boxRect.right - 200.0);
}

void CUpdateMessageBox::setMode(int32_t value) {
    mode = value;
    setDirty(true);
}

void CUpdateMessageBox::setVisible(bool show) {
    fade.start();
    CView::setVisible(show);
}

void CUpdateMessageBox::draw(CDrawContext* context) {
    context->setGlobalAlpha(fade.value());
    // The cover dims the panel; a click beside the box makes it flare up for a moment.
    context->setFillColor(withAlpha(kWhiteCColor, static_cast<uint8_t>(180.0f - flash.value() * 90.0f)));
    context->drawRect(getViewSize(), kDrawFilled);

    context->setFillColor(withAlpha(kBlackCColor, 230));
    context->drawRoundRect(boxRect, 3.0, kDrawFilled);
    const CRect band(boxRect.left, boxRect.top, boxRect.right, boxRect.top + 20.0);
    context->setFillColor(withAlpha(kUpdateAccent, 80));
    context->drawRoundRectCorners(band, 3.0, 3.0, 0.0, 0.0, kDrawFilled);

    // Texts in the panel's own face, so that the layer reads as part of the editor.
    const UpdateMessage message = updateMessage(mode, updateMode);
    context->setFont(kNormalFont, 18.0, 0);
    context->setFontColor(kUpdateAccent);
    context->drawString(message.title, band, 0, kAlignCenter);
    context->setFont(kNormalFont, 16.0, 0);
    context->setFontColor(kWhiteCColor);
    context->drawStringMultiline(message.body, CRect(boxRect.left, boxRect.top + 30.0, boxRect.right, boxRect.top + 80.0),
                                 0, kAlignCenter);

    if (mode == kQuestion) {
        drawButton(context, acceptButton, "OK", kGreenCColor);
        drawButton(context, cancelButton, "Cancel", kRedCColor);
    } else {
        drawButton(context, okButton, "OK", kGreenCColor);
    }
    context->setGlobalAlpha(1.0f);
    if (!fade.finished() || !flash.finished()) setDirty(true);
}

void CUpdateMessageBox::drawButton(CDrawContext* context, const CRect& button, const char* label,
                                   const CColor& colour) const {
    context->setLineWidth(2.0f);
    context->setFrameColor(colour);
    CRect shape = button;
    double labelSize = 20.0;
    if (button.pointInside(mousePosition)) {
        shape.inset(-3.0, -3.0);
        context->setFillColor(withAlpha(colour, 80));
        context->drawRect(shape, kDrawFilledAndStroked);
        labelSize = 22.0;
    } else {
        context->setFillColor(withAlpha(colour, 40));
        context->drawRoundRect(shape, 6.0, kDrawFilledAndStroked);
    }
    context->setFont(kNormalFont, labelSize, 1);
    context->setFontColor(kWhiteCColor);
    context->drawString(label, shape, 0, kAlignCenter);
}

int32_t CUpdateMessageBox::onMouseMoved(const CPoint& where, CButtonState) {
    mousePosition = where;
    setDirty(true);
    return kMouseEventHandled;
}

int32_t CUpdateMessageBox::onMouseDown(const CPoint& where, CButtonState) {
    mousePosition = where;
    if (!boxRect.pointInside(where)) {
        flash.start();
        setDirty(true);
    } else if (mode == kQuestion && acceptButton.pointInside(where)) {
        if (owner) owner->accept();
        setVisible(false);
    } else if (mode == kQuestion && cancelButton.pointInside(where)) {
        if (owner) owner->decline();
    } else if (mode != kQuestion && okButton.pointInside(where)) {
        setVisible(false);
    }
    return kMouseEventHandled;
}

}  // namespace Resko
