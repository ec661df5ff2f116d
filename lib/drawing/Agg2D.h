#pragma once
// A thin 2D painter on AGG: one premultiplied RGBA buffer, a path, solid or gradient fills,
// strokes, image blits and FreeType text. Debian's AGG comes without the Agg2D class; this is
// the small part of it the software context needs.
#include <cstdint>
#include <vector>

#include <agg_basics.h>
#include <agg_path_storage.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_u.h>
#include <agg_trans_affine.h>

namespace Vinta {

class Agg2D {
public:
    using PixFmt = agg::pixfmt_rgba32_pre;
    using RendererBase = agg::renderer_base<PixFmt>;
    using Color = agg::rgba8;

    enum class Gradient { None, Linear, Radial, Box };
    enum DrawPath { StrokeOnly = 0, FillOnly = 1, FillAndStroke = 2 };

    // A face from memory, at a pixel size where the face's ascent minus descent spans `pixelHeight`.
    struct Font {
        const uint8_t* data = nullptr;
        uint32_t size = 0;
        double pixelHeight = 0.0;
    };

    Agg2D();

    // Pixels stay owned by the caller; stride in bytes, negative for bottom-up buffers.
    void attach(uint8_t* pixels, unsigned width, unsigned height, int stride);
    bool attached() const { return buffer.buf() != nullptr && buffer.width() > 0 && buffer.height() > 0; }
    unsigned width() const { return buffer.width(); }
    unsigned height() const { return buffer.height(); }
    const agg::rendering_buffer& renderingBuffer() const { return buffer; }

    // Pixel-edge rectangle [x1, x2) x [y1, y2); bounded by the buffer.
    void clipBox(double x1, double y1, double x2, double y2);
    void clearAll(Color straight);
    void clearRect(int x1, int y1, int x2, int y2, Color straight);

    // Colours are straight (not premultiplied); the global alpha scales every draw.
    void fillColor(Color straight) { fill = straight; fillGradient = Gradient::None; }
    void lineColor(Color straight) { line = straight; }
    void lineWidth(double width) { strokeWidth = width; }
    void dashes(double on, double off) { dashOn = on; dashOff = off; }
    void antiAlias(bool on);
    void globalAlpha(double value) { alpha = value < 0.0 ? 0.0 : (value > 1.0 ? 1.0 : value); }
    double globalAlpha() const { return alpha; }

    void linearGradient(double x1, double y1, double x2, double y2, Color from, Color to);
    void radialGradient(double cx, double cy, double innerRadius, double outerRadius, Color inner, Color outer);
    // nanovg's box gradient: a rounded rectangle feathered across `feather`.
    void boxGradient(double x, double y, double w, double h, double radius, double feather, Color inner, Color outer);

    // Path building, in pixel coordinates.
    void resetPath() { path.remove_all(); }
    void moveTo(double x, double y) { path.move_to(x, y); }
    void lineTo(double x, double y) { path.line_to(x, y); }
    void closePolygon() { path.close_polygon(); }
    void addEllipse(double cx, double cy, double rx, double ry);
    void addRoundedRect(double x1, double y1, double x2, double y2, double tl, double tr, double br, double bl);
    // Angles in radians, clockwise on screen from start by sweep.
    void addArc(double cx, double cy, double rx, double ry, double start, double sweep, bool pie);
    void drawPath(DrawPath mode);

    // One pixel blended in.
    void blendPixel(int x, int y, Color straight);
    Color pixel(int x, int y) const;  // premultiplied, as stored

    // Copies the source's [sx, sy, sx+w, sy+h) to (dx, dy). Blended with `cover` (0..255, times
    // the global alpha) or copied as is when `blend` is false.
    void blendImage(const agg::rendering_buffer& source, int sx, int sy, int w, int h, int dx, int dy,
                    unsigned cover, bool blend);
    // The whole source scaled into the destination rectangle, bilinear.
    void transformImage(const agg::rendering_buffer& source, double x1, double y1, double x2, double y2);

    // Text: the pen's x advances by the string's width; y is the baseline. 0 without a font.
    double textWidth(const Font& font, const char* text);
    double drawText(const Font& font, const char* text, double x, double y, const agg::trans_affine& transform);
    // Ascent and descent in pixels (descent negative).
    void fontMetrics(const Font& font, double& ascent, double& descent);

    // 0 stack blur, 1 recursive blur; on the pixel rectangle, bounded by the buffer.
    void blur(int x1, int y1, int x2, int y2, double radiusX, double radiusY, int type);

private:
    Color applyAlpha(Color straight) const;
    template <class VertexSource> void render(VertexSource& source, bool useFill);
    template <class GradientFunction>
    void renderGradient(GradientFunction& function, double d1, double d2);

    agg::rendering_buffer buffer;
    PixFmt pixfmt;
    RendererBase renderer;
    agg::rasterizer_scanline_aa<> rasterizer;
    agg::scanline_u8 scanline;
    agg::path_storage path;

    Color fill{0, 0, 0, 255};
    Color line{255, 255, 255, 255};
    double strokeWidth = 1.0;
    double dashOn = 0.0;
    double dashOff = 0.0;
    double alpha = 1.0;

    Gradient fillGradient = Gradient::None;
    agg::trans_affine gradientTransform;  // pixel space to gradient space
    double gradientD1 = 0.0;
    double gradientD2 = 100.0;
    Color gradientFrom, gradientTo;
    double boxHalfWidth = 0.0, boxHalfHeight = 0.0, boxRadius = 0.0, boxFeather = 1.0;
};

}  // namespace Vinta
