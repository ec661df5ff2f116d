#pragma once
// Placeholder: passes the signal on until the stage lands.
namespace DSP::FX {
class CFXRingMod {
public:
    void setParam(int, float) {}
    void setSampleRate(float) {}
    void reset() {}
    void processInPlace(float* const*, unsigned) {}
};
}  // namespace DSP::FX
