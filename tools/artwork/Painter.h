#pragma once
// Drawing in panel units on a bitmap drawn at any whole scale: every coordinate, radius, width and
// font size is multiplied by the scale before it reaches the software context, so one drawing
// function makes both the 100 % and the double-resolution image.
#include <string>
#include <vector>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CFontDesc.h"

namespace Artwork {

using Vinta::CColor;
using Vinta::CPoint;
using Vinta::CRect;

struct Font {
    Vinta::CFontDesc* face;
    double size;
    bool bold;
};

class Painter {
public:
    Painter(Vinta::CBitmap& target, double scale);

    double scale() const { return s; }
    // Moves the origin, in panel units: a filmstrip draws each frame at its own offset.
    void setOrigin(double x, double y);

    void fillRect(const CRect& r, const CColor& colour);
    void fillRoundRect(const CRect& r, double radius, const CColor& colour);
    void fillRoundRectGradient(const CRect& r, double radius, const CColor& top, const CColor& bottom);
    void strokeRoundRect(const CRect& r, double radius, const CColor& colour, double width);
    void fillCircle(const CPoint& centre, double radius, const CColor& colour);
    // Lit from above: `inner` at the upper part of the disc, `outer` at its rim.
    void fillCircleRadial(const CPoint& centre, double radius, const CPoint& light, const CColor& inner,
                          const CColor& outer);
    void fillCircleGradient(const CPoint& centre, double radius, const CColor& top, const CColor& bottom);
    void strokeCircle(const CPoint& centre, double radius, const CColor& colour, double width);
    // Clockwise from `startDegrees` (0 points right, 90 down).
    void arc(const CPoint& centre, double radius, double startDegrees, double sweepDegrees, const CColor& colour,
             double width);
    void line(const CPoint& from, const CPoint& to, const CColor& colour, double width);
    void polyline(const std::vector<CPoint>& points, const CColor& colour, double width);
    void fillPolygon(const CPoint* points, int count, const CColor& colour);
    void text(const std::string& value, const CRect& box, const Font& font, const CColor& colour,
              int32_t align = Vinta::kAlignCenter);
    double textWidth(const std::string& value, const Font& font);
    // A soft shadow of a rounded rectangle: drawn dark, then blurred inside `area`.
    void shadow(const CRect& shape, double radius, const CRect& area, const CColor& colour, double blur);

private:
    CRect scaled(const CRect& r) const { return CRect(r.left * s, r.top * s, r.right * s, r.bottom * s); }
    CPoint scaled(const CPoint& p) const { return CPoint(p.x * s, p.y * s); }

    Vinta::CDrawContext& context;
    double s;
};

// A point on a circle, angle clockwise from the right.
CPoint polar(const CPoint& centre, double radius, double degrees);
CColor withAlpha(CColor colour, uint8_t alpha);
CColor mix(const CColor& a, const CColor& b, double t);

}  // namespace Artwork
