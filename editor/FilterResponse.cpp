#include "editor/FilterResponse.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "dsp/filters/CSlopeFilter.h"

namespace ZonfraEditor {

namespace {

using Complex = std::complex<double>;

Complex cascadeAt(const DSP::CBiquadCascade& cascade, const Complex& v) {
    const Complex v2 = v * v;
    Complex h(1.0);
    for (int k = 0; k < cascade.stageCount(); ++k)
        h *= (cascade.b0[k] + cascade.b1[k] * v + cascade.b2[k] * v2) / (1.0 + cascade.a1[k] * v + cascade.a2[k] * v2);
    return h;
}

}  // namespace

void slopeFilterResponseDb(const DSP::CSlopeFilter& filter, const double* hertz, double* outDb, int count) {
    const double rate = filter.getSampleRate();
    for (int i = 0; i < count; ++i) {
        const Complex v = std::polar(1.0, -2.0 * std::numbers::pi * hertz[i] / rate);  // z^-1
        Complex h = cascadeAt(filter.lowPathA(), v) * cascadeAt(filter.lowPathB(), v);
        if (filter.isComplementary()) h = cascadeAt(filter.allPassStages(), v) - h;
        const double db = 20.0 * std::log10(std::abs(h));
        outDb[i] = std::isfinite(db) ? std::max(db, -200.0) : -200.0;
    }
}

}  // namespace ZonfraEditor
