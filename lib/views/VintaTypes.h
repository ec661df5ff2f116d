#pragma once
// Geometry and colour shared by the whole toolkit. Coordinates are editor units in doubles.
#include <algorithm>
#include <cstdint>

namespace Vinta {

struct CPoint {
    double x = 0.0;
    double y = 0.0;

    constexpr CPoint() = default;
    constexpr CPoint(double px, double py) : x(px), y(py) {}

    constexpr CPoint& offset(double dx, double dy) { x += dx; y += dy; return *this; }
    constexpr CPoint operator+(const CPoint& o) const { return {x + o.x, y + o.y}; }
    constexpr CPoint operator-(const CPoint& o) const { return {x - o.x, y - o.y}; }
    constexpr bool operator==(const CPoint& o) const = default;
};

struct CRect {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;

    constexpr CRect() = default;
    constexpr CRect(double l, double t, double r, double b) : left(l), top(t), right(r), bottom(b) {}
    constexpr CRect(const CPoint& origin, double width, double height)
        : left(origin.x), top(origin.y), right(origin.x + width), bottom(origin.y + height) {}

    constexpr double getWidth() const { return right - left; }
    constexpr double getHeight() const { return bottom - top; }
    constexpr CPoint getTopLeft() const { return {left, top}; }
    constexpr CPoint getCenter() const { return {(left + right) * 0.5, (top + bottom) * 0.5}; }
    constexpr bool isEmpty() const { return right <= left || bottom <= top; }

    constexpr CRect& offset(double dx, double dy) {
        left += dx; right += dx; top += dy; bottom += dy;
        return *this;
    }
    constexpr CRect& moveTo(double x, double y) { return offset(x - left, y - top); }
    constexpr CRect& setWidth(double w) { right = left + w; return *this; }
    constexpr CRect& setHeight(double h) { bottom = top + h; return *this; }
    constexpr CRect& inset(double dx, double dy) {
        left += dx; right -= dx; top += dy; bottom -= dy;
        return *this;
    }

    // Half-open: the right and bottom edges are outside.
    constexpr bool pointInside(const CPoint& p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr bool rectInside(const CRect& r) const {
        return r.left >= left && r.right <= right && r.top >= top && r.bottom <= bottom;
    }
    constexpr bool rectOverlap(const CRect& r) const {
        return r.right > left && r.left < right && r.bottom > top && r.top < bottom;
    }
    // Leaves an empty rectangle (width or height 0) when the two do not meet.
    constexpr CRect& bound(const CRect& r) {
        left = std::max(left, r.left);
        top = std::max(top, r.top);
        right = std::max(left, std::min(right, r.right));
        bottom = std::max(top, std::min(bottom, r.bottom));
        return *this;
    }
    constexpr CRect& unite(const CRect& r) {
        left = std::min(left, r.left);
        top = std::min(top, r.top);
        right = std::max(right, r.right);
        bottom = std::max(bottom, r.bottom);
        return *this;
    }
    constexpr bool operator==(const CRect& o) const = default;
};

struct CColor {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    uint8_t alpha = 255;

    constexpr bool operator==(const CColor& o) const = default;
};

inline constexpr CColor kTransparentCColor{255, 255, 255, 0};
inline constexpr CColor kBlackCColor{0, 0, 0, 255};
inline constexpr CColor kWhiteCColor{255, 255, 255, 255};
inline constexpr CColor kGreyCColor{127, 127, 127, 255};
inline constexpr CColor kRedCColor{255, 0, 0, 255};
inline constexpr CColor kGreenCColor{0, 255, 0, 255};
inline constexpr CColor kBlueCColor{0, 0, 255, 255};
inline constexpr CColor kYellowCColor{255, 255, 0, 255};
inline constexpr CColor kMagentaCColor{255, 0, 255, 255};
inline constexpr CColor kCyanCColor{0, 255, 255, 255};

} // namespace Vinta
