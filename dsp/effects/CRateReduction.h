#pragma once
#include "dsp/effects/CFXProcessorBase.h"
#include "dsp/StereoBuffer.h"

namespace DSP::FX {

// Sample-and-hold at a fraction of the host rate, with optional truncation to fewer levels.
class CRateReduction : public CFXProcessorBase {
public:
    CRateReduction() {
        setBits(1.0f);
        setRate(1.0f);
    }
    void setBits(float amount);
    void setRate(float amount);
    void reset() override;
    void process(const DSP::StereoBuffer& io, unsigned count);

    float getLevels() const { return levels; }
    float getPhaseStep() const { return phaseStep; }

private:
    void quantiseBlock(float* x, int n) const;

    float bitAmount = 1.0f;
    float rateAmount = 1.0f;
    float levels = 16002.0f;
    float inverseLevels = 1.0f / 16002.0f;
    float phaseStep = 1.0f;
    float heldLeft = 0.0f, heldRight = 0.0f, phase = 0.0f;
};

}  // namespace DSP::FX
