#include "lib/controls/CParamDisplay.h"

#include <cstdio>
#include <cstring>

#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace Vinta {

CParamDisplay::CParamDisplay(const CRect& rect, CBitmap* bitmap, uint32_t styleBits)
    : CControl(rect, nullptr, 0, bitmap), style(styleBits), fontID(kSystemFont) {}

CParamDisplay::CParamDisplay(const CParamDisplay& other) = default;

bool CParamDisplay::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CParamDisplay") == 0) || CControl::isTypeOf(name);
}

void CParamDisplay::setValueToStringProc(CParamDisplayValueToStringProc proc, void* userData) {
    valueToString = proc;
    valueToStringUserData = userData;
}

void CParamDisplay::setStringConvert(CParamDisplayStringConvert convert, void* userData) {
    stringConvert = convert;
    stringConvertUserData = userData;
}

void CParamDisplay::getDisplayString(char* out, size_t capacity) const {
    char text[kTextCapacity] = {0};
    if (!(valueToString && valueToString(getValue(), text, valueToStringUserData))) {
        if (stringConvert)
            stringConvert(getValue(), text, stringConvertUserData);
        else
            std::snprintf(text, sizeof text, "%2.2f", getValue());
    }
    std::snprintf(out, capacity, "%s", text);
}

void CParamDisplay::drawBack(CDrawContext* context) {
    if (background) {
        drawBackground(context, size);
    } else if (!transparent) {
        context->setFillColor(backColor);
        context->drawRect(size, kDrawFilled);
    }
}

void CParamDisplay::drawFrame(CDrawContext* context) {
    if (style & kNoFrame) return;
    if (style & (k3DIn | k3DOut)) {
        // Light on the top and left for an outward frame, on the bottom and right for an inward one.
        const CColor light = kWhiteCColor, dark = kGreyCColor;
        context->setFrameColor((style & k3DIn) ? dark : light);
        context->drawLine(size.left, size.bottom - 1, size.left, size.top);
        context->drawLine(size.left, size.top, size.right - 1, size.top);
        context->setFrameColor((style & k3DIn) ? light : dark);
        context->drawLine(size.right - 1, size.top, size.right - 1, size.bottom - 1);
        context->drawLine(size.right - 1, size.bottom - 1, size.left, size.bottom - 1);
        return;
    }
    if (!transparent) {
        context->setFrameColor(frameColor);
        context->drawRect(size, kDrawStroked);
    }
}

void CParamDisplay::drawText(CDrawContext* context, const char* text, const CRect& rect) {
    if (!text || (style & kNoTextStyle)) return;
    context->setFont(fontID, fontSize, txtFace);
    if (style & kShadowText) {
        CRect shadow = rect;
        shadow.offset(1.0, 1.0);
        context->setFontColor(shadowColor);
        context->drawString(text, shadow, 0, horiTxtAlign);
    }
    context->setFontColor(fontColor);
    context->drawString(text, rect, 0, horiTxtAlign);
}

void CParamDisplay::draw(CDrawContext* context) {
    if (!(style & kNoDrawStyle)) {
        char text[kTextCapacity];
        getDisplayString(text, sizeof text);
        drawBack(context);
        drawFrame(context);
        drawText(context, text, size);
    }
    setDirty(false);
}

} // namespace Vinta
