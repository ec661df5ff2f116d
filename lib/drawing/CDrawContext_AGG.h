#pragma once
// The software back end: draws into a premultiplied RGBA buffer through Agg2D. Every bitmap has one
// (to draw off-screen), and windows without OpenGL draw through one.
#include <memory>
#include <vector>

#include "lib/drawing/CDrawContext.h"

namespace Vinta {

class Agg2D;

class CDrawContext_AGG : public CDrawContext {
public:
    explicit CDrawContext_AGG(CFrame* owner = nullptr);
    // Draws into `pixels` (four bytes each, red green blue alpha, premultiplied), owned by the caller.
    CDrawContext_AGG(CFrame* owner, uint8_t* pixels, uint32_t width, uint32_t height, int32_t stride);
    ~CDrawContext_AGG() override;

    // Rebinds the buffer; resets the clip to all of it. Null pixels leave nothing to draw on.
    void attach(uint8_t* pixels, uint32_t width, uint32_t height, int32_t stride);
    Agg2D* getAgg2D() { return agg.get(); }

    void setGlobalAlpha(float value) override;
    void drawLine(double x1, double y1, double x2, double y2) override;
    void drawPolyline(const CPoint* points, int32_t count) override;
    void drawPolygon(const CPoint* points, int32_t count, int32_t style, bool close) override;
    void drawRect(const CRect& rect, int32_t style) override;
    void drawRoundRectCorners(const CRect& rect, double topLeft, double topRight, double bottomRight,
                              double bottomLeft, int32_t style) override;
    void drawArc(const CRect& rect, double startDegrees, double sweepDegrees, int32_t style) override;
    void drawEllipse(const CRect& rect, int32_t style) override;
    void drawPoint(const CPoint& point, const CColor& colour) override;
    CColor getPoint(const CPoint& point) const override;
    void blurRect(const CRect& rect, double radiusX, double radiusY, int32_t type) override;
    void clearWithColor(const CColor& colour) override;
    void setClipRect(const CRect& rect) override;
    void resetClipRect() override;
    void setFont(CFontDesc* font, double size, int32_t style) override;
    double getStringWidth(const char* text) override;
    double drawString(const char* text, const CRect& rect, int32_t mode, int32_t align) override;
    void drawStringAtPoint(const char* text, const CRect& rect, double angle, int32_t align) override;
    void drawBitmapPattern(const CRect& rect, CBitmap* bitmap, const CPoint& offset, uint8_t alphaByte) override;
    void drawBitmap(CBitmap& bitmap, const CRect& rect, const CPoint& source, uint8_t alphaByte, bool blend) override;
    void drawBitmapStretched(CBitmap& bitmap, const CRect& rect) override;

private:
    void drawDenseBitmap(CBitmap& bitmap, const CRect& rect, const CPoint& source, uint8_t alphaByte, bool blend);
    std::vector<uint8_t> denseScratch;
    void prepareStroke();
    void prepareFill();
    void finishPath(int32_t style);
    void applyClip();

    std::unique_ptr<Agg2D> agg;
};

}  // namespace Vinta
