#include "lib/drawing/CDrawContext.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/views/CFrame.h"

namespace Vinta {

CDrawContext::CDrawContext(CFrame* owner) : frame(owner), font(kSystemFont) {}

CDrawContext::~CDrawContext() {
    for (auto& entry : gradientCache)
        if (entry.second.bitmap != nullptr)
            entry.second.bitmap->forget();
}

uint8_t CDrawContext::getGlobalAlphaByte() const {
    return static_cast<uint8_t>(std::lround(std::clamp(alpha, 0.0f, 1.0f) * 255.0f));
}

void CDrawContext::lineTo(const CPoint& point) {
    drawLine(penPosition.x, penPosition.y, point.x, point.y);
    penPosition = point;
}

void CDrawContext::drawNormalizedPolygon(const CPoint* points, int32_t count, bool close, const CRect& rect,
                                         int32_t style, bool drawClosingLine) {
    if (points == nullptr || count < 1)
        return;
    std::vector<CPoint> placed(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i)
        placed[i] = CPoint(rect.left + points[i].x * rect.getWidth(), rect.top + points[i].y * rect.getHeight());
    drawPolygon(placed.data(), count, style, close);
    if (drawClosingLine && !close && count > 1)
        drawLine(placed.back().x, placed.back().y, placed.front().x, placed.front().y);
}

void CDrawContext::swapClipRect(CRect& saved, const CRect& rect) {
    getClipRect(saved);
    setClipRect(rect);
}

void CDrawContext::getClipRect(CRect& out) const {
    out = clipRect;
    out.offset(-offset.x, -offset.y);
}

void CDrawContext::getClippedRect(CRect& out, const CRect& rect, double inset) const {
    CRect clip;
    getClipRect(clip);
    out = normalized(rect);
    out.bound(clip);
    out.inset(inset, inset);
}

int32_t CDrawContext::getFontHeight() const {
    return static_cast<int32_t>(fontSizeCurrent);
}

void CDrawContext::drawStringMultiline(const char* text, const CRect& rect, int32_t mode, int32_t align) {
    if (text == nullptr)
        return;
    const double lineHeight = std::max(getFontHeight(), 1);
    const int fitting = static_cast<int>((rect.bottom - rect.top) / lineHeight);
    const int lines = 1 + static_cast<int>(std::count(text, text + std::strlen(text), '\n'));
    CRect box(rect.left, rect.top, rect.right, rect.top + lineHeight + 4 * lineHeight / 10);
    if (lines <= fitting)
        box.offset(0, ((rect.bottom - rect.top) - lines * lineHeight) / 2);
    CRect saved;
    getClipRect(saved);
    CRect bounded = rect;
    setClipRect(bounded.bound(saved));
    const char* line = text;
    for (int index = 0; index < lines && index < fitting; ++index) {
        const char* end = std::strchr(line, '\n');
        const std::string part = end != nullptr ? std::string(line, end) : std::string(line);
        drawString(part.c_str(), box, mode, align);
        box.offset(0, lineHeight);
        if (end == nullptr)
            break;
        line = end + 1;
    }
    setClipRect(saved);
}

void CDrawContext::fillVerticalGradient(const CRect& rect, const CColor& top, const CColor& middle,
                                        const CColor& bottom, uint64_t key) {
    const CRect area = normalized(rect);
    auto found = gradientCache.find(key);
    if (found == gradientCache.end()) {
        const double rows = std::max(1.0, std::ceil(area.getHeight()));
        auto* bitmap = new CBitmap(1.0, rows);
        if (auto* software = dynamic_cast<CDrawContext_AGG*>(bitmap->getDrawContext())) {
            // Two halves: top to middle, middle to bottom.
            const double half = rows * 0.5;
            software->setLinearGradient(CRect(0, 0, 1, half), top, middle);
            software->drawRect(CRect(0, 0, 1, half), kDrawFilled);
            software->setLinearGradient(CRect(0, half, 1, rows), middle, bottom);
            software->drawRect(CRect(0, half, 1, rows), kDrawFilled);
        }
        found = gradientCache.emplace(key, CGradientRecord{area, bitmap}).first;
    }
    drawBitmapStretched(*found->second.bitmap, area);
}

void CDrawContext::getLinearGradient(CPaint& out, const CRect& rect, const CColor& from, const CColor& to) const {
    // Top to bottom of the rectangle.
    const CRect area = normalized(rect);
    out = CPaint();
    out.kind = CPaint::kLinear;
    out.from = CPoint(area.left + offset.x, area.top + offset.y);
    out.to = CPoint(area.left + offset.x, area.bottom + offset.y);
    out.inner = from;
    out.outer = to;
}

void CDrawContext::setLinearGradient(const CRect& rect, const CColor& from, const CColor& to) {
    CPaint gradient;
    getLinearGradient(gradient, rect, from, to);
    setPaint(gradient);
}

void CDrawContext::setBoxGradient(const CRect& rect, double radius, double feather, const CColor& inner,
                                  const CColor& outer) {
    CPaint gradient;
    gradient.kind = CPaint::kBox;
    gradient.box = normalized(rect);
    gradient.box.offset(offset.x, offset.y);
    gradient.radius = radius;
    gradient.feather = feather;
    gradient.inner = inner;
    gradient.outer = outer;
    setPaint(gradient);
}

void CDrawContext::setRadialGradient(const CPoint& center, double radius, const CColor& inner, const CColor& outer) {
    CPaint gradient;
    gradient.kind = CPaint::kRadial;
    gradient.from = center + offset;
    gradient.radius = 0.0;
    gradient.feather = radius;
    gradient.inner = inner;
    gradient.outer = outer;
    setPaint(gradient);
}

CRect CDrawContext::defaultClip() const {
    if (frame != nullptr) {
        const CRect& size = frame->getViewSize();
        return CRect(0, 0, size.getWidth(), size.getHeight());
    }
    if (contextWidth > 0 && contextHeight > 0)
        return CRect(0, 0, contextWidth, contextHeight);
    return CRect(0, 0, 1000, 1000);
}

CRect CDrawContext::normalized(const CRect& rect) {
    return CRect(std::min(rect.left, rect.right), std::min(rect.top, rect.bottom), std::max(rect.left, rect.right),
                 std::max(rect.top, rect.bottom));
}

}  // namespace Vinta
