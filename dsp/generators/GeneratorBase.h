#pragma once

namespace DSP::Generators {

// A periodic source with a phase, a rate and a frequency.
class GeneratorBase {
public:
    virtual ~GeneratorBase() = default;
    virtual void setSampleRate(double rate) {
        sampleRate = rate;
        update();
    }
    virtual double getSampleRate() { return sampleRate; }
    virtual void update() {}
    virtual void setFrequency(double hertz) {
        frequency = hertz;
        update();
    }
    virtual double getFrequency() { return frequency; }
    virtual double nextDouble() = 0;
    virtual float nextFloat() = 0;
    virtual void fill(float* out, int count) {
        for (int i = 0; i < count; ++i) out[i] = nextFloat();
    }
    virtual void fill(double* out, int count) {
        for (int i = 0; i < count; ++i) out[i] = nextDouble();
    }
    virtual void reset() {}
    virtual void reserved() {}
    virtual void setPhase(double p) { phase = p; }
    virtual void setPhaseDirect(double) {}

protected:
    double phase = 0;
    double sampleRate = 44100;
    double frequency = 100;
};

}  // namespace DSP::Generators
