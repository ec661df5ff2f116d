#pragma once
// Placeholder: a silent LFO until the generator lands.
namespace DSP {
class CLfoGenerator {
public:
    void setShape(int) {}
    void setSampleRate(double) {}
    void setRate(double) {}
    void setSyncIndex(int) {}
    void setTempo(double) {}
    void setShift(double) {}
    void restart() {}
    void restartIfSynced() {}
    double tick() { return 0.0; }
};
}  // namespace DSP
