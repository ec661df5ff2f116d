#pragma once
#include "framework/StereoBuffer.h"
// Placeholder: passes the signal on until the stage lands.
namespace DSP::FX {
class CDistortion {
public:
    void setDrive(float) {}
    void setSampleRate(float) {}
    void reset() {}
    void process(const Ondra::StereoBuffer&, unsigned) {}
};
}  // namespace DSP::FX
