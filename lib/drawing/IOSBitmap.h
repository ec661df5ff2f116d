#pragma once
// The platform's pixel store behind a CBitmap: a top-down buffer of 32-bit pixels, four bytes each
// in the order red, green, blue, alpha, premultiplied.
#include <cstdint>
#include <vector>

namespace Vinta {

class IOSBitmap {
public:
    virtual ~IOSBitmap() = default;
    virtual uint8_t* getPixels() = 0;
    virtual void setSize(uint32_t width, uint32_t height) = 0;
    virtual void getSize(uint32_t& width, uint32_t& height) const = 0;
    // Bytes from one row to the next; negative for bottom-up stores.
    virtual int32_t getStride() const = 0;
};

// The store used on Linux for bitmaps and the software window path: plain memory, rows top down.
class CMemoryBitmap final : public IOSBitmap {
public:
    uint8_t* getPixels() override { return pixels.empty() ? nullptr : pixels.data(); }
    void setSize(uint32_t w, uint32_t h) override {
        width = w;
        height = h;
        pixels.assign(static_cast<size_t>(w) * h * 4, 0);
    }
    void getSize(uint32_t& w, uint32_t& h) const override {
        w = width;
        h = height;
    }
    int32_t getStride() const override { return static_cast<int32_t>(width * 4); }

private:
    std::vector<uint8_t> pixels;
    uint32_t width = 0;
    uint32_t height = 0;
};

}  // namespace Vinta
