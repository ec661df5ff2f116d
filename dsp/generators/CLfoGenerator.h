#pragma once
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
    void fill(double* out, int count);

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
    template <TickFunction Tick>
    static double accumulateWith(CLfoGenerator& g, double sum, int count);
    template <TickFunction Tick>
    static void fillWith(CLfoGenerator& g, double* __restrict out, int count);

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

}  // namespace DSP
