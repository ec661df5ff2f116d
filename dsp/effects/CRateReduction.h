#pragma once
#include "framework/StereoBuffer.h"
// Placeholder: passes the signal on until the stage lands.
namespace DSP::FX {
class CRateReduction {
public:
    void setBits(float) {}
    void setRate(float) {}
    void reset() {}
    void process(const Ondra::StereoBuffer&, unsigned) {}
};
}  // namespace DSP::FX
