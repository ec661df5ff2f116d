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

void CLfoGenerator::turn(Phasor& p, double c, double s) {
    const double y = c * p.y + p.x * s;
    const double x = p.x * c - p.y * s;
    p.x = x;
    p.y = y;
}

double CLfoGenerator::tickSine(CLfoGenerator& g) {
    if (g.pending) {
        g.first.x = g.first.px;
        g.first.y = g.first.py;
        g.pending = false;
    }
    turn(g.first, g.c1, g.s1);
    return g.first.x;
}

double CLfoGenerator::tickTriangle(CLfoGenerator& g) {
    if (g.pending) {
        g.value = g.pendingValue;
        g.direction = g.pendingDirection;
        g.pending = false;
    }
    double v = g.value + g.direction * g.step;
    if (v > 1.0) {
        g.direction = -g.direction;
        v = 1.0 - v + std::floor(v);
    } else if (v < -1.0) {
        g.direction = -g.direction;
        v = -1.0 - v - std::floor(-v);
    }
    g.value = v;
    g.position += g.step * 0.25;
    if (g.position >= 1.0) g.position = 0.0;
    return v;
}

double CLfoGenerator::tickSaw(CLfoGenerator& g) {
    double p = g.pending ? g.pendingPhase : g.phase;
    g.pending = false;
    p += g.step;
    if (p > 1.0) p -= std::floor(p);
    g.phase = p;
    return 1.0 - 2.0 * p;
}

double CLfoGenerator::tickSineOctave(CLfoGenerator& g) {
    if (g.pending) {
        g.first.x = g.first.px;
        g.first.y = g.first.py;
        g.second.x = g.second.px;
        g.second.y = g.second.py;
        g.pending = false;
    }
    turn(g.first, g.c1, g.s1);
    turn(g.second, g.c2, g.s2);
    return (g.first.x + g.second.x) * 0.5;
}

double CLfoGenerator::tickHalfDampedSine(CLfoGenerator& g) {
    if (g.pending) {
        g.first.x = g.first.px;
        g.first.y = g.first.py;
        g.pending = false;
    }
    turn(g.first, g.c1, g.s1);
    const double x = g.first.x;
    return x >= 0 ? x : -x * 0.5;
}

double CLfoGenerator::randomValue() {
    const uint32_t r = seed >> 16;
    seed = seed * multiplier + 1u;
    return (static_cast<double>(r % 32000u) - 16000.0) / 16000.0;
}

double CLfoGenerator::tickRandomSteps(CLfoGenerator& g) {
    g.phase += g.step;
    if (g.phase >= 1.0) {
        g.phase -= std::floor(g.phase);
        g.held = g.randomValue();
    }
    return g.held;
}

double CLfoGenerator::tickRandomRamps(CLfoGenerator& g) {
    g.phase += g.step;
    if (g.phase >= 1.0) {
        g.phase -= std::floor(g.phase);
        const double next = g.randomValue();
        g.delta = next - g.held;
        g.held = next;
    }
    return g.held - g.delta * (1.0 - g.phase);
}

double CLfoGenerator::tickSquare(CLfoGenerator& g) {
    g.squarePhase += g.squareStep;
    if (g.squarePhase >= 1.0f) g.squarePhase -= std::floor(g.squarePhase);
    return g.squarePhase < 0.5f ? 1.0 : -1.0;
}

double CLfoGenerator::tickSilent(CLfoGenerator&) { return 0.0; }

template <CLfoGenerator::TickFunction Tick>
double CLfoGenerator::accumulateWith(CLfoGenerator& g, double sum, int count) {
    for (int i = 0; i < count; ++i) sum += Tick(g);
    return sum;
}

template <CLfoGenerator::TickFunction Tick>
void CLfoGenerator::fillWith(CLfoGenerator& g, double* __restrict out, int count) {
    for (int i = 0; i < count; ++i) out[i] = Tick(g);
}

// The same ticks as tick(), with the waveform's step inlined into the loop.
double CLfoGenerator::accumulate(double sum, int count) {
    const TickFunction f = tickFunction;
    if (f == &tickSine) return accumulateWith<&tickSine>(*this, sum, count);
    if (f == &tickTriangle) return accumulateWith<&tickTriangle>(*this, sum, count);
    if (f == &tickSaw) return accumulateWith<&tickSaw>(*this, sum, count);
    if (f == &tickSineOctave) return accumulateWith<&tickSineOctave>(*this, sum, count);
    if (f == &tickHalfDampedSine) return accumulateWith<&tickHalfDampedSine>(*this, sum, count);
    if (f == &tickRandomSteps) return accumulateWith<&tickRandomSteps>(*this, sum, count);
    if (f == &tickRandomRamps) return accumulateWith<&tickRandomRamps>(*this, sum, count);
    if (f == &tickSquare) return accumulateWith<&tickSquare>(*this, sum, count);
    for (int i = 0; i < count; ++i) sum += f(*this);
    return sum;
}

void CLfoGenerator::fill(double* out, int count) {
    const TickFunction f = tickFunction;
    if (f == &tickSine) return fillWith<&tickSine>(*this, out, count);
    if (f == &tickTriangle) return fillWith<&tickTriangle>(*this, out, count);
    if (f == &tickSaw) return fillWith<&tickSaw>(*this, out, count);
    if (f == &tickSineOctave) return fillWith<&tickSineOctave>(*this, out, count);
    if (f == &tickHalfDampedSine) return fillWith<&tickHalfDampedSine>(*this, out, count);
    if (f == &tickRandomSteps) return fillWith<&tickRandomSteps>(*this, out, count);
    if (f == &tickRandomRamps) return fillWith<&tickRandomRamps>(*this, out, count);
    if (f == &tickSquare) return fillWith<&tickSquare>(*this, out, count);
    for (int i = 0; i < count; ++i) out[i] = f(*this);
}

}  // namespace DSP
