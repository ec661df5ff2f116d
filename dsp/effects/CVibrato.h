#pragma once
// Placeholder: passes the signal on until the stage lands.
namespace DSP::FX {
class CVibrato {
public:
    void setParam(int, float) {}
    void setSampleRate(float) {}
    void reset() {}
    void process(float left, float right, float* outLeft, float* outRight) {
        *outLeft = left;
        *outRight = right;
    }
};
}  // namespace DSP::FX
