#pragma once
// Placeholder: passes the signal on until the filter design lands.
namespace DSP {
class CPeakBiquad {
public:
    void set(int t, float f, float qValue, float gain, bool bandwidth) {
        type = t; frequency = f; q = qValue; gainDb = gain; bandwidthMode = bandwidth;
    }
    void update() {}
    void setFrequency(float hertz) { frequency = hertz; }
    void reset() {}
    void process(const float* const in[2], float* const out[2], unsigned count) {
        for (int c = 0; c < 2; ++c)
            if (in[c] != out[c])
                for (unsigned i = 0; i < count; ++i) out[c][i] = in[c][i];
    }
    void tick(float&, float&) {}
    double sampleRate = 44100;
    int type = 0;
    float frequency = 0, q = 0, gainDb = 0;
    unsigned char bandwidthMode = 0;
};
}  // namespace DSP
