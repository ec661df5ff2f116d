#pragma once
// The on-screen back end: the context's operations on nanovg's OpenGL 3 renderer. Every nanovg call
// needs the window's GL context current on the calling thread; the platform layer sees to that.
#include <map>
#include <mutex>
#include <tuple>
#include <vector>

#include <nanovg.h>

#include "lib/drawing/CDrawContext.h"

namespace Vinta {

class CDrawContext_GL : public CDrawContext {
public:
    // nanovg on the current GL 3.3 core context: anti-aliased shapes, stencil strokes, and in
    // `debug` mode a GL error check after each stage. Null when the GL context cannot take it.
    static NVGcontext* createNanoVG(bool debug);
    static void deleteNanoVG(NVGcontext* nvg);

    // `nvg` stays the caller's. The size is that of the platform window.
    CDrawContext_GL(CFrame* owner, NVGcontext* nvg, int32_t windowWidth, int32_t windowHeight);
    // Deletes every image this context made.
    ~CDrawContext_GL() override;

    // One paint: nanovg's frame at the window's size, then the context's font, alpha and clip again,
    // since nanovg starts each frame from its default state.
    void beginFrame(int32_t windowWidth, int32_t windowHeight, float pixelRatio);
    void endFrame();
    NVGcontext* getNanoVG() const { return nvg; }
    // Bitmaps made into GPU images so far; one per bitmap and size.
    size_t getImageCount() const;
    // The tallest image the GL driver takes; a taller bitmap goes up in bands of this many rows.
    int32_t getLargestImage() const { return largestImage; }
    void setLargestImage(int32_t rows) { largestImage = rows; }

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
    CColor getPoint(const CPoint&) const override { return CColor{0, 0, 0, 0}; }
    void blurRect(const CRect&, double, double, int32_t) override {}
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
    NVGcontext* checked() const;
    // One GPU image per band of rows of a bitmap.
    struct Band {
        int image;
        uint32_t firstRow, rows;
    };
    const std::vector<Band>* bandsOf(CBitmap& bitmap);
    void finishPath(int32_t style);
    void fillBitmap(CBitmap& bitmap, const CRect& area, double patternX, double patternY, double patternW,
                    double patternH, float patternAlpha);
    bool selectFont();

    NVGcontext* nvg = nullptr;
    using ImageKey = std::tuple<const CBitmap*, uint32_t, uint32_t>;
    std::map<ImageKey, std::vector<Band>> imageCache;
    int32_t largestImage = 4096;
    mutable std::mutex imageLock;
    int fontId = -1;
};

}  // namespace Vinta
