#include "dsp/generators/CSineOSC.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace DSP::Generators {

namespace {
double clampUnit(double v) { return std::clamp(v, -1.0, 1.0); }
}  // namespace

void CSineOSC::setFrequency(double hertz) {
    frequency = std::min(hertz, sampleRate / 2.0 - 10.0);
    update();
}

void CSineOSC::update() {
    const float w = static_cast<float>(2.0 * std::numbers::pi * frequency / sampleRate);
    cosF = std::cos(w);
    sinF = std::sin(w);
    cosD = cosF;
    sinD = sinF;
}

inline float CSineOSC::step() {
    float x = xF, y = yF;
    if (pending) {
        x = static_cast<float>(pendingX);
        y = static_cast<float>(pendingY);
        pending = false;
    }
    yF = cosF * y + x * sinF;
    xF = x * cosF - y * sinF;
    return xF;
}

float CSineOSC::nextFloat() { return step(); }

void CSineOSC::fill(float* out, int count) {
    if (count <= 0) return;
    out[0] = step();  // takes a pending phase
    // The phasor in locals: `out` may alias the members as far as the compiler knows.
    const float c = cosF, s = sinF;
    float x = xF, y = yF;
    for (int i = 1; i < count; ++i) {
        const float nextY = c * y + x * s;
        x = x * c - y * s;
        y = nextY;
        out[i] = x;
    }
    xF = x;
    yF = y;
}

double CSineOSC::nextDouble() {
    const double y = cosD * yD + xD * sinD;
    const double x = xD * cosD - yD * sinD;
    yD = y;
    xD = static_cast<float>(x);
    return xD;
}

void CSineOSC::reset() {
    xF = 0;
    yF = -1;
    xD = 0;
    yD = -1;
    pendingX = 0;
    pendingY = -1;
    pending = false;
    lastPhase = 0;
}

void CSineOSC::setPhase(double p) {
    phase = p;
    const float d = static_cast<float>(p - lastPhase);
    if (d == 0) {
        pendingY = yF;
        pendingX = xF;
        return;
    }
    const double a = 2.0 * std::numbers::pi * d;
    pendingY = clampUnit(std::sin(std::asin(clampUnit(yF)) + a));
    pendingX = clampUnit(std::sin(std::asin(clampUnit(xF)) + a));
    lastPhase = p;
    pending = true;
}

void CSineOSC::setPhaseDirect(double p) {
    const double a = 2.0 * std::numbers::pi * (p - lastPhase);
    if (a == 0) {
        xF = 0;
        yF = -1;
    } else {
        yF = static_cast<float>(clampUnit(std::sin(a - 1.5707963705062866)));
        xF = static_cast<float>(clampUnit(std::sin(a)));
    }
    lastPhase = 0;
}

}  // namespace DSP::Generators
