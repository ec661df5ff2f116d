#pragma once
#include "dsp/effects/CFXProcessorBase.h"
#include "dsp/StereoBuffer.h"

namespace DSP::FX {

// A memoryless odd sigmoid with a dry share: gain `shape` for small signals, bounded for large.
class CDistortion : public CFXProcessorBase {
public:
    void setDrive(float amount);
    void process(const DSP::StereoBuffer& io, unsigned count) const;

    float getWet() const { return wet; }
    float getDry() const { return dry; }
    float getMakeup() const { return makeup; }

private:
    const float shape = 10.0f;
    float wet = 1.0f;
    float dry = 0.0f;
    float makeup = 0.43f;
};

}  // namespace DSP::FX
