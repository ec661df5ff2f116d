#include "dsp/filters/CSlopeFilter.h"

#include <algorithm>
#include <cmath>

#include "dsp/filters/ButterworthDesign.h"

namespace DSP {

namespace {
constexpr double kDenormalOffset = 1e-19;

int clampMaxOrder(int value) { return std::clamp(value, 1, 2 * CSlopeFilter::kMaxStages); }
}  // namespace

CSlopeFilter::CSlopeFilter(int maxOrderValue)
    : lowA((clampMaxOrder(maxOrderValue) + 1) / 2),
      lowB((clampMaxOrder(maxOrderValue) + 1) / 2),
      allPass(kMaxStages),
      maxOrder(clampMaxOrder(maxOrderValue)),
      order(std::min(maxOrder, 2)),
      cache(new CacheEntry[kCacheBins]) {
    clearCache();
    selectCoefficients();
}

int CSlopeFilter::cacheBin(double hertz) {
    const float u = static_cast<float>(hertz) / 22050.0f;
    const float position = 21.0f * u / (20.0f * u + 1.0f) * 2756.0f;
    if (!(position > 0.0f)) return 0;
    return std::min(static_cast<int>(position), kCacheBins - 1);
}

void CSlopeFilter::clearCache() {
    for (int i = 0; i < kCacheBins; ++i) cache[i].valid = false;
    selectedBin = -1;
}

void CSlopeFilter::selectCoefficients() {
    const int bin = cacheBin(cutoff);
    CacheEntry& entry = cache[bin];
    // The cascades hold this bin's coefficients already: selecting them again would copy the same.
    if (entry.valid && bin == selectedBin) return;
    selectedBin = bin;
    if (entry.valid) {
        const int count = lowA.stageCount();
        std::copy(entry.a1, entry.a1 + count, lowA.a1);
        std::copy(entry.a2, entry.a2 + count, lowA.a2);
        std::copy(entry.b0, entry.b0 + count, lowA.b0);
        std::copy(entry.b1, entry.b1 + count, lowA.b1);
        std::copy(entry.b2, entry.b2 + count, lowA.b2);
    } else {
        CFilterDesignSpec settings;
        settings.setSampleRate(sampleRate);
        settings.setFrequency(cutoff);
        settings.setOrder(order);
        settings.family = CFilterDesignSpec::kButterworth;
        settings.setType(type == 1 && mode > 0 ? CFilterDesignSpec::kHighPass : CFilterDesignSpec::kLowPass);
        lowA.setOrder(order);
        design(settings, lowA.b0, lowA.b1, lowA.b2, lowA.a1, lowA.a2);
        const int count = lowA.stageCount();
        std::copy(lowA.a1, lowA.a1 + count, entry.a1);
        std::copy(lowA.a2, lowA.a2 + count, entry.a2);
        std::copy(lowA.b0, lowA.b0 + count, entry.b0);
        std::copy(lowA.b1, lowA.b1 + count, entry.b1);
        std::copy(lowA.b2, lowA.b2 + count, entry.b2);
        entry.valid = true;
    }
    lowB.copyCoefficients(lowA);
    allPass.copyCoefficients(lowA);
    allPass.makeAllPass();
}

void CSlopeFilter::setSlope(int dbPerOctave) {
    const int candidate = dbPerOctave / 12;
    if (candidate >= 1 && candidate <= maxOrder) order = candidate;
    clearCache();
    selectCoefficients();
}

void CSlopeFilter::setType(unsigned value) {
    type = value;
    clearCache();
    selectCoefficients();
}

double CSlopeFilter::limitedCutoff() const {
    return std::clamp(wantedCutoff, std::max(kMinCutoff, std::floor(sampleRate * kMinCutoffPerRate)), kMaxCutoff);
}

void CSlopeFilter::clearDesigns() {
    clearCache();
    selectCoefficients();
}

void CSlopeFilter::setCutoff(double hertz) {
    if (std::isnan(hertz)) return;
    wantedCutoff = std::floor(hertz);
    cutoff = limitedCutoff();
    selectCoefficients();
}

void CSlopeFilter::setSampleRate(double hertz) {
    if (!(hertz > 0.0) || hertz == sampleRate || std::isinf(hertz)) return;
    sampleRate = hertz;
    cutoff = limitedCutoff();
    clearCache();
    selectCoefficients();
}

void CSlopeFilter::process(const float* in, float* out, unsigned count) {
    if (count == 0 || in == nullptr || out == nullptr) return;
    if (type == 1 && mode == 0) {
        for (unsigned i = 0; i < count; ++i) {
            const double s = in[i];
            const double v = lowA.tick(s + kDenormalOffset);
            const double w = lowB.tick(v + kDenormalOffset);
            const float p = allPass.tickRounded(static_cast<float>(s + kDenormalOffset));
            out[i] = p - static_cast<float>(w);
        }
    } else {
        for (unsigned i = 0; i < count; ++i) {
            const double s = in[i];
            const double v = lowA.tick(s + kDenormalOffset);
            out[i] = static_cast<float>(lowB.tick(v + kDenormalOffset));
        }
    }
}

void CSlopeFilter::reset() {
    lowA.reset();
    lowB.reset();
    allPass.reset();
}

void CSlopeFilter::response(const double* frequenciesHz, double* outDb, int count) const {
    if (frequenciesHz == nullptr || outDb == nullptr || count <= 0) return;
    std::fill(outDb, outDb + count, 0.0);
    lowA.response(frequenciesHz, sampleRate, outDb, count, true, true);
    lowB.response(frequenciesHz, sampleRate, outDb, count, true, true);
}

}  // namespace DSP
