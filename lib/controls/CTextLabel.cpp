#include "lib/controls/CTextLabel.h"

#include <cstdlib>
#include <cstring>

namespace Vinta {

CTextLabel::CTextLabel(const CRect& rect, const char* initial, CBitmap* bitmap, uint32_t styleBits)
    : CParamDisplay(rect, bitmap, styleBits) {
    setText(initial);
}

CTextLabel::CTextLabel(const CTextLabel& other) : CParamDisplay(other) { setText(other.text); }

CTextLabel::~CTextLabel() { std::free(text); }

bool CTextLabel::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CTextLabel") == 0) || CParamDisplay::isTypeOf(name);
}

void CTextLabel::setText(const char* newText) {
    if (!newText) newText = "";
    if (text && std::strcmp(text, newText) == 0) return;
    const size_t needed = std::strlen(newText) + 1;
    if (needed > capacity) {
        size_t grown = capacity ? capacity : 255;
        while (grown < needed) grown *= 2;
        char* bigger = static_cast<char*>(std::realloc(text, grown));
        if (!bigger) return;
        text = bigger;
        capacity = grown;
    }
    std::memcpy(text, newText, needed);
    setDirty(true);
}

void CTextLabel::draw(CDrawContext* context) {
    if (!(style & kNoDrawStyle)) {
        drawBack(context);
        drawFrame(context);
        drawText(context, getText(), size);
    }
    setDirty(false);
}

} // namespace Vinta
