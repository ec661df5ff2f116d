#include "dsp/effects/CRateReduction.h"

#include <cmath>

namespace DSP::FX {

void CRateReduction::setBits(float amount) {
    bitAmount = amount;
    const float e = 1.0f - amount;
    const float t = -501.0f * e / (500.0f * e + 1.0f);
    levels = (t + 1.0f) * 16000.0f + 2.0f;
    inverseLevels = 1.0f / levels;
}

void CRateReduction::setRate(float amount) {
    rateAmount = static_cast<float>(0.97 * static_cast<double>(amount) + 0.03);
    const float e = 1.0f - rateAmount;
    const float t = -15.0f * e / (14.0f * e + 1.0f);
    phaseStep = (1.0f + t) * 0.99f + 0.01f;
}

void CRateReduction::reset() {
    heldLeft = heldRight = phase = 0.0f;
}

void CRateReduction::process(const Ondra::StereoBuffer& io, unsigned count) {
    if (!io.left || !io.right) return;
    const bool quantise = bitAmount < 1.0f;
    for (unsigned i = 0; i < count; ++i) {
        float l = io.left[i];
        float r = io.right[i];
        if (quantise) {
            // Truncation toward zero: no offset between positive and negative values.
            l = (l > 0 ? std::floor(l * levels) : std::ceil(l * levels)) * inverseLevels;
            r = (r > 0 ? std::floor(r * levels) : std::ceil(r * levels)) * inverseLevels;
        }
        phase += phaseStep;
        if (phase >= 1.0f) {
            heldLeft = l;
            heldRight = r;
            phase -= std::floor(phase);
        }
        io.left[i] = heldLeft;
        io.right[i] = heldRight;
    }
}

}  // namespace DSP::FX
