#pragma once
#include "dsp/StereoBuffer.h"

namespace DSP {

// The interface of a processing object: mono and stereo, per sample and per block, in place or not.
class CDspBaseObject {
public:
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual float getSampleRate() { return sampleRate; }
    virtual void reset() {}
    virtual void tick(const float* in, float* out) { *out = *in; }
    virtual void tick(const float* inL, const float* inR, float* outL, float* outR) {
        *outL = *inL;
        *outR = *inR;
    }
    virtual void process(const float* in, float* out, unsigned count) {
        for (unsigned i = 0; i < count; ++i) tick(in + i, out + i);
    }
    virtual void process(const DSP::StereoBuffer& in, const DSP::StereoBuffer& out, unsigned count) {
        for (unsigned i = 0; i < count; ++i) tick(in.left + i, in.right + i, out.left + i, out.right + i);
    }
    virtual void tickInPlace(float* left, float* right) { tick(left, right, left, right); }
    virtual void tickInPlace(float* sample) { tick(sample, sample); }
    virtual void processInPlace(float* io, unsigned count) { process(io, io, count); }
    virtual void processInPlace(const DSP::StereoBuffer& io, unsigned count) { process(io, io, count); }
    virtual int reserved() { return 0; }

protected:
    ~CDspBaseObject() = default;
    float sampleRate = 44100.0f;
};

}  // namespace DSP
