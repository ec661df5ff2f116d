#pragma once
#include "dsp/filters/CBiquadCascade.h"
// Placeholder: passes the signal on until the filter design lands.
namespace DSP {
class CSlopeFilter {
public:
    explicit CSlopeFilter(int orderLimit) : maxOrder(orderLimit), allPass(12) {}
    void setSlope(int) {}
    void setType(unsigned t) { type = t; }
    void setCutoff(double hertz) { cutoff = hertz; }
    void setSampleRate(double) {}
    void process(const float* in, float* out, unsigned count) {
        if (in != out)
            for (unsigned i = 0; i < count; ++i) out[i] = in[i];
    }
    void reset() {}
    const CBiquadCascade& allPassStages() const { return allPass; }
    unsigned mode = 0;
    unsigned type = 0;
    double cutoff = 1000;

private:
    int maxOrder;
    CBiquadCascade allPass;
};
}  // namespace DSP
