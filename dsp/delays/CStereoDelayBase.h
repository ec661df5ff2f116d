#pragma once
#include "dsp/delays/CSimpleMonoDelay.h"

namespace DSP::DELAY {

class CStereoDelayBase {
public:
    virtual ~CStereoDelayBase() = default;
    virtual void setDelayMs(float ms) { setDelaySamples(static_cast<int>(ms * sampleRate * 0.001f)); }
    virtual void setDelaySamples(int samples) {
        left.setDelaySamples(samples);
        right.setDelaySamples(samples);
    }
    virtual void setSampleRate(float rate) {
        left.setSampleRate(rate);
        right.setSampleRate(rate);
        sampleRate = rate;
    }
    virtual float getSampleRate() const { return sampleRate; }
    virtual int getDelaySamples() const { return left.getDelaySamples(); }
    virtual void reset() {
        left.reset();
        right.reset();
    }

protected:
    float sampleRate = 44100.0f;
    CSimpleMonoDelay left, right;
};

}  // namespace DSP::DELAY
