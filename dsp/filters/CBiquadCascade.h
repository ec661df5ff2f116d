#pragma once
#include <memory>

namespace DSP {

// Second-order sections in series, Direct Form I, as a structure of arrays. Section k is
// (b0 + b1 z^-1 + b2 z^-2) / (1 + a1 z^-1 + a2 z^-2). Coefficients may change between two samples
// with the state kept.
class CBiquadCascade {
public:
    explicit CBiquadCascade(int capacity);
    CBiquadCascade(const CBiquadCascade& other);
    CBiquadCascade& operator=(const CBiquadCascade& other);
    ~CBiquadCascade() = default;

    // Stage count for a filter order; ignored when it does not fit.
    void setOrder(int order);
    void copyCoefficients(const CBiquadCascade& source);
    // Turns every stage into the all-pass with the stage's own denominator.
    void makeAllPass();
    void reset();

    double tick(double x);
    // Rounds to float behind each stage, as the float dry path does.
    float tickRounded(float x);

    // Magnitude (or decibels, floored at -200) of the whole cascade at each frequency.
    void response(const double* frequenciesHz, double sampleRate, double* out, int count,
                  bool inDecibels, bool accumulate) const;

    int stageCount() const { return stages; }
    int capacity() const { return stageCapacity; }

    // Coefficient block, capacity entries each, in the order the design fills it; state arrays.
    double* a1;
    double* a2;
    double* b0;
    double* b1;
    double* b2;
    double* x1;
    double* x2;
    double* y1;
    double* y2;

private:
    static constexpr int kArrayCount = 9;
    void bindArrays();

    int stages;
    int stageCapacity;
    std::unique_ptr<double[]> storage;
};

}  // namespace DSP
