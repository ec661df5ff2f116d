#pragma once

namespace DSP {

// Stereo single section from the audio cookbook: the resonance peaks and the measure band-pass.
// Types: 0 low-pass, 1 high-pass, 2 band-pass (constant skirt), 3 band-pass (constant peak),
// 4 notch, 5 all-pass, 6 peak, 7 low shelf, 8 high shelf.
class CPeakBiquad {
public:
    CPeakBiquad() = default;

    // bandwidthMode: q is a bandwidth in octaves instead of a Q.
    void set(int type, float frequency, float q, float gainDb, bool bandwidthMode);
    // Redesigns from the fields, after sampleRate, q or gainDb were written directly. The design
    // runs only when a field differs from the last design's; the same fields give the same result.
    void update();
    // Clamped to 1 .. sampleRate / 2.
    void setFrequency(float hertz);
    // The same clamp and store, without the redesign: for callers that change q or gainDb as well
    // and then call update once.
    void storeFrequency(float hertz);
    // Ignored unless above 0.
    void setSampleRate(int hertz);
    void reset();
    void process(const float* const in[2], float* const out[2], unsigned count);
    void tick(float& left, float& right);

    double b0 = 0, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    double x1L = 0, x2L = 0, y1L = 0, y2L = 0;
    double x1R = 0, x2R = 0, y1R = 0, y2R = 0;
    double sampleRate = 44100;
    int type = 0;
    float frequency = 0, q = 0, gainDb = 0;
    unsigned char bandwidthMode = 0;

private:
    struct Design {
        double sampleRate;
        int type;
        float frequency, q, gainDb;
        unsigned char bandwidthMode;
    };
    bool designed = false;
    Design last{};
};

}  // namespace DSP
