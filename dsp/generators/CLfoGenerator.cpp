#include "dsp/generators/CLfoGenerator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace DSP {

namespace {
double clampUnit(double v) { return std::clamp(v, -1.0, 1.0); }
}  // namespace

CLfoGenerator::CLfoGenerator() : tickFunction(&CLfoGenerator::tickSilent) {}

void CLfoGenerator::setShape(int code) {
    if (code == shape) return;
    shape = code;
    static const TickFunction functions[8] = {&tickSine,           &tickTriangle,    &tickSaw,
                                              &tickSineOctave,     &tickHalfDampedSine,
                                              &tickRandomSteps,    &tickRandomRamps, &tickSquare};
    tickFunction = code >= 0 && code <= 7 ? functions[code] : &tickSilent;
    updateStep();
    updateReset();
    updateShift();
}

void CLfoGenerator::setSampleRate(double rate) {
    if (!(rate > 0)) return;
    sampleRate = rate;
    updateStep();
    updateReset();
    updateShift();
}

void CLfoGenerator::setRate(double hertz) {
    frequency = hertz;
    updateStep();
}

void CLfoGenerator::setSyncIndex(int index) {
    syncIndex = index;
    if (syncIndex != 0) frequency = tempoToHertzFunction(syncIndex, tempo);
    updateStep();
}

void CLfoGenerator::setTempo(double bpm) {
    tempo = bpm;
    if (syncIndex != 0) frequency = tempoToHertzFunction(syncIndex, tempo);
    updateStep();
}

void CLfoGenerator::setShift(double cycles) {
    shift = cycles;
    updateShift();
}

void CLfoGenerator::restart() {
    updateReset();
    updateShift();
}

void CLfoGenerator::restartIfSynced() {
    if (syncIndex != 0) restart();
}

double CLfoGenerator::tempoToHertz(int index, double bpm) {
    const double b = bpm / 60.0;
    static const double divisors[8] = {16, 12, 8, 4, 2, 1, 0.5, 0.25};
    if (index >= 1 && index <= 8) return b / divisors[index - 1];
    if (index >= 9 && index <= 16) return 1.5 * b / divisors[index - 9];
    if (index >= 17 && index <= 24) return (2.0 / 3.0) * b / divisors[index - 17];
    return 1.0;
}

void CLfoGenerator::updateStep() {
    const double w = 2.0 * std::numbers::pi * frequency / sampleRate;
    c1 = std::cos(w);
    s1 = std::sin(w);
    c2 = std::cos(2.0 * w);
    s2 = std::sin(2.0 * w);
    switch (shape) {
        case kTriangle:
        case kRandomSteps:
        case kRandomRamps: step = 4.0 * frequency / sampleRate; break;
        case kSaw: step = frequency / sampleRate; break;
        case kSquare: squareStep = static_cast<float>(frequency / sampleRate); break;
        default: break;
    }
}

void CLfoGenerator::updateReset() {
    first = Phasor{};
    second = Phasor{};
    value = 0;
    direction = 1;
    position = 0;
    phase = 0;
    lastShift = 0;
    squarePhase = 0;
    pending = false;
}

void CLfoGenerator::shiftPhasor(Phasor& p, double target) {
    const double d = target - p.lastShift;
    if (d == 0) {
        p.px = p.x;
        p.py = p.y;
        return;
    }
    // Turning both components through their arcsine is an approximate shift, not an exact rotation.
    const double a = 2.0 * std::numbers::pi * d;
    p.py = clampUnit(std::sin(std::asin(clampUnit(p.y)) + a));
    p.px = clampUnit(std::sin(std::asin(clampUnit(p.x)) + a));
    p.lastShift = target;
    pending = true;
}

void CLfoGenerator::updateShift() {
    switch (shape) {
        case kSine: {
            const bool moved = shift != first.lastShift;
            shiftPhasor(first, shift);
            pending = moved;
            break;
        }
        case kSineOctave:
        case kHalfDampedSine:
            shiftPhasor(first, shift);
            shiftPhasor(second, 2.0 * shift);
            pending = true;
            break;
        case kTriangle:
            if (shift != position) {
                double q = std::max(shift, 0.0);
                while (q > 1.0) q -= 1.0;
                if (q < 0.25) {
                    pendingValue = 4.0 * q;
                    pendingDirection = 1;
                } else if (q < 0.5) {
                    pendingValue = 1.0 - 4.0 * (q - 0.25);
                    pendingDirection = -1;
                } else if (q < 0.75) {
                    pendingValue = -4.0 * (q - 0.5);
                    pendingDirection = -1;
                } else {
                    pendingValue = 4.0 * (q - 0.75) - 1.0;
                    pendingDirection = 1;
                }
                position = q;
                pending = true;
            } else {
                pendingValue = value;
                pendingDirection = direction;
            }
            break;
        case kSaw:
            if (shift != lastShift) {
                double s = shift;
                while (s > 1.0) s -= 1.0;
                lastShift = s;
                pendingPhase = std::clamp(s, 0.0, 1.0);
                pending = true;
            } else {
                pendingPhase = phase;
            }
            break;
        case kSquare: squarePhase = static_cast<float>(shift); break;
        default: break;  // the random shapes have no phase to shift
    }
}

double CLfoGenerator::accumulate(double sum, int count) {
    forEachTick(count, [&sum](double tick) { sum += tick; });
    return sum;
}

void CLfoGenerator::fill(double* __restrict out, int count) {
    forEachTick(count, [&out](double tick) { *out++ = tick; });
}

}  // namespace DSP
