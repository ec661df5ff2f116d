#include "dsp/filters/ButterworthDesign.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "dsp/filters/CAnalogPrototype.h"

namespace DSP {

void CAnalogPrototype::makeButterworth(int filterOrder) {
    order = std::clamp(filterOrder, 1, CFilterDesignSpec::kMaxOrder);
    pairs = order / 2;
    hasRealPole = order % 2;
    // Deliberately one ulp below 1; kept exact so that designed coefficients stay reproducible.
    const double eps = 0.9999999999999998;
    const double radius = std::pow(eps, -1.0 / order);
    const double infinity = std::numeric_limits<double>::infinity();
    for (int k = 0; k < pairs; ++k) {
        const double angle = ((2.0 * k + 1.0) / order) * std::numbers::pi * 0.5;
        poles[k] = CComplex(0.0, radius) * CComplex(0.0, angle).exp();
        zeros[k] = CComplex(infinity, 0.0);
    }
    if (hasRealPole) {
        poles[pairs] = CComplex(-radius);
        zeros[pairs] = CComplex(infinity, 0.0);
    }
}

namespace {

CComplex bilinear(CComplex s, double sampleRate) {
    if (s.isInfinite()) return CComplex(-1.0);
    const CComplex half = s / CComplex(2.0 * sampleRate);
    return (CComplex(1.0) + half) / (CComplex(1.0) - half);
}

// Scales the numerator so the section alone has unity gain at w0 (0 or pi).
void normalise(double w0, double& b0, double& b1, double& b2, double a1, double a2) {
    const double c1 = 2.0 * std::cos(w0);
    const double c2 = 2.0 * std::cos(2.0 * w0);
    const double numerator = ((b0 + b2) * c1 + b1) * b1 + (c2 * b2 + b0) * b0 + b2 * b2;
    const double denominator = (c2 + a2) * a2 + a1 * a1 + 1.0 + (a1 * a2 + a1) * c1;
    const double scale = 1.0 / std::sqrt(numerator / denominator);
    b0 *= scale;
    b1 *= scale;
    b2 *= scale;
}

}  // namespace

void design(CFilterDesignSpec& settings, double* b0, double* b1, double* b2, double* a1, double* a2) {
    const double fs = settings.sampleRate;
    const double f = std::min(settings.frequency, 0.4995 * fs);
    const double warped = 2.0 * fs * std::tan(std::numbers::pi * f / fs);
    const bool highPass = settings.type == CFilterDesignSpec::kHighPass;

    CAnalogPrototype prototype;
    prototype.makeButterworth(settings.order);
    const int n = prototype.order;
    const int sections = n / 2;

    CComplex p[CFilterDesignSpec::kMaxOrder];
    CComplex z[CFilterDesignSpec::kMaxOrder];
    for (int k = 0; k < sections; ++k) {
        p[2 * k] = prototype.poles[k];
        p[2 * k + 1] = prototype.poles[k].conj();
        z[2 * k] = prototype.zeros[k];
        z[2 * k + 1] = prototype.zeros[k].conj();
    }
    if (prototype.hasRealPole) {
        p[n - 1] = prototype.poles[sections];
        z[n - 1] = prototype.zeros[sections];
    }

    const CComplex w(warped);
    for (int i = 0; i < n; ++i) {
        if (highPass) {
            p[i] = w / p[i];
            z[i] = z[i].isInfinite() ? CComplex(0.0) : w / z[i];
        } else {
            p[i] = p[i] * w;
            if (!z[i].isInfinite()) z[i] = z[i] * w;
        }
        p[i] = bilinear(p[i], fs);
        z[i] = bilinear(z[i], fs);
    }

    const double reference = highPass ? std::numbers::pi : 0.0;
    for (int k = 0; k < sections; ++k) {
        b0[k] = 1.0;
        b1[k] = -(z[2 * k] + z[2 * k + 1]).re;
        b2[k] = (z[2 * k] * z[2 * k + 1]).re;
        a1[k] = -(p[2 * k] + p[2 * k + 1]).re;
        a2[k] = (p[2 * k] * p[2 * k + 1]).re;
        normalise(reference, b0[k], b1[k], b2[k], a1[k], a2[k]);
    }
    if (prototype.hasRealPole) {
        b0[sections] = 1.0;
        b1[sections] = -z[n - 1].re;
        b2[sections] = 0.0;
        a1[sections] = -p[n - 1].re;
        a2[sections] = 0.0;
        normalise(reference, b0[sections], b1[sections], b2[sections], a1[sections], a2[sections]);
    }
}

}  // namespace DSP
