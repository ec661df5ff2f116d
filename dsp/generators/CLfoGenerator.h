#pragma once
#include <cmath>
#include <cstdint>

namespace DSP {

// The low-frequency source: one value per tick from -1 to 1, in one of eight waveforms, free in
// Hertz or tied to a tempo. The waveform is a function pointer, so tick never branches on it.
class CLfoGenerator {
public:
    enum Shape : int {
        kSine = 0,
        kTriangle = 1,
        kSaw = 2,
        kSineOctave = 3,
        kHalfDampedSine = 4,
        kRandomSteps = 5,
        kRandomRamps = 6,
        kSquare = 7,
    };

    CLfoGenerator();

    void setShape(int code);
    void setSampleRate(double rate);
    void setRate(double hertz);
    void setSyncIndex(int index);
    void setTempo(double bpm);
    void setShift(double cycles);
    void restart();
    void restartIfSynced();
    double tick() { return tickFunction(*this); }
    // sum plus the next `count` ticks, added one by one in order; the waveform is chosen once.
    double accumulate(double sum, int count);
    // The next `count` ticks.
    void fill(double* __restrict out, int count);
    // Calls onTick(value) with each of the next `count` ticks in order. The waveform is chosen once
    // and its step inlined into the loop, so that the caller's own per-sample work can overlap it.
    template <typename Step>
    void forEachTick(int count, Step&& onTick);

    // Frequency of a note value (index 1..24: straight, triplet, dotted) at a tempo.
    static double tempoToHertz(int index, double bpm);

    double getFrequency() const { return frequency; }
    double getSampleRate() const { return sampleRate; }
    int getShape() const { return shape; }
    int getSyncIndex() const { return syncIndex; }
    double getTempo() const { return tempo; }

private:
    using TickFunction = double (*)(CLfoGenerator&);
    struct Phasor {
        double x = 0, y = -1, lastShift = 0, px = 0, py = -1;
    };

    static double tickSine(CLfoGenerator& g);
    static double tickTriangle(CLfoGenerator& g);
    static double tickSaw(CLfoGenerator& g);
    static double tickSineOctave(CLfoGenerator& g);
    static double tickHalfDampedSine(CLfoGenerator& g);
    static double tickRandomSteps(CLfoGenerator& g);
    static double tickRandomRamps(CLfoGenerator& g);
    static double tickSquare(CLfoGenerator& g);
    static double tickSilent(CLfoGenerator& g);
    template <TickFunction Tick, typename Step>
    void forEachWith(int count, Step& onTick);

    void updateStep();
    void updateReset();
    void updateShift();
    void shiftPhasor(Phasor& p, double target);
    double randomValue();
    static void turn(Phasor& p, double c, double s);

    double sampleRate = 44100;
    double frequency = 10;
    int syncIndex = 0;
    double tempo = 120;
    double shift = 0;
    bool pending = false;
    int shape = -1;
    TickFunction tickFunction;
    double (*tempoToHertzFunction)(int, double) = &CLfoGenerator::tempoToHertz;
    uint32_t seed = 0xcac6701fu;
    uint32_t multiplier = 778599259u;

    // Steps from the frequency.
    double c1 = 1, s1 = 0, c2 = 1, s2 = 0, step = 0;
    float squareStep = 0;
    // Wave state; only the members of the present shape are in use.
    Phasor first, second;
    double value = 0, direction = 1, position = 0, pendingValue = 0, pendingDirection = 1;
    double phase = 0, lastShift = 0, pendingPhase = 0;
    double held = 0, delta = 0;
    float squarePhase = 0;
};

// The waveform steps, here so that forEachTick can inline them into its callers' loops.
inline void CLfoGenerator::turn(Phasor& p, double c, double s) {
    const double y = c * p.y + p.x * s;
    const double x = p.x * c - p.y * s;
    p.x = x;
    p.y = y;
}

inline double CLfoGenerator::tickSine(CLfoGenerator& g) {
    if (g.pending) {
        g.first.x = g.first.px;
        g.first.y = g.first.py;
        g.pending = false;
    }
    turn(g.first, g.c1, g.s1);
    return g.first.x;
}

inline double CLfoGenerator::tickTriangle(CLfoGenerator& g) {
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

inline double CLfoGenerator::tickSaw(CLfoGenerator& g) {
    double p = g.pending ? g.pendingPhase : g.phase;
    g.pending = false;
    p += g.step;
    if (p > 1.0) p -= std::floor(p);
    g.phase = p;
    return 1.0 - 2.0 * p;
}

inline double CLfoGenerator::tickSineOctave(CLfoGenerator& g) {
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

inline double CLfoGenerator::tickHalfDampedSine(CLfoGenerator& g) {
    if (g.pending) {
        g.first.x = g.first.px;
        g.first.y = g.first.py;
        g.pending = false;
    }
    turn(g.first, g.c1, g.s1);
    const double x = g.first.x;
    return x >= 0 ? x : -x * 0.5;
}

inline double CLfoGenerator::randomValue() {
    const uint32_t r = seed >> 16;
    seed = seed * multiplier + 1u;
    return (static_cast<double>(r % 32000u) - 16000.0) / 16000.0;
}

inline double CLfoGenerator::tickRandomSteps(CLfoGenerator& g) {
    g.phase += g.step;
    if (g.phase >= 1.0) {
        g.phase -= std::floor(g.phase);
        g.held = g.randomValue();
    }
    return g.held;
}

inline double CLfoGenerator::tickRandomRamps(CLfoGenerator& g) {
    g.phase += g.step;
    if (g.phase >= 1.0) {
        g.phase -= std::floor(g.phase);
        const double next = g.randomValue();
        g.delta = next - g.held;
        g.held = next;
    }
    return g.held - g.delta * (1.0 - g.phase);
}

inline double CLfoGenerator::tickSquare(CLfoGenerator& g) {
    g.squarePhase += g.squareStep;
    if (g.squarePhase >= 1.0f) g.squarePhase -= std::floor(g.squarePhase);
    return g.squarePhase < 0.5f ? 1.0 : -1.0;
}

inline double CLfoGenerator::tickSilent(CLfoGenerator&) { return 0.0; }

template <CLfoGenerator::TickFunction Tick, typename Step>
inline void CLfoGenerator::forEachWith(int count, Step& onTick) {
    for (int i = 0; i < count; ++i) onTick(Tick(*this));
}

template <typename Step>
inline void CLfoGenerator::forEachTick(int count, Step&& onTick) {
    const TickFunction f = tickFunction;
    if (f == &tickSine) return forEachWith<&tickSine>(count, onTick);
    if (f == &tickTriangle) return forEachWith<&tickTriangle>(count, onTick);
    if (f == &tickSaw) return forEachWith<&tickSaw>(count, onTick);
    if (f == &tickSineOctave) return forEachWith<&tickSineOctave>(count, onTick);
    if (f == &tickHalfDampedSine) return forEachWith<&tickHalfDampedSine>(count, onTick);
    if (f == &tickRandomSteps) return forEachWith<&tickRandomSteps>(count, onTick);
    if (f == &tickRandomRamps) return forEachWith<&tickRandomRamps>(count, onTick);
    if (f == &tickSquare) return forEachWith<&tickSquare>(count, onTick);
    for (int i = 0; i < count; ++i) onTick(f(*this));
}

}  // namespace DSP
