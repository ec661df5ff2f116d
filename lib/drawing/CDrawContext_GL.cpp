#include "lib/drawing/CDrawContext_GL.h"

#include <GL/glew.h>

#include <algorithm>
#include <cassert>
#include <cmath>

#define NANOVG_GL3_IMPLEMENTATION
#include <nanovg_gl.h>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"

namespace Vinta {

namespace {

constexpr double kDegrees = 0.017453292519943295;

NVGcolor toNVG(const CColor& c) {
    return nvgRGBAf(c.red / 255.0f, c.green / 255.0f, c.blue / 255.0f, c.alpha / 255.0f);
}

// Alignment words of drawString: left, centre, right, and the centre anchor with nanovg's plain
// middle alignment for anything else.
int textAlignment(int32_t align) {
    switch (align) {
        case kAlignLeft: return NVG_ALIGN_LEFT | NVG_ALIGN_MIDDLE;
        case kAlignCenter: return NVG_ALIGN_CENTER | NVG_ALIGN_MIDDLE;
        case kAlignRight: return NVG_ALIGN_RIGHT | NVG_ALIGN_MIDDLE;
        default: return NVG_ALIGN_MIDDLE;
    }
}

}  // namespace

NVGcontext* CDrawContext_GL::createNanoVG(bool debug) {
    return nvgCreateGL3(NVG_ANTIALIAS | NVG_STENCIL_STROKES | (debug ? NVG_DEBUG : 0));
}

void CDrawContext_GL::deleteNanoVG(NVGcontext* context) {
    if (context != nullptr)
        nvgDeleteGL3(context);
}

CDrawContext_GL::CDrawContext_GL(CFrame* owner, NVGcontext* context, int32_t windowWidth, int32_t windowHeight)
    : CDrawContext(owner), nvg(context) {
    assert(nvg != nullptr && "m_nvg != nullptr");
    contextWidth = windowWidth + 1;
    contextHeight = windowHeight + 1;
    if (nvg != nullptr)
        nvgShapeAntiAlias(nvg, 1);
    frameColor = kWhiteCColor;
    fillColor = kBlackCColor;
    fontColor = kWhiteCColor;
    drawMode = kCopyMode;
    lineWidth = 1.0f;
    alpha = 1.0f;
    font = kSystemFont;
    fontSizeCurrent = 100.0;
    clipRect = CRect(0, 0, windowWidth, windowHeight);
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    if (largest > 0)
        largestImage = largest;
}

CDrawContext_GL::~CDrawContext_GL() {
    std::lock_guard<std::mutex> guard(imageLock);
    if (nvg != nullptr)
        for (const auto& entry : imageCache)
            for (const Band& band : entry.second)
                nvgDeleteImage(nvg, band.image);
}

NVGcontext* CDrawContext_GL::checked() const {
    assert(nvg != nullptr && "m_nvg != nullptr");
    return nvg;
}

void CDrawContext_GL::beginFrame(int32_t windowWidth, int32_t windowHeight, float pixelRatio) {
    if (checked() == nullptr)
        return;
    contextWidth = windowWidth + 1;
    contextHeight = windowHeight + 1;
    nvgBeginFrame(nvg, static_cast<float>(windowWidth), static_cast<float>(windowHeight), pixelRatio);
    nvgShapeAntiAlias(nvg, 1);
    nvgGlobalAlpha(nvg, alpha);
    selectFont();
    nvgScissor(nvg, static_cast<float>(clipRect.left), static_cast<float>(clipRect.top),
               static_cast<float>(clipRect.getWidth()), static_cast<float>(clipRect.getHeight()));
}

void CDrawContext_GL::endFrame() {
    if (checked() != nullptr)
        nvgEndFrame(nvg);
}

size_t CDrawContext_GL::getImageCount() const {
    std::lock_guard<std::mutex> guard(imageLock);
    return imageCache.size();
}

void CDrawContext_GL::setGlobalAlpha(float value) {
    alpha = std::clamp(value, 0.0f, 1.0f);
    if (checked() != nullptr)
        nvgGlobalAlpha(nvg, alpha);
}

void CDrawContext_GL::finishPath(int32_t style) {
    if (style != kDrawStroked) {
        // A gradient set since the last setFillColor replaces the fill colour.
        if (usePaint && paint.kind == CPaint::kLinear)
            nvgFillPaint(nvg, nvgLinearGradient(nvg, paint.from.x, paint.from.y, paint.to.x, paint.to.y,
                                                toNVG(paint.inner), toNVG(paint.outer)));
        else if (usePaint && paint.kind == CPaint::kRadial)
            nvgFillPaint(nvg, nvgRadialGradient(nvg, paint.from.x, paint.from.y, paint.radius, paint.feather,
                                                toNVG(paint.inner), toNVG(paint.outer)));
        else if (usePaint && paint.kind == CPaint::kBox)
            nvgFillPaint(nvg, nvgBoxGradient(nvg, paint.box.left, paint.box.top, paint.box.getWidth(),
                                             paint.box.getHeight(), paint.radius, paint.feather, toNVG(paint.inner),
                                             toNVG(paint.outer)));
        else
            nvgFillColor(nvg, toNVG(fillColor));
        nvgFill(nvg);
    }
    if (style != kDrawFilled) {
        nvgStrokeColor(nvg, toNVG(frameColor));
        nvgStrokeWidth(nvg, lineWidth);
        nvgStroke(nvg);
    }
}

void CDrawContext_GL::drawLine(double x1, double y1, double x2, double y2) {
    if (checked() == nullptr)
        return;
    nvgBeginPath(nvg);
    nvgMoveTo(nvg, x1 + offset.x, y1 + offset.y);
    nvgLineTo(nvg, x2 + offset.x, y2 + offset.y);
    finishPath(kDrawStroked);
}

void CDrawContext_GL::drawPolyline(const CPoint* points, int32_t count) {
    if (checked() == nullptr || points == nullptr || count < 1)
        return;
    nvgBeginPath(nvg);
    nvgMoveTo(nvg, points[0].x + offset.x, points[0].y + offset.y);
    for (int32_t i = 1; i < count; ++i)
        nvgLineTo(nvg, points[i].x + offset.x, points[i].y + offset.y);
    finishPath(kDrawStroked);
}

void CDrawContext_GL::drawPolygon(const CPoint* points, int32_t count, int32_t style, bool close) {
    if (checked() == nullptr || points == nullptr || count < 1 || !validStyle(style))
        return;
    nvgBeginPath(nvg);
    nvgMoveTo(nvg, points[0].x + offset.x, points[0].y + offset.y);
    for (int32_t i = 1; i < count; ++i)
        nvgLineTo(nvg, points[i].x + offset.x, points[i].y + offset.y);
    if (close)
        nvgClosePath(nvg);
    finishPath(style);
}

void CDrawContext_GL::drawRect(const CRect& rect, int32_t style) {
    if (checked() == nullptr || !validStyle(style))
        return;
    const CRect r = normalized(rect);
    nvgBeginPath(nvg);
    nvgRect(nvg, r.left + offset.x, r.top + offset.y, r.getWidth(), r.getHeight());
    finishPath(style);
}

void CDrawContext_GL::drawRoundRectCorners(const CRect& rect, double topLeft, double topRight, double bottomRight,
                                           double bottomLeft, int32_t style) {
    if (checked() == nullptr || !validStyle(style))
        return;
    const CRect r = normalized(rect);
    nvgBeginPath(nvg);
    nvgRoundedRectVarying(nvg, r.left + offset.x, r.top + offset.y, r.getWidth(), r.getHeight(), topLeft, topRight,
                          bottomRight, bottomLeft);
    finishPath(style);
}

void CDrawContext_GL::drawArc(const CRect& rect, double startDegrees, double sweepDegrees, int32_t style) {
    if (checked() == nullptr || !validStyle(style))
        return;
    const CRect r = normalized(rect);
    const CPoint c = r.getCenter() + offset;
    nvgBeginPath(nvg);
    nvgArc(nvg, c.x, c.y, r.getWidth() * 0.5, startDegrees * kDegrees, (startDegrees + sweepDegrees) * kDegrees,
           NVG_CW);
    finishPath(style);
}

void CDrawContext_GL::drawEllipse(const CRect& rect, int32_t style) {
    if (checked() == nullptr || !validStyle(style))
        return;
    const CRect r = normalized(rect);
    const CPoint c = r.getCenter() + offset;
    nvgBeginPath(nvg);
    nvgEllipse(nvg, c.x, c.y, r.getWidth() * 0.5, r.getHeight() * 0.5);
    finishPath(style);
}

void CDrawContext_GL::drawPoint(const CPoint& point, const CColor& colour) {
    if (checked() == nullptr)
        return;
    nvgBeginPath(nvg);
    nvgRect(nvg, std::floor(point.x + offset.x), std::floor(point.y + offset.y), 1, 1);
    nvgFillColor(nvg, toNVG(colour));
    nvgFill(nvg);
}

void CDrawContext_GL::clearWithColor(const CColor& colour) {
    if (checked() == nullptr)
        return;
    nvgSave(nvg);
    nvgResetScissor(nvg);
    nvgBeginPath(nvg);
    nvgRect(nvg, 0, 0, contextWidth, contextHeight);
    nvgFillColor(nvg, toNVG(colour));
    nvgFill(nvg);
    nvgRestore(nvg);
}

void CDrawContext_GL::setClipRect(const CRect& rect) {
    clipRect = normalized(rect);
    clipRect.offset(offset.x, offset.y);
    if (checked() != nullptr)
        nvgScissor(nvg, clipRect.left, clipRect.top, clipRect.getWidth(), clipRect.getHeight());
}

void CDrawContext_GL::resetClipRect() {
    if (checked() != nullptr)
        nvgResetScissor(nvg);
    clipRect = defaultClip();
}

bool CDrawContext_GL::selectFont() {
    fontId = -1;
    if (nvg == nullptr || font == nullptr || !font->hasData())
        return false;
    const std::string& name = font->registrationName();
    fontId = nvgFindFont(nvg, name.c_str());
    const CFontDesc::Face& face = font->face();
    if (fontId < 0 && face.data != nullptr)
        fontId = nvgCreateFontMem(nvg, name.c_str(), const_cast<unsigned char*>(face.data),
                                  static_cast<int>(face.size), 0);
    if (fontId < 0)
        return false;
    nvgFontFaceId(nvg, fontId);
    nvgFontSize(nvg, static_cast<float>(fontSizeCurrent * 1.2));
    return true;
}

void CDrawContext_GL::setFont(CFontDesc* value, double size, int32_t style) {
    font = value != nullptr ? value : kSystemFont;
    font->setStyle(style);
    fontSizeCurrent = size != 0.0 ? size : font->getSize();
    selectFont();
}

double CDrawContext_GL::getStringWidth(const char* text) {
    if (checked() == nullptr || text == nullptr || fontId < 0)
        return 0.0;
    return nvgTextBounds(nvg, 0, 0, text, nullptr, nullptr);
}

double CDrawContext_GL::drawString(const char* text, const CRect& rect, int32_t, int32_t align) {
    if (text == nullptr || checked() == nullptr || fontId < 0)
        return 0.0;
    CRect box = normalized(rect);
    box.offset(offset.x, offset.y);
    CRect visible = box;
    visible.bound(clipRect);
    if (visible.isEmpty())
        return 0.0;
    nvgSave(nvg);
    nvgScissor(nvg, visible.left, visible.top, visible.getWidth(), visible.getHeight());
    double x = (box.left + box.right) * 0.5;
    if (align == kAlignLeft)
        x = box.left;
    else if (align == kAlignRight)
        x = box.right;
    nvgTextAlign(nvg, textAlignment(align));
    nvgFillColor(nvg, toNVG(fontColor));
    nvgStrokeColor(nvg, toNVG(fontColor));
    const double width = nvgTextBounds(nvg, 0, 0, text, nullptr, nullptr);
    nvgText(nvg, x, (box.top + box.bottom) * 0.5, text, nullptr);
    nvgRestore(nvg);
    return width;
}

void CDrawContext_GL::drawStringAtPoint(const char* text, const CRect& rect, double angle, int32_t align) {
    if (text == nullptr || checked() == nullptr || fontId < 0)
        return;
    const CRect box = normalized(rect);
    CPoint anchor = box.getCenter();
    if (align == kAlignLeft)
        anchor.x = box.left;
    else if (align == kAlignRight)
        anchor.x = box.right;
    nvgSave(nvg);
    nvgResetScissor(nvg);
    nvgTranslate(nvg, anchor.x + offset.x, anchor.y + offset.y);
    nvgRotate(nvg, angle);
    nvgFillColor(nvg, toNVG(fontColor));
    nvgStrokeColor(nvg, toNVG(fontColor));
    nvgTextAlign(nvg, textAlignment(align));
    nvgText(nvg, 0.0f, 6.0f, text, nullptr);
    nvgRestore(nvg);
}

const std::vector<CDrawContext_GL::Band>* CDrawContext_GL::bandsOf(CBitmap& bitmap) {
    std::lock_guard<std::mutex> guard(imageLock);
    const uint32_t width = bitmap.getPixelWidth(), height = bitmap.getPixelHeight();
    const ImageKey key{&bitmap, width, height};
    auto found = imageCache.find(key);
    const uint8_t* pixels = bitmap.getPixels();
    const size_t rowBytes = static_cast<size_t>(width) * 4;
    if (found == imageCache.end()) {
        if (width == 0 || height == 0 || width > static_cast<uint32_t>(largestImage))
            return nullptr;
        std::vector<Band> bands;
        for (uint32_t first = 0; first < height; first += static_cast<uint32_t>(largestImage)) {
            const uint32_t rows = std::min(height - first, static_cast<uint32_t>(largestImage));
            const int id = nvgCreateImageRGBA(nvg, static_cast<int>(width), static_cast<int>(rows),
                                              bitmap.getImageFlags() | NVG_IMAGE_PREMULTIPLIED | NVG_IMAGE_GENERATE_MIPMAPS,
                                              pixels + first * rowBytes);
            if (id <= 0) {
                for (const Band& band : bands)
                    nvgDeleteImage(nvg, band.image);
                return nullptr;
            }
            bands.push_back({id, first, rows});
        }
        bitmap.setNeedsUpload(false);
        found = imageCache.emplace(key, std::move(bands)).first;
    }
    if (bitmap.getNeedsUpload()) {
        // nanovg renews only the full-size level: a bitmap drawn smaller would go on showing what
        // it held at its first upload (a knob's frame from before the host moved it).
        for (const Band& band : found->second) {
            nvgUpdateImage(nvg, band.image, pixels + band.firstRow * rowBytes);
            glBindTexture(GL_TEXTURE_2D, nvglImageHandleGL3(nvg, band.image));
            glGenerateMipmap(GL_TEXTURE_2D);
        }
        glBindTexture(GL_TEXTURE_2D, 0);  // where nanovg's own binding left it
        bitmap.setNeedsUpload(false);
    }
    return &found->second;
}

void CDrawContext_GL::fillBitmap(CBitmap& bitmap, const CRect& area, double patternX, double patternY,
                                 double patternW, double patternH, float patternAlpha) {
    // nanovg takes rows packed top down.
    if (checked() == nullptr || !bitmap.isValid() || bitmap.getPixels() == nullptr ||
        bitmap.getStride() != static_cast<int32_t>(bitmap.getPixelWidth() * 4))
        return;
    const std::vector<Band>* bands = bandsOf(bitmap);
    if (bands == nullptr)
        return;
    // Each band paints the part of the area that shows its rows.
    const double unitsPerRow = patternH / bitmap.getPixelHeight();
    for (const Band& band : *bands) {
        const double top = patternY + band.firstRow * unitsPerRow, height = band.rows * unitsPerRow;
        const double from = std::max(area.top, top), to = std::min(area.bottom, top + height);
        if (to <= from)
            continue;
        const NVGpaint pattern = nvgImagePattern(nvg, patternX, top, patternW, height, 0.0f, band.image, patternAlpha);
        nvgBeginPath(nvg);
        nvgRect(nvg, area.left, from, area.getWidth(), to - from);
        nvgFillPaint(nvg, pattern);
        nvgFill(nvg);
    }
}

void CDrawContext_GL::drawBitmap(CBitmap& bitmap, const CRect& rect, const CPoint& source, uint8_t alphaByte, bool) {
    CRect area = normalized(rect);
    area.offset(offset.x, offset.y);
    fillBitmap(bitmap, area, area.left - source.x, area.top - source.y, bitmap.getWidth(), bitmap.getHeight(),
               alphaByte / 255.0f);
}

void CDrawContext_GL::drawBitmapPattern(const CRect& rect, CBitmap* bitmap, const CPoint& source, uint8_t alphaByte) {
    if (bitmap != nullptr)
        drawBitmap(*bitmap, rect, source, alphaByte, true);
}

void CDrawContext_GL::drawBitmapStretched(CBitmap& bitmap, const CRect& rect) {
    CRect area = normalized(rect);
    area.offset(offset.x, offset.y);
    fillBitmap(bitmap, area, area.left, area.top, area.getWidth(), area.getHeight(), 1.0f);
}

}  // namespace Vinta
