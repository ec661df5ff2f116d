#include "lib/controls/Vinta_RadioGroup.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/views/VintaClock.h"

namespace Vinta {

CView* Vinta_RadioGroupControlInfo::CreateObject() { return object = new Vinta_RadioGroup(*this); }

Vinta_RadioGroup::Vinta_RadioGroup(const Vinta_RadioGroupControlInfo& info)
    : CControl(info.rect, nullptr, info.tag),
      onBitmap(info.onBitmap),
      offBitmap(info.offBitmap),
      vertical(info.vertical == 1),
      stepX(info.stepX),
      stepY(info.stepY),
      drawOffBitmap(info.drawOffBitmap),
      font(kSystemFont) {
    if (onBitmap) onBitmap->remember();
    if (offBitmap) offBitmap->remember();
    if (!info.noItems)
        for (int32_t i = 0; i < info.count; ++i) addItem("");
    setVisibilityParameter(info.visibilityParameter);
    setEnableParameter(info.enableParameter);
    if (info.parameter) {
        setParameter(info.parameter);
        listenToParameter();
    }
}

Vinta_RadioGroup::~Vinta_RadioGroup() {
    stopListeningToParameter();
    if (onBitmap) onBitmap->forget();
    if (offBitmap) offBitmap->forget();
}

bool Vinta_RadioGroup::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_RadioGroup") == 0) || CControl::isTypeOf(name);
}

void Vinta_RadioGroup::addItem(const char* label, double labelWidth) {
    Item item;
    item.index = static_cast<int32_t>(items.size());
    std::snprintf(item.label, sizeof item.label, "%s", label ? label : "");
    const CBitmap* shape = onBitmap ? onBitmap : offBitmap;
    // A missing or unreadable bitmap (size 0) still leaves a 12 x 12 place to click.
    const bool sized = shape && shape->getWidth() > 0.0 && shape->getHeight() > 0.0;
    const double width = sized ? shape->getWidth() : 12.0;
    const double height = sized ? shape->getHeight() : 12.0;
    const CPoint at = vertical ? CPoint(size.left, size.top + item.index * stepY)
                               : CPoint(size.left + item.index * stepX, size.top);
    item.bitmapRect = CRect(at, width, height);
    item.labelRect = CRect(CPoint(item.bitmapRect.right, at.y), labelWidth, height);
    item.hitRect = item.bitmapRect;
    if (labelWidth > 0.0) item.hitRect.unite(item.labelRect);
    item.level = item.index == selected ? 255.0f : 0.0f;
    items.push_back(item);
    setValue(getValue());  // the choice depends on how many there are
}

int32_t Vinta_RadioGroup::onMouseDown(const CPoint& where, CButtonState) {
    const auto hit = std::find_if(items.begin(), items.end(),
                                  [&where](const Item& item) { return item.hitRect.pointInside(where); });
    if (hit == items.end()) return kMouseEventNotHandled;
    selected = hit->index;
    const int32_t steps = std::max<int32_t>(1, getCount() - 1);
    value = static_cast<double>(selected) / steps;
    beginEdit();
    tick = getVintaTicks();
    sendToParameter(getValue());
    setDirty(true);
    return kMouseEventHandled;
}

int32_t Vinta_RadioGroup::onMouseUp(const CPoint&, CButtonState) {
    endEdit();
    return kMouseEventHandled;
}

void Vinta_RadioGroup::setValue(float newValue) {
    CControl::setValue(newValue);
    const int32_t steps = std::max<int32_t>(1, getCount() - 1);
    selected = static_cast<int32_t>(std::floor(newValue * steps + 0.02f));
}

void Vinta_RadioGroup::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        setValue(changed->getNormalized());
        setDirty(true);
        return;
    }
    CControl::parameterChanged(changed);
}

void Vinta_RadioGroup::draw(CDrawContext* context) {
    const double dt = std::clamp((getVintaTicks() - tick) / 60.0, 0.0, 1000.0);
    const float step = std::max(1.0f, static_cast<float>(100.0 * dt));
    bool fading = false;
    for (Item& item : items) {
        item.level = item.index == selected ? std::min(255.0f, item.level + step) : std::max(0.0f, item.level - step);
        fading = fading || (item.level > 0.0f && item.level < 255.0f);
        if (onBitmap && offBitmap) {
            if (item.level <= 0.0f) {
                if (drawOffBitmap) offBitmap->drawAlpha(context, item.bitmapRect, CPoint(), enabled ? 255 : 60);
            } else {
                offBitmap->drawAlpha(context, item.bitmapRect, CPoint(), enabled ? 255 : 60);
                const float alpha = enabled ? item.level : item.level * 0.25f;
                onBitmap->drawAlpha(context, item.bitmapRect, CPoint(), static_cast<uint8_t>(alpha));
            }
        }
        if (item.label[0] && item.labelRect.getWidth() > 0.0) {
            context->setFont(font, fontSize, 0);
            context->setFontColor(fontColor);
            context->drawString(item.label, item.labelRect, 0, kAlignLeft);
        }
    }
    if (fading)
        setDirty(true);
    else
        setDirty(false);
}

} // namespace Vinta
