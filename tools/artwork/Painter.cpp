#include "tools/artwork/Painter.h"

#include <cmath>
#include <vector>

namespace Artwork {

using namespace Vinta;

Painter::Painter(CBitmap& target, double scale) : context(*target.getDrawContext()), s(scale) {
    context.setDrawMode(kAntiAliasMode);
}

void Painter::setOrigin(double x, double y) { context.setOffset(CPoint(x * s, y * s)); }

void Painter::fillRect(const CRect& r, const CColor& colour) {
    context.setFillColor(colour);
    context.drawRect(scaled(r), kDrawFilled);
}

void Painter::fillRoundRect(const CRect& r, double radius, const CColor& colour) {
    context.setFillColor(colour);
    context.drawRoundRect(scaled(r), radius * s, kDrawFilled);
}

void Painter::fillRoundRectGradient(const CRect& r, double radius, const CColor& top, const CColor& bottom) {
    context.setLinearGradient(scaled(r), top, bottom);
    context.drawRoundRect(scaled(r), radius * s, kDrawFilled);
    context.setFillColor(bottom);
}

void Painter::strokeRoundRect(const CRect& r, double radius, const CColor& colour, double width) {
    context.setFrameColor(colour);
    context.setLineWidth(static_cast<float>(width * s));
    context.drawRoundRect(scaled(r), radius * s, kDrawStroked);
}

void Painter::fillCircle(const CPoint& c, double radius, const CColor& colour) {
    context.setFillColor(colour);
    context.drawEllipse(scaled(CRect(c.x - radius, c.y - radius, c.x + radius, c.y + radius)), kDrawFilled);
}

void Painter::fillCircleRadial(const CPoint& c, double radius, const CPoint& light, const CColor& inner,
                               const CColor& outer) {
    const CPoint l = scaled(light);
    // The gradient reaches the far rim of the disc from the light point.
    const double reach = (std::hypot(light.x - c.x, light.y - c.y) + radius) * s;
    context.setRadialGradient(l, reach, inner, outer);
    context.drawEllipse(scaled(CRect(c.x - radius, c.y - radius, c.x + radius, c.y + radius)), kDrawFilled);
    context.setFillColor(outer);
}

void Painter::fillCircleGradient(const CPoint& c, double radius, const CColor& top, const CColor& bottom) {
    const CRect r(c.x - radius, c.y - radius, c.x + radius, c.y + radius);
    context.setLinearGradient(scaled(r), top, bottom);
    context.drawEllipse(scaled(r), kDrawFilled);
    context.setFillColor(bottom);
}

void Painter::strokeCircle(const CPoint& c, double radius, const CColor& colour, double width) {
    context.setFrameColor(colour);
    context.setLineWidth(static_cast<float>(width * s));
    context.drawEllipse(scaled(CRect(c.x - radius, c.y - radius, c.x + radius, c.y + radius)), kDrawStroked);
}

void Painter::arc(const CPoint& c, double radius, double startDegrees, double sweepDegrees, const CColor& colour,
                  double width) {
    if (sweepDegrees <= 0.0)
        return;
    // Short sweeps as a polyline: the context's arc treats a sweep near 0 as a whole turn.
    std::vector<CPoint> points;
    const int steps = std::max(2, static_cast<int>(std::ceil(sweepDegrees / 2.0)));
    for (int i = 0; i <= steps; ++i) points.push_back(polar(c, radius, startDegrees + sweepDegrees * i / steps));
    polyline(points, colour, width);
}

void Painter::line(const CPoint& from, const CPoint& to, const CColor& colour, double width) {
    context.setFrameColor(colour);
    context.setLineWidth(static_cast<float>(width * s));
    const CPoint a = scaled(from), b = scaled(to);
    context.drawLine(a.x, a.y, b.x, b.y);
}

void Painter::polyline(const std::vector<CPoint>& points, const CColor& colour, double width) {
    std::vector<CPoint> scaledPoints;
    for (const CPoint& point : points) scaledPoints.push_back(scaled(point));
    context.setFrameColor(colour);
    context.setLineWidth(static_cast<float>(width * s));
    context.drawPolyline(scaledPoints.data(), static_cast<int32_t>(scaledPoints.size()));
}

void Painter::fillPolygon(const CPoint* points, int count, const CColor& colour) {
    std::vector<CPoint> scaledPoints;
    for (int i = 0; i < count; ++i) scaledPoints.push_back(scaled(points[i]));
    context.setFillColor(colour);
    context.drawPolygon(scaledPoints.data(), count, kDrawFilled, true);
}

void Painter::text(const std::string& value, const CRect& box, const Font& font, const CColor& colour, int32_t align) {
    context.setFont(font.face, font.size * s, font.bold ? 1 : 0);
    context.setFontColor(colour);
    context.drawString(value.c_str(), scaled(box), 0, align);
}

double Painter::textWidth(const std::string& value, const Font& font) {
    context.setFont(font.face, font.size * s, font.bold ? 1 : 0);
    return context.getStringWidth(value.c_str()) / s;
}

void Painter::shadow(const CRect& shape, double radius, const CRect& area, const CColor& colour, double blur) {
    fillRoundRect(shape, radius, colour);
    context.blurRect(scaled(area), blur * s, blur * s, 0);
}

CPoint polar(const CPoint& c, double radius, double degrees) {
    const double a = degrees * 3.14159265358979323846 / 180.0;
    return CPoint(c.x + radius * std::cos(a), c.y + radius * std::sin(a));
}

CColor withAlpha(CColor colour, uint8_t alpha) {
    colour.alpha = alpha;
    return colour;
}

CColor mix(const CColor& a, const CColor& b, double t) {
    auto channel = [t](uint8_t x, uint8_t y) { return static_cast<uint8_t>(std::lround(x + (y - x) * t)); };
    return CColor{channel(a.red, b.red), channel(a.green, b.green), channel(a.blue, b.blue), channel(a.alpha, b.alpha)};
}

}  // namespace Artwork
