#pragma once
#include "dsp/filters/CComplex.h"

namespace DSP {

// Normalised analogue low-pass (cutoff 1 rad/s): the upper pole of each conjugate pair, then the
// real pole of an odd order.
struct CAnalogPrototype {
    static constexpr int kMaxEntries = 13;

    int order = 0;
    int pairs = 0;
    int hasRealPole = 0;
    CComplex poles[kMaxEntries];
    CComplex zeros[kMaxEntries];

    // order is limited to 1..24.
    void makeButterworth(int filterOrder);
};

}  // namespace DSP
