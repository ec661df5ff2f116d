#pragma once
// The abstract set of 2D operations every view draws through. Two back ends: CDrawContext_GL on
// nanovg (on screen) and CDrawContext_AGG on AGG (bitmaps, software windows). Coordinates are
// local to the view being drawn; `offset` (moved by containers) is added before anything reaches
// the back end.
#include <cstdint>
#include <map>

#include "lib/views/CBaseObject.h"
#include "lib/views/VintaTypes.h"

namespace Vinta {

class CFrame;
class CBitmap;
class CFontDesc;

// `style` argument of the shape operations.
enum CDrawStyle : int32_t {
    kDrawStroked = 0,
    kDrawFilled = 1,
    kDrawFilledAndStroked = 2,  // 3 means the same
};

// `lineStyle`: 1 (default) and 0 are solid.
enum CLineStyle : int32_t {
    kLineSolid = 1,
    kLineDashed = 2,
    kLineDotted = 3,
};

// `drawMode`: 3 (default) anti-aliases; 0 draws hard edges; 4 is a back-end mode flag kept with
// the back end's state.
enum CDrawMode : int32_t {
    kCopyMode = 0,
    kAntiAliasMode = 3,
    kBackendMode = 4,
};

// Text alignment of drawString and its relatives.
enum CTextAlign : int32_t {
    kAlignLeft = 0,
    kAlignCenter = 1,
    kAlignRight = 2,
};

// A gradient used in place of the fill colour, in context coordinates (offset applied).
struct CPaint {
    enum Kind : int32_t { kNone = 0, kLinear, kBox, kRadial };
    Kind kind = kNone;
    CPoint from, to;        // linear: start and end
    CRect box;              // box: the rectangle
    double radius = 0.0;    // box: corner radius; radial: inner radius
    double feather = 0.0;   // box: feather; radial: outer radius
    CColor inner, outer;    // colours at from/inside and to/outside
};

// One entry of the vertical gradient cache: the rectangle it was made for and its 1-pixel-wide
// rendering, which the cache owns.
struct CGradientRecord {
    CRect rect;
    CBitmap* bitmap = nullptr;
};

class CDrawContext : public CBaseObject {
public:
    // Contexts may live on the stack (a bitmap embeds one), hence public.
    ~CDrawContext() override;

    CDrawContext(const CDrawContext&) = delete;
    CDrawContext& operator=(const CDrawContext&) = delete;

    // --- handles and alpha
    virtual void* getSystemContext() const { return systemContext; }
    virtual void setSystemContext(void* handle) { systemContext = handle; }
    virtual CFrame* getFrame() const { return frame; }
    virtual void* getNativeContext() const { return nativeContext; }
    virtual void setGlobalAlpha(float value) = 0;
    virtual void setGlobalAlphaByte(uint8_t value) { setGlobalAlpha(static_cast<float>(value) / 255.0f); }
    virtual float getGlobalAlpha() const { return alpha; }
    virtual uint8_t getGlobalAlphaByte() const;

    // --- lines and shapes (style: CDrawStyle; anything outside 0..3 draws nothing)
    virtual void drawLine(double x1, double y1, double x2, double y2) = 0;
    virtual void moveTo(const CPoint& point) { penPosition = point; }
    virtual void lineTo(const CPoint& point);
    virtual void drawPolyline(const CPoint* points, int32_t count) = 0;
    virtual void drawPolygon(const CPoint* points, int32_t count, int32_t style, bool close) = 0;
    virtual void drawRect(const CRect& rect, int32_t style) = 0;
    virtual void drawRoundRectCorners(const CRect& rect, double topLeft, double topRight, double bottomRight,
                                      double bottomLeft, int32_t style) = 0;
    virtual void drawRoundRect(const CRect& rect, double radius, int32_t style) {
        drawRoundRectCorners(rect, radius, radius, radius, radius, style);
    }
    virtual void drawArc(const CRect& rect, double startDegrees, double sweepDegrees, int32_t style) = 0;
    virtual void drawEllipse(const CRect& rect, int32_t style) = 0;
    virtual void drawPoint(const CPoint& point, const CColor& colour) = 0;
    virtual void drawPixel(int32_t x, int32_t y, const CColor& colour) { drawPoint(CPoint(x, y), colour); }
    // The colour at a point (straight, not premultiplied); transparent where the back end cannot read.
    virtual CColor getPoint(const CPoint& point) const = 0;
    // type 0 stack blur, 1 recursive blur, anything else nothing.
    virtual void blurRect(const CRect& rect, double radiusX, double radiusY, int32_t type) = 0;
    // Points from 0 to 1 stretched over `rect`.
    virtual void drawNormalizedPolygon(const CPoint* points, int32_t count, bool close, const CRect& rect,
                                       int32_t style, bool drawClosingLine);

    // --- pen and modes
    virtual void setLineStyle(int32_t style) { lineStyle = style; }
    virtual int32_t getLineStyle() const { return lineStyle; }
    virtual void setLineWidth(float width) { lineWidth = width; }
    virtual float getLineWidth() const { return lineWidth; }
    virtual void clear() { clearWithColor(kBlackCColor); }
    virtual void clearWithColor(const CColor& colour) = 0;
    virtual void setDrawMode(int32_t mode) { drawMode = mode; }
    virtual int32_t getDrawMode() const { return drawMode; }

    // --- clip (stored with the offset applied)
    virtual void setClipRect(const CRect& rect) = 0;
    // Stores the current clip in `saved` and sets `rect`.
    virtual void swapClipRect(CRect& saved, const CRect& rect);
    // In local coordinates.
    virtual void getClipRect(CRect& out) const;
    // `rect` bounded by the clip and shrunk by `inset`.
    virtual void getClippedRect(CRect& out, const CRect& rect, double inset) const;
    virtual void resetClipRect() = 0;

    // --- colours
    virtual void setFillColor(const CColor& colour) { fillColor = colour; usePaint = false; }
    virtual void copyFillColor(CColor& out) const { out = fillColor; }
    virtual void setFrameColor(const CColor& colour) { frameColor = colour; }
    virtual void copyFrameColor(CColor& out) const { out = frameColor; }
    virtual void setFontColor(const CColor& colour) { fontColor = colour; }
    virtual void copyFontColor(CColor& out) const { out = fontColor; }

    // --- text (null font: kSystemFont; size 0: the font's own size)
    virtual void setFont(CFontDesc* font, double size, int32_t style) = 0;
    virtual CFontDesc* getFont() const { return font; }
    virtual double getFontSize() const { return fontSizeCurrent; }
    virtual int32_t getFontHeight() const;
    virtual double getStringWidth(const char* text) = 0;
    // Returns the width drawn; 0 for a null text.
    virtual double drawString(const char* text, const CRect& rect, int32_t mode, int32_t align) = 0;
    // `angle` in radians around the anchor chosen by `align`.
    virtual void drawStringAtPoint(const char* text, const CRect& rect, double angle, int32_t align) = 0;
    virtual void drawStringMultiline(const char* text, const CRect& rect, int32_t mode, int32_t align);
    virtual void setFontBlur(float blur) { fontBlur = blur; }

    // --- gradients
    // A three-colour vertical gradient, rendered once per key and then drawn stretched.
    virtual void fillVerticalGradient(const CRect& rect, const CColor& top, const CColor& middle,
                                      const CColor& bottom, uint64_t key);
    virtual void setLinearGradient(const CRect& rect, const CColor& from, const CColor& to);
    virtual void getLinearGradient(CPaint& out, const CRect& rect, const CColor& from, const CColor& to) const;
    virtual void setBoxGradient(const CRect& rect, double radius, double feather, const CColor& inner,
                                const CColor& outer);
    // The bitmap from `offset` on, within `rect`, at alpha 0..255 (an image pattern on nanovg).
    virtual void drawBitmapPattern(const CRect& rect, CBitmap* bitmap, const CPoint& offset, uint8_t alphaByte) = 0;
    virtual void setRadialGradient(const CPoint& center, double radius, const CColor& inner, const CColor& outer);
    virtual int32_t setStateFlag(int32_t value) { int32_t old = stateFlag; stateFlag = value; return old; }
    virtual int32_t getStateFlag() const { return stateFlag; }

    // --- bitmaps: CBitmap::draw and its relatives end here. The part of `bitmap` from `source`
    // on is copied into `rect`; `blend` false copies the pixels as they are.
    virtual void drawBitmap(CBitmap& bitmap, const CRect& rect, const CPoint& source, uint8_t alphaByte,
                            bool blend) = 0;
    // The whole bitmap scaled into `rect` (used by the gradient cache).
    virtual void drawBitmapStretched(CBitmap& bitmap, const CRect& rect) = 0;

    // --- origin, moved by containers while they draw
    void setOffset(const CPoint& value) { offset = value; }
    const CPoint& getOffset() const { return offset; }
    int32_t getWidth() const { return contextWidth; }
    int32_t getHeight() const { return contextHeight; }
    const CPaint* getPaint() const { return usePaint ? &paint : nullptr; }

protected:
    explicit CDrawContext(CFrame* owner);

    // Sets the gradient paint used by the following fills.
    virtual void setPaint(const CPaint& value) { paint = value; usePaint = true; }
    // The clip after a reset: the frame's size, else the context's size, else 1000 x 1000.
    CRect defaultClip() const;
    static bool validStyle(int32_t style) { return style >= 0 && style <= 3; }
    static CRect normalized(const CRect& rect);

    CPoint offset;
    void* nativeContext = nullptr;
    void* systemContext = nullptr;
    CFrame* frame = nullptr;
    std::map<uint64_t, CGradientRecord> gradientCache;
    float alpha = 1.0f;
    float lineWidth = 1.0f;
    int32_t contextWidth = 0;
    int32_t contextHeight = 0;
    CFontDesc* font = nullptr;
    CColor fontColor = kWhiteCColor;
    CPoint penPosition;
    CColor frameColor = kWhiteCColor;
    CColor fillColor = kBlackCColor;
    int32_t lineStyle = kLineSolid;
    int32_t drawMode = kAntiAliasMode;
    CRect clipRect;  // offset applied
    bool usePaint = false;
    CPaint paint;
    double fontSizeCurrent = 12.0;
    float fontBlur = 0.0f;
    int32_t stateFlag = 0;
};

}  // namespace Vinta
