#pragma once
#include "dsp/generators/GeneratorBase.h"

namespace DSP::Generators {

// A sine by recursive rotation of a phasor: one complex multiplication per sample, no table.
class CSineOSC : public GeneratorBase {
public:
    CSineOSC() { update(); }
    void update() override;
    void setFrequency(double hertz) override;
    double nextDouble() override;
    float nextFloat() override;
    // The next `count` values of nextFloat, without a call per sample.
    void fill(float* out, int count) override;
    using GeneratorBase::fill;
    void reset() override;
    void setPhase(double p) override;
    void setPhaseDirect(double p) override;

private:
    float step();

    float cosF = 1, sinF = 0;
    double cosD = 1, sinD = 0;
    float xF = 0, yF = -1;
    double xD = 0, yD = -1;
    double pendingX = 0, pendingY = -1;
    bool pending = false;
    double lastPhase = 0;
};

}  // namespace DSP::Generators
