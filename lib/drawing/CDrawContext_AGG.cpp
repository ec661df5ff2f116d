#include "lib/drawing/CDrawContext_AGG.h"

#include <algorithm>
#include <cmath>

#include "lib/drawing/Agg2D.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"

namespace Vinta {

namespace {

constexpr double kDegrees = 0.017453292519943295;

Agg2D::Color toAgg(const CColor& c) {
    return Agg2D::Color(c.red, c.green, c.blue, c.alpha);
}

Agg2D::Font aggFont(const CFontDesc* font, double size) {
    if (font == nullptr)
        return {};
    const CFontDesc::Face& face = font->face();
    // nanovg draws a font at 1.2 times its nominal size; the software path matches it.
    return Agg2D::Font{face.data, face.size, size * 1.2};
}

agg::rendering_buffer pixelsOf(CBitmap& bitmap) {
    return agg::rendering_buffer(bitmap.getPixels(), bitmap.getPixelWidth(), bitmap.getPixelHeight(),
                                 bitmap.getStride());
}

}  // namespace

CDrawContext_AGG::CDrawContext_AGG(CFrame* owner) : CDrawContext(owner), agg(std::make_unique<Agg2D>()) {
    resetClipRect();
}

CDrawContext_AGG::CDrawContext_AGG(CFrame* owner, uint8_t* pixels, uint32_t width, uint32_t height, int32_t stride)
    : CDrawContext_AGG(owner) {
    attach(pixels, width, height, stride);
}

CDrawContext_AGG::~CDrawContext_AGG() = default;

void CDrawContext_AGG::attach(uint8_t* pixels, uint32_t width, uint32_t height, int32_t stride) {
    if (pixels == nullptr)
        width = height = 0;
    agg->attach(pixels, width, height, stride);
    contextWidth = static_cast<int32_t>(width);
    contextHeight = static_cast<int32_t>(height);
    resetClipRect();
}

void CDrawContext_AGG::setGlobalAlpha(float value) {
    alpha = std::clamp(value, 0.0f, 1.0f);
    agg->globalAlpha(alpha);
}

void CDrawContext_AGG::prepareStroke() {
    agg->lineColor(toAgg(frameColor));
    agg->lineWidth(lineWidth);
    const double w = std::max(1.0f, lineWidth);
    if (lineStyle == kLineDashed)
        agg->dashes(3 * w, 3 * w);
    else if (lineStyle == kLineDotted)
        agg->dashes(w, w);
    else
        agg->dashes(0, 0);
    agg->antiAlias(drawMode != kCopyMode);
}

void CDrawContext_AGG::prepareFill() {
    if (usePaint && paint.kind == CPaint::kLinear)
        agg->linearGradient(paint.from.x, paint.from.y, paint.to.x, paint.to.y, toAgg(paint.inner), toAgg(paint.outer));
    else if (usePaint && paint.kind == CPaint::kRadial)
        agg->radialGradient(paint.from.x, paint.from.y, paint.radius, paint.feather, toAgg(paint.inner),
                            toAgg(paint.outer));
    else if (usePaint && paint.kind == CPaint::kBox)
        agg->boxGradient(paint.box.left, paint.box.top, paint.box.getWidth(), paint.box.getHeight(), paint.radius,
                         paint.feather, toAgg(paint.inner), toAgg(paint.outer));
    else
        agg->fillColor(toAgg(fillColor));
}

void CDrawContext_AGG::finishPath(int32_t style) {
    prepareStroke();
    prepareFill();
    agg->drawPath(style == kDrawStroked ? Agg2D::StrokeOnly
                                        : (style == kDrawFilled ? Agg2D::FillOnly : Agg2D::FillAndStroke));
}

void CDrawContext_AGG::drawLine(double x1, double y1, double x2, double y2) {
    agg->resetPath();
    agg->moveTo(x1 + offset.x, y1 + offset.y);
    agg->lineTo(x2 + offset.x, y2 + offset.y);
    finishPath(kDrawStroked);
}

void CDrawContext_AGG::drawPolyline(const CPoint* points, int32_t count) {
    if (points == nullptr || count < 1)
        return;
    agg->resetPath();
    agg->moveTo(points[0].x + offset.x, points[0].y + offset.y);
    for (int32_t i = 1; i < count; ++i)
        agg->lineTo(points[i].x + offset.x, points[i].y + offset.y);
    finishPath(kDrawStroked);
}

void CDrawContext_AGG::drawPolygon(const CPoint* points, int32_t count, int32_t style, bool close) {
    if (points == nullptr || count < 1 || !validStyle(style))
        return;
    agg->resetPath();
    agg->moveTo(points[0].x + offset.x, points[0].y + offset.y);
    for (int32_t i = 1; i < count; ++i)
        agg->lineTo(points[i].x + offset.x, points[i].y + offset.y);
    if (close)
        agg->closePolygon();
    finishPath(style);
}

void CDrawContext_AGG::drawRect(const CRect& rect, int32_t style) {
    if (!validStyle(style))
        return;
    CRect r = normalized(rect);
    r.offset(offset.x, offset.y);
    agg->resetPath();
    agg->moveTo(r.left, r.top);
    agg->lineTo(r.right, r.top);
    agg->lineTo(r.right, r.bottom);
    agg->lineTo(r.left, r.bottom);
    agg->closePolygon();
    finishPath(style);
}

void CDrawContext_AGG::drawRoundRectCorners(const CRect& rect, double topLeft, double topRight, double bottomRight,
                                            double bottomLeft, int32_t style) {
    if (!validStyle(style))
        return;
    CRect r = normalized(rect);
    r.offset(offset.x, offset.y);
    agg->resetPath();
    agg->addRoundedRect(r.left, r.top, r.right, r.bottom, topLeft, topRight, bottomRight, bottomLeft);
    finishPath(style);
}

void CDrawContext_AGG::drawArc(const CRect& rect, double startDegrees, double sweepDegrees, int32_t style) {
    if (!validStyle(style))
        return;
    const CRect r = normalized(rect);
    const CPoint c = r.getCenter() + offset;
    // Always clockwise, as nanovg draws it: a negative sweep goes the long way round.
    double sweep = sweepDegrees * kDegrees;
    if (std::fabs(sweep) >= 2 * M_PI)
        sweep = 2 * M_PI;
    else
        while (sweep < 0.0)
            sweep += 2 * M_PI;
    agg->resetPath();
    agg->addArc(c.x, c.y, r.getWidth() * 0.5, r.getWidth() * 0.5, startDegrees * kDegrees, sweep, false);
    finishPath(style);
}

void CDrawContext_AGG::drawEllipse(const CRect& rect, int32_t style) {
    if (!validStyle(style))
        return;
    const CRect r = normalized(rect);
    const CPoint c = r.getCenter() + offset;
    agg->resetPath();
    agg->addEllipse(c.x, c.y, r.getWidth() * 0.5, r.getHeight() * 0.5);
    finishPath(style);
}

void CDrawContext_AGG::drawPoint(const CPoint& point, const CColor& colour) {
    const int x = static_cast<int>(std::floor(point.x + offset.x));
    const int y = static_cast<int>(std::floor(point.y + offset.y));
    if (clipRect.pointInside(CPoint(x + 0.5, y + 0.5)))
        agg->blendPixel(x, y, toAgg(colour));
}

CColor CDrawContext_AGG::getPoint(const CPoint& point) const {
    const Agg2D::Color stored = agg->pixel(static_cast<int>(std::floor(point.x + offset.x)),
                                           static_cast<int>(std::floor(point.y + offset.y)));
    if (stored.a == 0)
        return CColor{0, 0, 0, 0};
    auto straight = [&](agg::int8u c) { return static_cast<uint8_t>(std::min(255, (c * 255 + stored.a / 2) / stored.a)); };
    return CColor{straight(stored.r), straight(stored.g), straight(stored.b), stored.a};
}

void CDrawContext_AGG::blurRect(const CRect& rect, double radiusX, double radiusY, int32_t type) {
    CRect r = normalized(rect);
    r.offset(offset.x, offset.y);
    r.bound(clipRect);
    agg->blur(static_cast<int>(std::floor(r.left)), static_cast<int>(std::floor(r.top)),
              static_cast<int>(std::ceil(r.right)), static_cast<int>(std::ceil(r.bottom)), radiusX, radiusY, type);
}

void CDrawContext_AGG::clearWithColor(const CColor& colour) {
    agg->clearAll(toAgg(colour));
}

void CDrawContext_AGG::applyClip() {
    agg->clipBox(clipRect.left, clipRect.top, clipRect.right, clipRect.bottom);
}

void CDrawContext_AGG::setClipRect(const CRect& rect) {
    clipRect = normalized(rect);
    clipRect.offset(offset.x, offset.y);
    applyClip();
}

void CDrawContext_AGG::resetClipRect() {
    clipRect = defaultClip();
    applyClip();
}

void CDrawContext_AGG::setFont(CFontDesc* value, double size, int32_t style) {
    font = value != nullptr ? value : kSystemFont;
    font->setStyle(style);
    fontSizeCurrent = size != 0.0 ? size : font->getSize();
}

double CDrawContext_AGG::getStringWidth(const char* text) {
    return agg->textWidth(aggFont(font, fontSizeCurrent), text);
}

double CDrawContext_AGG::drawString(const char* text, const CRect& rect, int32_t, int32_t align) {
    if (text == nullptr)
        return 0.0;
    CRect box = normalized(rect);
    box.offset(offset.x, offset.y);
    CRect visible = box;
    visible.bound(clipRect);
    if (visible.isEmpty())
        return 0.0;
    const Agg2D::Font face = aggFont(font, fontSizeCurrent);
    const double width = agg->textWidth(face, text);
    double ascent = 0.0, descent = 0.0;
    agg->fontMetrics(face, ascent, descent);
    const double middle = (box.top + box.bottom) * 0.5;
    double x = (box.left + box.right) * 0.5;  // 3 and above: starts at the centre
    if (align == kAlignLeft)
        x = box.left;
    else if (align == kAlignCenter)
        x -= width * 0.5;
    else if (align == kAlignRight)
        x = box.right - width;
    // Glyphs sit on whole pixels, as the font stash places them.
    const double baseline = std::floor(middle + (ascent + descent) * 0.5);
    const CRect saved = clipRect;
    clipRect = visible;
    applyClip();
    agg->fillColor(toAgg(fontColor));
    agg->antiAlias(true);
    agg->drawText(face, text, std::floor(x), baseline, agg::trans_affine());
    clipRect = saved;
    applyClip();
    return width;
}

void CDrawContext_AGG::drawStringAtPoint(const char* text, const CRect& rect, double angle, int32_t align) {
    if (text == nullptr)
        return;
    const CRect box = normalized(rect);
    const CPoint centre = box.getCenter();
    CPoint anchor = centre;
    if (align == kAlignLeft)
        anchor.x = box.left;
    else if (align == kAlignRight)
        anchor.x = box.right;
    const Agg2D::Font face = aggFont(font, fontSizeCurrent);
    const double width = agg->textWidth(face, text);
    double ascent = 0.0, descent = 0.0;
    agg->fontMetrics(face, ascent, descent);
    double x = 0.0;
    if (align == kAlignCenter)
        x = -width * 0.5;
    else if (align == kAlignRight)
        x = -width;
    const agg::trans_affine placement =
        agg::trans_affine_rotation(angle) * agg::trans_affine_translation(anchor.x + offset.x, anchor.y + offset.y);
    // Unclipped, like the nanovg path that resets its scissor here.
    agg->clipBox(0, 0, agg->width(), agg->height());
    agg->fillColor(toAgg(fontColor));
    agg->antiAlias(true);
    agg->drawText(face, text, x, 6.0 + (ascent + descent) * 0.5, placement);
    applyClip();
}

void CDrawContext_AGG::drawBitmapPattern(const CRect& rect, CBitmap* bitmap, const CPoint& source, uint8_t alphaByte) {
    if (bitmap != nullptr)
        drawBitmap(*bitmap, rect, source, alphaByte, true);
}

void CDrawContext_AGG::drawBitmap(CBitmap& bitmap, const CRect& rect, const CPoint& source, uint8_t alphaByte,
                                  bool blend) {
    if (!bitmap.isValid() || bitmap.getPixels() == nullptr)
        return;
    CRect r = normalized(rect);
    r.offset(offset.x, offset.y);
    if (bitmap.getDensity() != 1.0) {
        drawDenseBitmap(bitmap, r, source, alphaByte, blend);
        return;
    }
    const int dx = static_cast<int>(std::lround(r.left)), dy = static_cast<int>(std::lround(r.top));
    const int sx = static_cast<int>(std::lround(source.x)), sy = static_cast<int>(std::lround(source.y));
    const int w = std::min(static_cast<int>(std::lround(r.getWidth())), static_cast<int>(bitmap.getPixelWidth()) - sx);
    const int h = std::min(static_cast<int>(std::lround(r.getHeight())), static_cast<int>(bitmap.getPixelHeight()) - sy);
    if (sx < 0 || sy < 0 || w <= 0 || h <= 0)
        return;
    agg->blendImage(pixelsOf(bitmap), sx, sy, w, h, dx, dy, alphaByte, blend);
}

// A bitmap of more pixels than units: each unit pixel is the mean of its block of source pixels
// (premultiplied, so the mean is right at the edges too), then blended as a plain image.
void CDrawContext_AGG::drawDenseBitmap(CBitmap& bitmap, const CRect& r, const CPoint& source, uint8_t alphaByte,
                                       bool blend) {
    const double d = bitmap.getDensity();
    const int w = static_cast<int>(std::lround(r.getWidth())), h = static_cast<int>(std::lround(r.getHeight()));
    const int sx = static_cast<int>(std::lround(source.x * d)), sy = static_cast<int>(std::lround(source.y * d));
    const auto pw = static_cast<int>(bitmap.getPixelWidth()), ph = static_cast<int>(bitmap.getPixelHeight());
    if (w <= 0 || h <= 0 || sx < 0 || sy < 0 || sx >= pw || sy >= ph) return;
    const int block = std::max(1, static_cast<int>(std::lround(d)));
    denseScratch.assign(static_cast<size_t>(w) * h * 4, 0);
    const uint8_t* pixels = bitmap.getPixels();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            unsigned sum[4] = {0, 0, 0, 0}, count = 0;
            for (int by = 0; by < block; ++by)
                for (int bx = 0; bx < block; ++bx) {
                    const int px = sx + x * block + bx, py = sy + y * block + by;
                    if (px >= pw || py >= ph) continue;
                    const uint8_t* p = pixels + static_cast<ptrdiff_t>(py) * bitmap.getStride() + px * 4;
                    for (int c = 0; c < 4; ++c) sum[c] += p[c];
                    ++count;
                }
            uint8_t* out = &denseScratch[(static_cast<size_t>(y) * w + x) * 4];
            for (int c = 0; c < 4 && count; ++c) out[c] = static_cast<uint8_t>(sum[c] / count);
        }
    agg::rendering_buffer scaled(denseScratch.data(), static_cast<unsigned>(w), static_cast<unsigned>(h), w * 4);
    agg->blendImage(scaled, 0, 0, w, h, static_cast<int>(std::lround(r.left)), static_cast<int>(std::lround(r.top)),
                    alphaByte, blend);
}

void CDrawContext_AGG::drawBitmapStretched(CBitmap& bitmap, const CRect& rect) {
    if (!bitmap.isValid() || bitmap.getPixels() == nullptr)
        return;
    CRect r = normalized(rect);
    r.offset(offset.x, offset.y);
    agg->transformImage(pixelsOf(bitmap), r.left, r.top, r.right, r.bottom);
}

}  // namespace Vinta
