#pragma once
#include "dsp/generators/CLfoGenerator.h"

namespace DSP::FX {

// The frequency modulator: a delay line of up to 50 ms swept by a sine LFO, read with linear
// interpolation. The buffers live inside the object, so nothing allocates at a change.
class CVibrato {
public:
    static constexpr int kBufferSize = 65538;

    CVibrato();
    virtual ~CVibrato() = default;
    void setParam(int index, float value);
    void setSampleRate(float rate);
    void reset();
    void process(float left, float right, float* outLeft, float* outRight);
    // The same per sample pair, over a block in place. With `replace` false the block only feeds
    // the delay line and keeps its samples, as when the outputs of process are thrown away.
    void processBlock(float* left, float* right, int count, bool replace);

    float getDelay() const { return delay; }
    float getDepthTarget() const { return depthTarget; }
    // True while the stage does more than delay by one sample.
    bool isActive() const { return depthTarget != 0.0f || depthCurrent > 1e-6f || delay > 1e-6f; }

private:
    void deriveDepth();
    CLfoGenerator lfo;
    float bufferL[kBufferSize] = {};
    float bufferR[kBufferSize] = {};
    int writeIndex = 1;
    float delay = 0;
    float depthCurrent = 0, depthTarget = 0;
    float phaseSetting = 0;
    float depthSetting = 0;
    float sampleRate = 44100;
    float gateCurrent = 1, gateTarget = 1;
};

}  // namespace DSP::FX
