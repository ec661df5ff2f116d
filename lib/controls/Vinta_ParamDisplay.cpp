#include "lib/controls/Vinta_ParamDisplay.h"

#include <cmath>
#include <cstring>

#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/ParameterText.h"

namespace Vinta {

CView* Vinta_ParamDisplay::CInfo::CreateObject() { return object = new Vinta_ParamDisplay(*this); }

Vinta_ParamDisplay::Vinta_ParamDisplay(const CRect& rect, Ondra::IPluginParameter* shown, bool lines)
    : CParamDisplay(rect), twoLines(lines) {
    if (shown) {
        setParameter(shown);
        listenToParameter();
    }
}

Vinta_ParamDisplay::Vinta_ParamDisplay(const CInfo& info)
    : CParamDisplay(info.rect, nullptr, info.style), twoLines(info.twoLines), hideName(info.hideName) {
    backColor = info.backColor;
    takeTextRecord(info);
}

Vinta_ParamDisplay::~Vinta_ParamDisplay() { stopListeningToParameter(); }

bool Vinta_ParamDisplay::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "Vinta_ParamDisplay") == 0) || CParamDisplay::isTypeOf(name);
}

void Vinta_ParamDisplay::parameterChanged(Ondra::IPluginParameter* changed) {
    if (changed && changed == parameter) {
        // Only the value is kept here (any thread); the text is made when drawing.
        value = changed->getNormalized();
        setDirty(true);
        return;
    }
    CParamDisplay::parameterChanged(changed);
}

void Vinta_ParamDisplay::getDisplayString(char* out, size_t capacity) const {
    if (!parameter) return CParamDisplay::getDisplayString(out, capacity);
    copyParameterText(parameter, out, capacity, !hideName, !twoLines, true);
}

void Vinta_ParamDisplay::draw(CDrawContext* context) {
    if (style & kNoDrawStyle) return setDirty(false);
    if (!transparent) {
        const CRect fill(std::floor(size.left - 0.5), std::floor(size.top - 0.5), std::ceil(size.right + 0.5),
                         std::ceil(size.bottom + 0.5));
        context->setFillColor(backColor);
        context->drawRect(fill, kDrawFilled);
    } else if (background) {
        drawBackground(context, size);
    }
    char text[kTextCapacity];
    getDisplayString(text, sizeof text);
    if (twoLines && parameter) {
        CRect upper = size, lower = size;
        upper.bottom = lower.top = size.top + size.getHeight() * 0.5;
        drawText(context, text, upper);
        char unit[kTextCapacity] = {0};
        parameter->copyUnitLabel(unit);
        drawText(context, unit, lower);
    } else {
        drawText(context, text, size);
    }
    setDirty(false);
}

} // namespace Vinta
