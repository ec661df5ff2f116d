#include "dsp/effects/CDistortion.h"

#include <cmath>
#include <initializer_list>

namespace DSP::FX {

void CDistortion::setDrive(float amount) {
    const float e = 1.0f - amount;
    const float w = 1.0f - 3.0f * e / (2.0f * e + 1.0f);
    wet = w;
    dry = 1.0f - w;
    const float v = 6.5f * w / (5.5f * w + 1.0f);
    makeup = static_cast<float>(1.0 - 0.57 * static_cast<double>(v));
}

void CDistortion::process(const Ondra::StereoBuffer& io, unsigned count) const {
    // Double precision keeps x^2 finite for any finite float input.
    const double a = shape;
    const double wetGain = static_cast<double>(wet) * makeup;
    for (float* channel : {io.left, io.right}) {
        if (!channel) continue;
        for (unsigned i = 0; i < count; ++i) {
            const double x = channel[i];
            const double magnitude = std::sqrt(x * x);
            channel[i] = static_cast<float>(dry * x + wetGain * x * (a + magnitude) / (x * x + 1.0 + magnitude * (a - 1.0)));
        }
    }
}

}  // namespace DSP::FX
