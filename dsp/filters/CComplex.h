#pragma once
#include <cmath>

namespace DSP {

// Minimal complex number for the s-plane and z-plane work of the filter design; written out by
// components so that the arithmetic stays explicit and free of library special cases.
struct CComplex {
    double re = 0.0;
    double im = 0.0;

    constexpr CComplex() = default;
    constexpr explicit CComplex(double real) : re(real) {}
    constexpr CComplex(double real, double imaginary) : re(real), im(imaginary) {}

    double abs() const { return std::hypot(re, im); }
    constexpr CComplex conj() const { return {re, -im}; }
    bool isInfinite() const { return std::isinf(re) || std::isinf(im); }
    CComplex exp() const {
        const double magnitude = std::exp(re);
        return {magnitude * std::cos(im), magnitude * std::sin(im)};
    }
};

constexpr CComplex operator+(CComplex a, CComplex b) { return {a.re + b.re, a.im + b.im}; }
constexpr CComplex operator-(CComplex a, CComplex b) { return {a.re - b.re, a.im - b.im}; }
constexpr CComplex operator*(CComplex a, CComplex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
constexpr CComplex operator/(CComplex a, CComplex b) {
    const double d = b.re * b.re + b.im * b.im;
    return {(a.re * b.re + a.im * b.im) / d, (a.im * b.re - a.re * b.im) / d};
}

}  // namespace DSP
