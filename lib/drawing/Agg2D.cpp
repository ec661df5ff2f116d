#include "lib/drawing/Agg2D.h"

// GCC 12 sees a use after free in AGG's span allocator once it is inlined here; the allocator
// reallocates before it writes, so the report is false.
#pragma GCC diagnostic ignored "-Wuse-after-free"

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>

#include <agg_arc.h>
#include <agg_blur.h>
#include <agg_conv_curve.h>
#include <agg_conv_dash.h>
#include <agg_conv_stroke.h>
#include <agg_conv_transform.h>
#include <agg_ellipse.h>
#include <agg_gamma_functions.h>
#include <agg_gradient_lut.h>
#include <agg_image_accessors.h>
#include <agg_renderer_scanline.h>
#include <agg_rounded_rect.h>
#include <agg_span_allocator.h>
#include <agg_span_converter.h>
#include <agg_span_gradient.h>
#include <agg_span_image_filter_rgba.h>
#include <agg_span_interpolator_linear.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace Vinta {

namespace {

Agg2D::Color premultiplied(Agg2D::Color c) {
    c.premultiply();
    return c;
}

// nanovg's box gradient: signed distance to a rounded rectangle centred on the origin, shifted so
// that the feather band maps onto [0, feather]. Coordinates and result in gradient subpixels.
struct BoxGradientFunction {
    double halfWidth, halfHeight, radius, feather;
    int calculate(int x, int y, int) const {
        const double scale = agg::gradient_subpixel_scale;
        const double px = std::fabs(x / scale), py = std::fabs(y / scale);
        const double ex = halfWidth - radius, ey = halfHeight - radius;
        const double dx = px - ex, dy = py - ey;
        const double outside = std::hypot(std::max(dx, 0.0), std::max(dy, 0.0));
        const double distance = std::min(std::max(dx, dy), 0.0) + outside - radius;
        return agg::iround((distance + feather * 0.5) * scale);
    }
};

// FreeType faces made from font files in memory, one per file, shared by every context.
class FaceCache {
public:
    static FaceCache& instance() {
        static FaceCache cache;
        return cache;
    }
    std::mutex lock;

    FT_Face face(const uint8_t* data, uint32_t size) {
        if (library == nullptr || data == nullptr || size == 0)
            return nullptr;
        auto found = faces.find(data);
        if (found != faces.end())
            return found->second;
        FT_Face made = nullptr;
        if (FT_New_Memory_Face(library, data, static_cast<FT_Long>(size), 0, &made) != 0)
            made = nullptr;
        faces[data] = made;  // a broken face is remembered as null and not retried
        return made;
    }

private:
    FaceCache() {
        if (FT_Init_FreeType(&library) != 0)
            library = nullptr;
    }
    ~FaceCache() {
        for (auto& entry : faces)
            if (entry.second != nullptr)
                FT_Done_Face(entry.second);
        if (library != nullptr)
            FT_Done_FreeType(library);
    }
    FT_Library library = nullptr;
    std::map<const uint8_t*, FT_Face> faces;
};

// Scale from font units to pixels, as nanovg's font stash chooses it: ascent minus descent spans
// the pixel height, the height kept to a tenth of a pixel.
double unitScale(FT_Face face, double pixelHeight) {
    const double tenths = static_cast<int16_t>(pixelHeight * 10.0) / 10.0;
    const double span = static_cast<double>(face->ascender - face->descender);
    return span > 0.0 ? tenths / span : 0.0;
}

// Glyph advances snapped to whole pixels the way the font stash does, so both back ends agree on
// string widths.
int snappedAdvance(FT_Face face, FT_UInt glyph, double scale) {
    if (FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) != 0)
        return 0;
    const double tenths = static_cast<int16_t>(scale * face->glyph->advance.x * 10.0);
    return static_cast<int>(tenths / 10.0 + 0.5);
}

int snappedKerning(FT_Face face, FT_UInt previous, FT_UInt glyph, double scale) {
    if (previous == 0 || !FT_HAS_KERNING(face))
        return 0;
    FT_Vector kern{};
    if (FT_Get_Kerning(face, previous, glyph, FT_KERNING_UNSCALED, &kern) != 0)
        return 0;
    return static_cast<int>(kern.x * scale + 0.5);
}

// Next code point of UTF-8 text; malformed bytes come back as themselves.
uint32_t nextCodePoint(const char*& text) {
    const auto* p = reinterpret_cast<const unsigned char*>(text);
    uint32_t c = *p++;
    int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
    if (extra > 0)
        c &= 0x3Fu >> extra;
    for (; extra > 0 && (*p & 0xC0) == 0x80; --extra)
        c = (c << 6) | (*p++ & 0x3F);
    text = reinterpret_cast<const char*>(p);
    return c;
}

// FreeType outline to an AGG path, flipped to y-down and scaled to pixels at (x, y).
struct OutlineSink {
    agg::path_storage* path;
    double scale, x, y;
    double px(const FT_Vector* v) const { return x + v->x * scale; }
    double py(const FT_Vector* v) const { return y - v->y * scale; }
};

int outlineMove(const FT_Vector* to, void* user) {
    auto* s = static_cast<OutlineSink*>(user);
    s->path->close_polygon();
    s->path->move_to(s->px(to), s->py(to));
    return 0;
}
int outlineLine(const FT_Vector* to, void* user) {
    auto* s = static_cast<OutlineSink*>(user);
    s->path->line_to(s->px(to), s->py(to));
    return 0;
}
int outlineConic(const FT_Vector* control, const FT_Vector* to, void* user) {
    auto* s = static_cast<OutlineSink*>(user);
    s->path->curve3(s->px(control), s->py(control), s->px(to), s->py(to));
    return 0;
}
int outlineCubic(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user) {
    auto* s = static_cast<OutlineSink*>(user);
    s->path->curve4(s->px(c1), s->py(c1), s->px(c2), s->py(c2), s->px(to), s->py(to));
    return 0;
}

}  // namespace

Agg2D::Agg2D() : pixfmt(buffer), renderer(pixfmt) {}

void Agg2D::attach(uint8_t* pixels, unsigned width, unsigned height, int stride) {
    buffer.attach(pixels, width, height, stride);
    pixfmt.attach(buffer);
    renderer.attach(pixfmt);
    clipBox(0, 0, width, height);
}

void Agg2D::clipBox(double x1, double y1, double x2, double y2) {
    const int left = static_cast<int>(std::floor(x1)), top = static_cast<int>(std::floor(y1));
    const int right = static_cast<int>(std::ceil(x2)) - 1, bottom = static_cast<int>(std::ceil(y2)) - 1;
    if (!renderer.clip_box(left, top, right, bottom)) {
        // Nothing visible: a box no pixel lies in.
        renderer.clip_box(0, 0, 0, 0);
        renderer.reset_clipping(false);
    }
    rasterizer.clip_box(std::max(0, left), std::max(0, top), right + 1.0, bottom + 1.0);
}

void Agg2D::clearAll(Color straight) {
    if (attached())
        renderer.clear(premultiplied(straight));
}

void Agg2D::clearRect(int x1, int y1, int x2, int y2, Color straight) {
    if (attached() && x2 > x1 && y2 > y1)
        renderer.copy_bar(x1, y1, x2 - 1, y2 - 1, premultiplied(straight));
}

void Agg2D::antiAlias(bool on) {
    if (on)
        rasterizer.gamma(agg::gamma_none());
    else
        rasterizer.gamma(agg::gamma_threshold(0.5));
}

Agg2D::Color Agg2D::applyAlpha(Color straight) const {
    straight.a = static_cast<agg::int8u>(std::lround(straight.a * alpha));
    return straight;
}

void Agg2D::linearGradient(double x1, double y1, double x2, double y2, Color from, Color to) {
    const double length = std::max(std::hypot(x2 - x1, y2 - y1), 1e-6);
    gradientTransform = agg::trans_affine_rotation(std::atan2(y2 - y1, x2 - x1)) * agg::trans_affine_translation(x1, y1);
    gradientTransform.invert();
    gradientD1 = 0.0;
    gradientD2 = length;
    gradientFrom = from;
    gradientTo = to;
    fillGradient = Gradient::Linear;
}

void Agg2D::radialGradient(double cx, double cy, double innerRadius, double outerRadius, Color inner, Color outer) {
    gradientTransform = agg::trans_affine_translation(-cx, -cy);
    gradientD1 = innerRadius;
    gradientD2 = std::max(outerRadius, innerRadius + 1e-6);
    gradientFrom = inner;
    gradientTo = outer;
    fillGradient = Gradient::Radial;
}

void Agg2D::boxGradient(double x, double y, double w, double h, double radius, double feather, Color inner,
                        Color outer) {
    gradientTransform = agg::trans_affine_translation(-(x + w * 0.5), -(y + h * 0.5));
    boxHalfWidth = w * 0.5;
    boxHalfHeight = h * 0.5;
    boxRadius = radius;
    boxFeather = std::max(feather, 1.0);
    gradientD1 = 0.0;
    gradientD2 = boxFeather;
    gradientFrom = inner;
    gradientTo = outer;
    fillGradient = Gradient::Box;
}

void Agg2D::addEllipse(double cx, double cy, double rx, double ry) {
    agg::ellipse shape(cx, cy, rx, ry);
    path.concat_path(shape);
}

void Agg2D::addRoundedRect(double x1, double y1, double x2, double y2, double tl, double tr, double br, double bl) {
    agg::rounded_rect shape(x1, y1, x2, y2, 0.0);
    shape.radius(tl, tl, tr, tr, br, br, bl, bl);
    shape.normalize_radius();
    path.concat_path(shape);
}

void Agg2D::addArc(double cx, double cy, double rx, double ry, double start, double sweep, bool pie) {
    agg::arc shape(cx, cy, rx, ry, start, start + sweep, sweep >= 0.0);
    if (pie) {
        path.move_to(cx, cy);
        path.join_path(shape);
        path.close_polygon();
    } else {
        path.concat_path(shape);
    }
}

template <class GradientFunction>
void Agg2D::renderGradient(GradientFunction& function, double d1, double d2) {
    using Interpolator = agg::span_interpolator_linear<>;
    using Lut = agg::gradient_lut<agg::color_interpolator<Color>, 256>;
    Lut lut;
    lut.remove_all();
    lut.add_color(0.0, premultiplied(applyAlpha(gradientFrom)));
    lut.add_color(1.0, premultiplied(applyAlpha(gradientTo)));
    lut.build_lut();
    Interpolator interpolator(gradientTransform);
    agg::span_gradient<Color, Interpolator, GradientFunction, Lut> span(interpolator, function, lut, d1, d2);
    agg::span_allocator<Color> allocator;
    agg::render_scanlines_aa(rasterizer, scanline, renderer, allocator, span);
}

template <class VertexSource>
void Agg2D::render(VertexSource& source, bool useFill) {
    rasterizer.reset();
    rasterizer.add_path(source);
    if (useFill && fillGradient == Gradient::Linear) {
        agg::gradient_x function;
        renderGradient(function, gradientD1, gradientD2);
    } else if (useFill && fillGradient == Gradient::Radial) {
        agg::gradient_circle function;
        renderGradient(function, gradientD1, gradientD2);
    } else if (useFill && fillGradient == Gradient::Box) {
        BoxGradientFunction function{boxHalfWidth, boxHalfHeight, boxRadius, boxFeather};
        renderGradient(function, gradientD1, gradientD2);
    } else {
        agg::render_scanlines_aa_solid(rasterizer, scanline, renderer, premultiplied(applyAlpha(useFill ? fill : line)));
    }
}

void Agg2D::drawPath(DrawPath mode) {
    if (!attached())
        return;
    agg::conv_curve<agg::path_storage> curves(path);
    if (mode != StrokeOnly) {
        rasterizer.filling_rule(agg::fill_non_zero);
        render(curves, true);
    }
    if (mode == FillOnly || strokeWidth <= 0.0)
        return;
    if (dashOn > 0.0 && dashOff > 0.0) {
        agg::conv_dash<agg::conv_curve<agg::path_storage>> dashed(curves);
        dashed.add_dash(dashOn, dashOff);
        agg::conv_stroke<decltype(dashed)> stroke(dashed);
        stroke.width(strokeWidth);
        render(stroke, false);
    } else {
        agg::conv_stroke<agg::conv_curve<agg::path_storage>> stroke(curves);
        stroke.width(strokeWidth);
        render(stroke, false);
    }
}

void Agg2D::blendPixel(int x, int y, Color straight) {
    if (attached())
        renderer.blend_pixel(x, y, premultiplied(applyAlpha(straight)), agg::cover_full);
}

Agg2D::Color Agg2D::pixel(int x, int y) const {
    if (!attached() || x < 0 || y < 0 || x >= static_cast<int>(width()) || y >= static_cast<int>(height()))
        return Color(0, 0, 0, 0);
    return pixfmt.pixel(x, y);
}

void Agg2D::blendImage(const agg::rendering_buffer& source, int sx, int sy, int w, int h, int dx, int dy,
                       unsigned cover, bool blend) {
    if (!attached() || source.buf() == nullptr || w <= 0 || h <= 0)
        return;
    agg::rect_i area(sx, sy, sx + w - 1, sy + h - 1);
    if (!blend) {
        renderer.copy_from(source, &area, dx - sx, dy - sy);
        return;
    }
    PixFmt sourceFormat(const_cast<agg::rendering_buffer&>(source));
    const auto scaled = static_cast<agg::cover_type>(std::lround(std::min(cover, 255u) * alpha));
    renderer.blend_from(sourceFormat, &area, dx - sx, dy - sy, scaled);
}

void Agg2D::transformImage(const agg::rendering_buffer& source, double x1, double y1, double x2, double y2) {
    if (!attached() || source.buf() == nullptr || x2 <= x1 || y2 <= y1)
        return;
    PixFmt sourceFormat(const_cast<agg::rendering_buffer&>(source));
    agg::trans_affine transform = agg::trans_affine_scaling((x2 - x1) / source.width(), (y2 - y1) / source.height()) *
                                  agg::trans_affine_translation(x1, y1);
    transform.invert();
    using Interpolator = agg::span_interpolator_linear<>;
    using Accessor = agg::image_accessor_clone<PixFmt>;
    Interpolator interpolator(transform);
    Accessor accessor(sourceFormat);
    agg::span_image_filter_rgba_bilinear<Accessor, Interpolator> span(accessor, interpolator);
    agg::span_allocator<Color> allocator;
    agg::path_storage box;
    box.move_to(x1, y1);
    box.line_to(x2, y1);
    box.line_to(x2, y2);
    box.line_to(x1, y2);
    box.close_polygon();
    rasterizer.reset();
    rasterizer.add_path(box);
    if (alpha >= 1.0) {
        agg::render_scanlines_aa(rasterizer, scanline, renderer, allocator, span);
    } else {
        // Global alpha through a converter that scales each span.
        struct Fade {
            double a;
            void prepare() {}
            void generate(Color* span, int, int, unsigned len) const {
                for (; len > 0; --len, ++span) {
                    span->r = static_cast<agg::int8u>(span->r * a);
                    span->g = static_cast<agg::int8u>(span->g * a);
                    span->b = static_cast<agg::int8u>(span->b * a);
                    span->a = static_cast<agg::int8u>(span->a * a);
                }
            }
        } fade{alpha};
        agg::span_converter<decltype(span), Fade> faded(span, fade);
        agg::render_scanlines_aa(rasterizer, scanline, renderer, allocator, faded);
    }
}

double Agg2D::textWidth(const Font& font, const char* text) {
    FaceCache& cache = FaceCache::instance();
    std::lock_guard<std::mutex> guard(cache.lock);
    FT_Face face = cache.face(font.data, font.size);
    if (face == nullptr || text == nullptr)
        return 0.0;
    const double scale = unitScale(face, font.pixelHeight);
    int width = 0;
    FT_UInt previous = 0;
    while (*text != 0) {
        const FT_UInt glyph = FT_Get_Char_Index(face, nextCodePoint(text));
        width += snappedKerning(face, previous, glyph, scale) + snappedAdvance(face, glyph, scale);
        previous = glyph;
    }
    return width;
}

double Agg2D::drawText(const Font& font, const char* text, double x, double y, const agg::trans_affine& transform) {
    FaceCache& cache = FaceCache::instance();
    std::lock_guard<std::mutex> guard(cache.lock);
    FT_Face face = cache.face(font.data, font.size);
    if (face == nullptr || text == nullptr || !attached())
        return 0.0;
    const double scale = unitScale(face, font.pixelHeight);
    FT_Outline_Funcs funcs{outlineMove, outlineLine, outlineConic, outlineCubic, 0, 0};
    agg::path_storage glyphs;
    double pen = x;
    FT_UInt previous = 0;
    while (*text != 0) {
        const FT_UInt glyph = FT_Get_Char_Index(face, nextCodePoint(text));
        pen += snappedKerning(face, previous, glyph, scale);
        const int advance = snappedAdvance(face, glyph, scale);  // loads the glyph
        if (face->glyph->format == FT_GLYPH_FORMAT_OUTLINE) {
            OutlineSink sink{&glyphs, scale, pen, y};
            FT_Outline_Decompose(&face->glyph->outline, &funcs, &sink);
            glyphs.close_polygon();
        }
        pen += advance;
        previous = glyph;
    }
    agg::conv_curve<agg::path_storage> curves(glyphs);
    agg::trans_affine placement = transform;
    agg::conv_transform<decltype(curves)> placed(curves, placement);
    rasterizer.filling_rule(agg::fill_non_zero);
    const Gradient saved = fillGradient;
    fillGradient = Gradient::None;
    render(placed, true);
    fillGradient = saved;
    return pen - x;
}

void Agg2D::fontMetrics(const Font& font, double& ascent, double& descent) {
    FaceCache& cache = FaceCache::instance();
    std::lock_guard<std::mutex> guard(cache.lock);
    FT_Face face = cache.face(font.data, font.size);
    ascent = descent = 0.0;
    if (face == nullptr)
        return;
    const double scale = unitScale(face, font.pixelHeight);
    ascent = face->ascender * scale;
    descent = face->descender * scale;
}

void Agg2D::blur(int x1, int y1, int x2, int y2, double radiusX, double radiusY, int type) {
    x1 = std::max(x1, 0);
    y1 = std::max(y1, 0);
    x2 = std::min(x2, static_cast<int>(width()));
    y2 = std::min(y2, static_cast<int>(height()));
    if (!attached() || x2 <= x1 || y2 <= y1 || (type != 0 && type != 1))
        return;
    agg::rendering_buffer part(buffer.row_ptr(y1) + x1 * 4, x2 - x1, y2 - y1, buffer.stride());
    PixFmt partFormat(part);
    if (type == 0) {
        agg::stack_blur_rgba32(partFormat, agg::uround(std::max(radiusX, 0.0)), agg::uround(std::max(radiusY, 0.0)));
    } else {
        agg::recursive_blur<Color, agg::recursive_blur_calc_rgba<>> blurrer;
        blurrer.blur_x(partFormat, std::max(radiusX, 0.0));
        blurrer.blur_y(partFormat, std::max(radiusY, 0.0));
    }
}

}  // namespace Vinta
