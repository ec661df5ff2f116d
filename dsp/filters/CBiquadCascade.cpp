#include "dsp/filters/CBiquadCascade.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "dsp/filters/CComplex.h"

namespace DSP {

CBiquadCascade::CBiquadCascade(int capacity)
    : stages(capacity < 1 ? 12 : capacity),
      stageCapacity(stages),
      storage(new double[static_cast<std::size_t>(kArrayCount) * stageCapacity]()) {
    bindArrays();
    std::fill(b0, b0 + stageCapacity, 1.0);
}

CBiquadCascade::CBiquadCascade(const CBiquadCascade& other)
    : stages(other.stages),
      stageCapacity(other.stageCapacity),
      storage(new double[static_cast<std::size_t>(kArrayCount) * stageCapacity]) {
    bindArrays();
    std::copy(other.storage.get(), other.storage.get() + kArrayCount * stageCapacity, storage.get());
}

CBiquadCascade& CBiquadCascade::operator=(const CBiquadCascade& other) {
    if (this != &other) {
        CBiquadCascade copy(other);
        stages = copy.stages;
        stageCapacity = copy.stageCapacity;
        storage = std::move(copy.storage);
        bindArrays();
    }
    return *this;
}

void CBiquadCascade::bindArrays() {
    double* base = storage.get();
    double** arrays[kArrayCount] = {&a1, &a2, &b0, &b1, &b2, &x1, &x2, &y1, &y2};
    for (int i = 0; i < kArrayCount; ++i) *arrays[i] = base + i * stageCapacity;
}

void CBiquadCascade::setOrder(int order) {
    const int count = order % 2 != 0 ? (order + 1) / 2 : order / 2;
    if (count >= 0 && count <= stageCapacity) stages = count;
}

void CBiquadCascade::copyCoefficients(const CBiquadCascade& source) {
    if (&source == this) return;
    if (source.stages >= 0 && source.stages <= stageCapacity) stages = source.stages;
    const int count = std::min(stages, source.stageCapacity);
    std::copy(source.a1, source.a1 + count, a1);
    std::copy(source.a2, source.a2 + count, a2);
    std::copy(source.b0, source.b0 + count, b0);
    std::copy(source.b1, source.b1 + count, b1);
    std::copy(source.b2, source.b2 + count, b2);
}

void CBiquadCascade::makeAllPass() {
    for (int k = 0; k < stages; ++k) {
        double n0, n1, n2;
        if (a2[k] != 0.0) {
            n0 = a2[k];
            n1 = a1[k];
            n2 = 1.0;
        } else {
            n0 = a1[k];
            n1 = 1.0;
            n2 = 0.0;
        }
        const double p = a1[k], q = a2[k];
        const double dc = 1.0 + p * p + q * q + 2.0 * p + 2.0 * q + 2.0 * p * q;
        const double numerator = n0 * n0 + n1 * n1 + n2 * n2 + 2.0 * n0 * n1 + 2.0 * n0 * n2 + 2.0 * n1 * n2;
        const double g = std::sqrt(dc / numerator);
        b0[k] = n0 * g;
        b1[k] = n1 * g;
        b2[k] = n2 * g;
    }
}

void CBiquadCascade::reset() {
    std::fill(x1, x1 + 4 * stageCapacity, 0.0);  // x1, x2, y1, y2 are contiguous
}

double CBiquadCascade::tick(double x) {
    for (int k = 0; k < stages; ++k) {
        const double y = x * b0[k] - a1[k] * y1[k] - a2[k] * y2[k] + b1[k] * x1[k] + b2[k] * x2[k];
        x2[k] = x1[k];
        x1[k] = x;
        y2[k] = y1[k];
        y1[k] = y;
        x = y;
    }
    return x;
}

float CBiquadCascade::tickRounded(float input) {
    double x = input;
    for (int k = 0; k < stages; ++k) {
        const double y = static_cast<float>(x * b0[k] - a1[k] * y1[k] - a2[k] * y2[k] + b1[k] * x1[k] +
                                            b2[k] * x2[k]);
        x2[k] = x1[k];
        x1[k] = x;
        y2[k] = y1[k];
        y1[k] = y;
        x = y;
    }
    return static_cast<float>(x);
}

void CBiquadCascade::response(const double* frequenciesHz, double sampleRate, double* out, int count,
                              bool inDecibels, bool accumulate) const {
    if (frequenciesHz == nullptr || out == nullptr || count <= 0 || !(sampleRate > 0.0)) return;
    for (int i = 0; i < count; ++i) {
        const double w = 2.0 * std::numbers::pi * frequenciesHz[i] / sampleRate;
        const CComplex v = CComplex(1.0) / CComplex(0.0, w).exp();
        const CComplex v2 = v * v;
        CComplex h(1.0);
        for (int k = 0; k < stages; ++k) {
            const CComplex numerator = CComplex(b0[k]) + CComplex(b1[k]) * v + CComplex(b2[k]) * v2;
            const CComplex denominator = CComplex(1.0) + CComplex(a1[k]) * v + CComplex(a2[k]) * v2;
            h = h * (numerator / denominator);
        }
        const double m = h.abs();
        if (inDecibels) {
            const double d = 8.685889638065037 * std::log(m);
            out[i] = std::max(accumulate ? out[i] + d : d, -200.0);
        } else {
            out[i] = accumulate ? out[i] * m : m;
        }
    }
}

}  // namespace DSP
