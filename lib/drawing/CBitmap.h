#pragma once
// A bitmap: premultiplied RGBA pixels in memory (four bytes each, red green blue alpha, rows top
// down), loaded from PNG or drawn into through its own software context. A bitmap that failed to
// load is empty: width and height 0, and drawing it does nothing.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "lib/drawing/CDrawContext_AGG.h"
#include "lib/drawing/IOSBitmap.h"
#include "lib/drawing/PNGStreams.h"

namespace Vinta {

class CBitmap : public CBaseObject {
public:
    CBitmap();
    // `isFilePath` true reads a PNG file, false the file of that name in the main resource archive.
    CBitmap(const char* name, bool isFilePath);
    // Transparent pixels of that size.
    CBitmap(double width, double height);
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    // Or-ed into the flags of the GPU image when it is first made.
    virtual void setImageFlags(int32_t flags) { imageFlags = flags; }
    // The bitmap from `offset` on, into `rect` of the context; blended.
    virtual void draw(CDrawContext* context, const CRect& rect, const CPoint& offset = CPoint());
    virtual void drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset = CPoint());
    // `alpha` 0..255 scales the bitmap's own alpha.
    virtual void drawAlpha(CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alphaByte);
    // Pixels copied as they are, alpha included (software contexts); blended elsewhere.
    virtual void drawNoAlpha(CDrawContext* context, const CRect& rect, const CPoint& offset = CPoint());
    virtual void drawAlphaBlendInto(CDrawContext* context, const CRect& rect, const CPoint& offset, uint8_t alphaByte);
    // Takes the size and pixels of `other`; false (and empty) when `other` is null or empty.
    virtual bool copyFrom(const CBitmap* other);
    virtual void bitmapReserved() {}
    virtual bool loadFromFile(const char* path);
    // All pixels transparent; the size stays.
    virtual void clear();
    // Any PNG libpng reads, expanded to 8-bit RGBA and premultiplied. False, and empty, on bad data.
    virtual bool decodePNG(IVintaPNGStream& png);
    virtual bool loadFromMemory(const uint8_t* data, size_t size);
    virtual bool loadFromResource(const char* name);
    virtual bool loadFromStream(IVintaPNGStream& stream) { return decodePNG(stream); }

    // New transparent pixels; 0 in either direction, or more than 2^24 pixels, empties the bitmap.
    void setSize(double width, double height);
    // Pixels per editor unit: a double-resolution image is 2, so that its width and height, and
    // the rectangles and offsets it is drawn with, stay in units. Loading or resizing resets it to 1.
    void setDensity(double pixelsPerUnit);
    double getDensity() const { return density; }
    double getWidth() const { return width; }
    double getHeight() const { return height; }
    bool isValid() const { return valid; }
    int32_t getImageFlags() const { return imageFlags; }

    // The software context drawing into this bitmap. Asking for it marks the pixels as changed.
    CDrawContext* getDrawContext();
    // Pixels changed since the GPU copy was made; the GL context clears it after an upload.
    bool getNeedsUpload() const { return needsUpload; }
    void setNeedsUpload(bool value) { needsUpload = value; }

    const uint8_t* getPixels() const { return rowStart; }
    uint8_t* getPixels() { return rowStart; }
    uint32_t getPixelWidth() const { return pixelWidth; }
    uint32_t getPixelHeight() const { return pixelHeight; }
    int32_t getStride() const { return stride; }
    // Straight (not premultiplied) colour of one pixel; transparent outside.
    CColor getPixel(uint32_t x, uint32_t y) const;

    // PNG of the pixels, straight alpha; empty for an empty bitmap.
    std::vector<uint8_t> encodePNG() const;
    bool savePNG(const char* path) const;

protected:
    ~CBitmap() override;

private:
    void empty();
    void bindPixels();

    CDrawContext_AGG context;
    bool needsUpload = false;
    bool valid = false;
    double width = 0.0;
    double height = 0.0;
    double density = 1.0;
    std::unique_ptr<IOSBitmap> platformBitmap;
    uint8_t* pixels = nullptr;
    uint8_t* rowStart = nullptr;
    uint32_t pixelWidth = 0;
    uint32_t pixelHeight = 0;
    int32_t stride = 0;
    int32_t imageFlags = 0;
};

}  // namespace Vinta
