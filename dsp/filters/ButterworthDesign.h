#pragma once
#include "dsp/filters/CFilterDesignSpec.h"

namespace DSP {

// Designs a Butterworth low-pass or high-pass as (order + 1) / 2 sections into the coefficient
// arrays of a cascade. Allocation-free, so it may run on the audio thread.
void design(CFilterDesignSpec& settings, double* b0, double* b1, double* b2, double* a1, double* a2);

}  // namespace DSP
