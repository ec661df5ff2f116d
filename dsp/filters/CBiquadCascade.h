#pragma once
// Placeholder: passes the signal on until the filter design lands.
namespace DSP {
class CBiquadCascade {
public:
    explicit CBiquadCascade(int capacity) : capacity(capacity < 1 ? 12 : capacity) {}
    void setOrder(int) {}
    void copyCoefficients(const CBiquadCascade&) {}
    void makeAllPass() {}
    void reset() {}
    double tick(double x) { return x; }
    float tickRounded(float x) { return x; }
    int capacity;
};
}  // namespace DSP
