#pragma once

namespace DSP {

// Settings of one Butterworth design run; lives on the stack of the caller.
struct CFilterDesignSpec {
    static constexpr unsigned kLowPass = 1;
    static constexpr unsigned kHighPass = 2;
    static constexpr unsigned kButterworth = 1;
    // Twelve sections at most: the size of a cache entry.
    static constexpr int kMaxOrder = 24;

    double sampleRate = 44100.0;
    double frequency = 1000.0;
    unsigned type = kLowPass;
    int order = 2;
    unsigned family = kButterworth;

    void setSampleRate(double hertz) {
        if (hertz > 0.0) sampleRate = hertz;
    }
    void setFrequency(double hertz) {
        if (hertz > 0.0) frequency = hertz;
    }
    void setType(unsigned value) {
        if (value < 8) type = value;
    }
    void setOrder(int value) {
        if (value > 0 && value <= kMaxOrder) order = value;
    }
};

}  // namespace DSP
