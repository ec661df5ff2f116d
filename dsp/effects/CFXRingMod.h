#pragma once
#include "dsp/effects/CFXBase.h"
#include "dsp/generators/CSineOSC.h"

namespace DSP::FX {

// A unipolar ring modulator: the gain swings between 1 and 1 - mix at the oscillator's frequency.
class CFXRingMod : public CFXBase {
public:
    CFXRingMod();
    // Settings by number: 0 frequency in Hz, 1 mix; the named calls below are the same settings.
    void setParam(int index, float value) override;
    void setFrequency(float hertz) { setParam(0, hertz); }
    void setMix(float mix) { setParam(1, mix); }
    void setSampleRate(float rate) override;
    void reset() override;

    // Stereo: both channels share one oscillator and one gain.
    void tick(const float* inL, const float* inR, float* outL, float* outR) override;
    void process(const DSP::StereoBuffer& in, const DSP::StereoBuffer& out, unsigned count) override;
    void tickInPlace(float* left, float* right) override;
    void processInPlace(const DSP::StereoBuffer& io, unsigned count) override;
    void processInPlace(float* const* io, unsigned count);
    // Mono: no gate, a bipolar mix.
    void tick(const float* in, float* out) override;
    void process(const float* in, float* out, unsigned count) override;
    void tickInPlace(float* sample) override;
    void processInPlace(float* io, unsigned count) override;

    float getFrequency() const { return frequency; }
    float getMixCurrent() const { return mixCurrent; }

private:
    float stereoGain();
    float monoGain();

    static constexpr int kSlice = 128;

    Generators::CSineOSC osc;
    float oscValues[kSlice] = {};
    float frequency = 2000;
    float mixTarget = 0, mixCurrent = 0;
    float gateCurrent = 1, gateTarget = 1;
};

}  // namespace DSP::FX
