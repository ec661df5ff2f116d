#include "lib/drawing/CBitmap.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>

namespace Vinta {

namespace {

// libpng reports errors by jumping back out of its calls; nothing with a destructor may live
// between the jump and its target, so the work below uses plain data only.
void readFromStream(png_structp png, png_bytep data, png_size_t length) {
    auto* stream = static_cast<IVintaPNGStream*>(png_get_io_ptr(png));
    if (stream->read(data, length) != length)
        png_error(png, "truncated");
}

void silentWarning(png_structp, png_const_charp) {}
void failDecode(png_structp png, png_const_charp) { png_longjmp(png, 1); }

uint8_t premultiply(uint8_t colour, uint8_t alpha) {
    return static_cast<uint8_t>((colour * alpha + 127) / 255);
}

uint8_t unpremultiply(uint8_t colour, uint8_t alpha) {
    return alpha == 0 ? 0 : static_cast<uint8_t>(std::min(255, (colour * 255 + alpha / 2) / alpha));
}

struct PNGHeader {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
};

// Reads the header of the stream; the caller then sizes the pixels and calls readRows.
bool readHeader(png_structp png, png_infop info, PNGHeader& header) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_read_info(png, info);
    header.width = png_get_image_width(png, info);
    header.height = png_get_image_height(png, info);
    const int colourType = png_get_color_type(png, info);
    const int depth = png_get_bit_depth(png, info);
    if (colourType == PNG_COLOR_TYPE_PALETTE)
        png_set_palette_to_rgb(png);
    if (colourType == PNG_COLOR_TYPE_GRAY && depth < 8)
        png_set_expand_gray_1_2_4_to_8(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS))
        png_set_tRNS_to_alpha(png);
    if (depth == 16)
        png_set_strip_16(png);
    if (colourType == PNG_COLOR_TYPE_GRAY || colourType == PNG_COLOR_TYPE_GRAY_ALPHA)
        png_set_gray_to_rgb(png);
    png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    return true;
}

bool readRows(png_structp png, png_infop info, uint8_t* pixels, png_uint_32 height, int32_t stride) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < height; ++y)
            png_read_row(png, pixels + static_cast<ptrdiff_t>(y) * stride, nullptr);
    png_read_end(png, nullptr);
    return true;
}

void appendToVector(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}
void noFlush(png_structp) {}

bool writeRows(png_structp png, png_infop info, png_bytep* rows, png_uint_32 width, png_uint_32 height) {
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    return true;
}

// Limits of a bitmap: long filmstrips pass, headers that ask for gigabytes do not.
constexpr png_uint_32 kMaxSide = 65536;
constexpr uint64_t kMaxPixels = uint64_t(1) << 24;

bool acceptableSize(uint64_t width, uint64_t height) {
    return width > 0 && height > 0 && width <= kMaxSide && height <= kMaxSide && width * height <= kMaxPixels;
}

}  // namespace

CBitmap::CBitmap() = default;

CBitmap::CBitmap(const char* name, bool isFilePath) {
    if (isFilePath)
        loadFromFile(name);
    else
        loadFromResource(name);
}

CBitmap::CBitmap(double w, double h) { setSize(w, h); }

CBitmap::~CBitmap() = default;

void CBitmap::empty() {
    platformBitmap.reset();
    pixels = rowStart = nullptr;
    pixelWidth = pixelHeight = 0;
    stride = 0;
    width = height = 0.0;
    density = 1.0;
    valid = false;
    bindPixels();
}

void CBitmap::bindPixels() {
    context.attach(rowStart, pixelWidth, pixelHeight, stride);
    needsUpload = true;
}

void CBitmap::setSize(double w, double h) {
    const auto pw = static_cast<uint32_t>(std::max(0.0, std::round(w)));
    const auto ph = static_cast<uint32_t>(std::max(0.0, std::round(h)));
    if (!acceptableSize(pw, ph)) {
        empty();
        return;
    }
    if (!platformBitmap)
        platformBitmap = std::make_unique<CMemoryBitmap>();
    platformBitmap->setSize(pw, ph);
    pixels = platformBitmap->getPixels();
    stride = platformBitmap->getStride();
    rowStart = stride < 0 ? pixels + static_cast<ptrdiff_t>(ph - 1) * -stride : pixels;
    pixelWidth = pw;
    pixelHeight = ph;
    width = pw;
    height = ph;
    density = 1.0;
    valid = true;
    bindPixels();
}

void CBitmap::setDensity(double pixelsPerUnit) {
    if (!(pixelsPerUnit > 0.0) || !std::isfinite(pixelsPerUnit)) return;
    density = pixelsPerUnit;
    width = pixelWidth / density;
    height = pixelHeight / density;
}

void CBitmap::clear() {
    for (uint32_t y = 0; y < pixelHeight; ++y)
        std::memset(rowStart + static_cast<ptrdiff_t>(y) * stride, 0, pixelWidth * 4u);
    needsUpload = true;
}

bool CBitmap::decodePNG(IVintaPNGStream& stream) {
    empty();
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, failDecode, silentWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    png_set_read_fn(png, &stream, readFromStream);
    PNGHeader header;
    bool ok = readHeader(png, info, header) && acceptableSize(header.width, header.height);
    if (ok) {
        setSize(header.width, header.height);
        ok = valid && readRows(png, info, rowStart, header.height, stride);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    if (!ok) {
        empty();
        return false;
    }
    for (uint32_t y = 0; y < pixelHeight; ++y) {
        uint8_t* p = rowStart + static_cast<ptrdiff_t>(y) * stride;
        for (uint32_t x = 0; x < pixelWidth; ++x, p += 4) {
            const uint8_t a = p[3];
            p[0] = premultiply(p[0], a);
            p[1] = premultiply(p[1], a);
            p[2] = premultiply(p[2], a);
        }
    }
    bindPixels();
    return true;
}

bool CBitmap::loadFromMemory(const uint8_t* data, size_t size) {
    PNGMemoryStream stream(data, size);
    return decodePNG(stream);
}

bool CBitmap::loadFromFile(const char* path) {
    PNGFileStream stream(path);
    if (!stream.opened()) {
        empty();
        return false;
    }
    return decodePNG(stream);
}

bool CBitmap::loadFromResource(const char* name) {
    PNGNewResourceStream stream(name);
    if (!stream.found()) {
        empty();
        return false;
    }
    return decodePNG(stream);
}

bool CBitmap::copyFrom(const CBitmap* other) {
    if (other == nullptr || !other->valid) {
        empty();
        return false;
    }
    setSize(other->pixelWidth, other->pixelHeight);
    for (uint32_t y = 0; y < pixelHeight; ++y)
        std::memcpy(rowStart + static_cast<ptrdiff_t>(y) * stride,
                    other->rowStart + static_cast<ptrdiff_t>(y) * other->stride, pixelWidth * 4u);
    needsUpload = true;
    return true;
}

void CBitmap::draw(CDrawContext* target, const CRect& rect, const CPoint& offset) {
    if (target != nullptr)
        target->drawBitmap(*this, rect, offset, 255, true);
}

void CBitmap::drawTransparent(CDrawContext* target, const CRect& rect, const CPoint& offset) {
    draw(target, rect, offset);
}

void CBitmap::drawAlpha(CDrawContext* target, const CRect& rect, const CPoint& offset, uint8_t alphaByte) {
    if (target != nullptr)
        target->drawBitmap(*this, rect, offset, alphaByte, true);
}

void CBitmap::drawNoAlpha(CDrawContext* target, const CRect& rect, const CPoint& offset) {
    if (target != nullptr)
        target->drawBitmap(*this, rect, offset, 255, false);
}

void CBitmap::drawAlphaBlendInto(CDrawContext* target, const CRect& rect, const CPoint& offset, uint8_t alphaByte) {
    drawAlpha(target, rect, offset, alphaByte);
}

CDrawContext* CBitmap::getDrawContext() {
    needsUpload = true;
    return &context;
}

CColor CBitmap::getPixel(uint32_t x, uint32_t y) const {
    if (x >= pixelWidth || y >= pixelHeight)
        return CColor{0, 0, 0, 0};
    const uint8_t* p = rowStart + static_cast<ptrdiff_t>(y) * stride + x * 4u;
    return CColor{unpremultiply(p[0], p[3]), unpremultiply(p[1], p[3]), unpremultiply(p[2], p[3]), p[3]};
}

std::vector<uint8_t> CBitmap::encodePNG() const {
    std::vector<uint8_t> out;
    if (!valid)
        return out;
    std::vector<uint8_t> straight(static_cast<size_t>(pixelWidth) * pixelHeight * 4);
    std::vector<png_bytep> rows(pixelHeight);
    for (uint32_t y = 0; y < pixelHeight; ++y) {
        rows[y] = straight.data() + static_cast<size_t>(y) * pixelWidth * 4;
        for (uint32_t x = 0; x < pixelWidth; ++x) {
            const CColor c = getPixel(x, y);
            std::memcpy(rows[y] + x * 4u, &c, 4);
        }
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, failDecode, silentWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool ok = info != nullptr;
    if (ok) {
        png_set_write_fn(png, &out, appendToVector, noFlush);
        ok = writeRows(png, info, rows.data(), pixelWidth, pixelHeight);
    }
    png_destroy_write_struct(&png, info != nullptr ? &info : nullptr);
    if (!ok)
        out.clear();
    return out;
}

bool CBitmap::savePNG(const char* path) const {
    const std::vector<uint8_t> bytes = encodePNG();
    FILE* file = path != nullptr && !bytes.empty() ? std::fopen(path, "wb") : nullptr;
    if (file == nullptr)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

}  // namespace Vinta
