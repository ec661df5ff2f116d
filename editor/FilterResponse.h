#pragma once
// Frequency responses of the effect's filter objects as they stand, from their own coefficients.
namespace DSP {
class CSlopeFilter;
}

namespace ZonfraEditor {

// Decibels (floored at -200) of what CSlopeFilter::process does: the twice-run cascade, or for the
// complementary high-pass the all-pass minus that cascade, whose phase the magnitude alone misses.
void slopeFilterResponseDb(const DSP::CSlopeFilter& filter, const double* hertz, double* outDb, int count);

}  // namespace ZonfraEditor
