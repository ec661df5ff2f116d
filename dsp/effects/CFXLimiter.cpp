#include "dsp/effects/CFXLimiter.h"

#include <algorithm>
#include <cmath>

namespace DSP::FX {

namespace {
constexpr double kLn2 = 0.6931471805599453;
}

CFXLimiter::CFXLimiter() : autoFall(static_cast<float>(1.0 - std::pow(0.01, 1.0 / (44100.0 * 0.05)))) {
    gainScale = std::pow(threshold, 1.0f - ratio);
    makeup = (1.0f / gainScale + 1.0f) * 0.5f;
    updateCoefficients();
    setLookahead(5.0f);
}

void CFXLimiter::setLookahead(float ms) {
    const int n = static_cast<int>(ms * 0.001f * sampleRate + 1.0f);
    peakRing.assign(static_cast<size_t>(n) + 1, 0.0f);
    peakRingLength = n;
    peakRingPos = 0;
    delay.setDelaySamples(n);
}

void CFXLimiter::setBlockSize(int samples) {
    peakBuffer.assign(static_cast<size_t>(std::max(samples, 1)), 0.0f);
    ringPeak = 0;
}

void CFXLimiter::setParam(int index, float value) {
    if (index == 3) releaseMs = value;
    if (index == 4) outputGain = value;
    if (index == 5) {
        const bool turnOn = value >= 0.5f;
        if (turnOn && !bypassed) meterGain.store(1.0f, std::memory_order_relaxed);
        bypassed = turnOn;
    }
    updateCoefficients();
}

void CFXLimiter::setSampleRate(float rate) {
    if (!(rate > 0)) return;
    sampleRate = rate;
    updateCoefficients();
    delay.setSampleRate(rate);
}

void CFXLimiter::updateCoefficients() {
    const double fs = sampleRate;
    attackCoefficient = attackMs == 0 ? 1.0f : static_cast<float>(1.0 - std::exp(-kLn2 / (attackMs * 0.001 * fs)));
    releaseCoefficient = releaseMs == 0 ? 1.0f : static_cast<float>(std::exp(-kLn2 / (releaseMs * 0.001 * fs)));
    gainScale = std::pow(threshold, 1.0f - ratio);
    makeup = (1.0f / gainScale + 1.0f) * 0.5f;
    gainBelowThreshold = 1.0f;
}

void CFXLimiter::reset() {
    delay.reset();
    std::fill(peakRing.begin(), peakRing.end(), 0.0f);
    // The detector's running values too, so that nothing from before (a NaN, say) survives.
    std::fill(peakBuffer.begin(), peakBuffer.end(), 0.0f);
    ringPeak = 0;
    autoReleaseMs = 0;
    envelope = 1.0f;
    meterGain.store(1.0f, std::memory_order_relaxed);
}

float CFXLimiter::ringMaximum() const {
    float m = 0;
    for (int i = 0; i < peakRingLength; ++i) m = std::max(m, peakRing[static_cast<size_t>(i)]);
    return m;
}

void CFXLimiter::setRingPeakFromSquare(float square) {
    float peak = std::sqrt(square);
    if (peak > 100000.0f) peak = 100000.0f;
    if (peak < 1e-19f) peak = 0.0f;
    ringPeak = peak;
}

void CFXLimiter::detect(const float* left, const float* right, unsigned count) {
    float loudest = 0;
    for (unsigned i = 0; i < count; ++i) loudest = std::max(loudest, std::max(std::fabs(left[i]), std::fabs(right[i])));
    // A silent block skips the ring only once the ring has gone silent too; while a peak is still
    // in it, the look-ahead must keep running or a transient before silence would pass unlimited.
    if (!(loudest < 1e-18f) || !(ringMaximum() < 1e-18f)) {  // NaN input counts as loud
        float m = ringPeak * ringPeak;
        for (unsigned i = 0; i < count; ++i) {
            const float l = left[i] + 1e-19f;
            const float r = right[i] + 1e-19f;
            const float s = std::max(l * l, r * r);
            const float leaving = peakRing[static_cast<size_t>(peakRingPos)];
            peakRing[static_cast<size_t>(peakRingPos)] = s;
            if (++peakRingPos >= peakRingLength) peakRingPos = 0;
            // Rescan only when the maximum leaves the ring.
            if (ringPeak == 0 || leaving == m) {
                m = ringMaximum();
                setRingPeakFromSquare(m);
            }
            peakBuffer[i] = ringPeak;
            if (s > m) {
                m = s;
                setRingPeakFromSquare(s);
            }
        }
        return;
    }
    std::fill(peakBuffer.begin(), peakBuffer.begin() + count, 0.0f);
}

void CFXLimiter::process(float* left, float* right, unsigned count) {
    if (count > peakBuffer.size()) count = static_cast<unsigned>(peakBuffer.size());  // the caller sizes blocks
    if (bypassed) {
        for (unsigned i = 0; i < count; ++i) {
            peakRing[static_cast<size_t>(peakRingPos)] = std::max(std::fabs(left[i]), std::fabs(right[i]));
            if (++peakRingPos >= peakRingLength) peakRingPos = 0;
            delay.tick(left[i], right[i]);
        }
        ringPeak = 0;
        return;
    }
    const float o = outputGain * makeup;
    detect(left, right, count);
    const double fs = sampleRate;
    for (unsigned i = 0; i < count; ++i) {
        const float p = peakBuffer[i];
        if (p > envelope)
            envelope += (p - envelope) * attackCoefficient + 1e-19f;
        else
            envelope = p + (envelope - p) * releaseCoefficient + 1e-19f;
        float g = gainBelowThreshold;
        if (envelope > threshold) g = std::pow(envelope, ratio - 1.0f) * gainScale;
        delay.tick(left[i], right[i]);
        if (releaseMs <= 1.0f && g != 0) {
            const float x = std::clamp(static_cast<float>(8.685889638065037 * std::log(g) / -24.0), 0.0f, 1.0f);
            const float t = (1.0f - 7.0f * (1.0f - x) / (6.0f * (1.0f - x) + 1.0f)) * 650.0f + 0.1f + 1.0f;
            const float rate = t > autoReleaseMs ? autoRise : autoFall;
            autoReleaseMs += (t - autoReleaseMs) * rate + 1e-19f;
            releaseCoefficient = static_cast<float>(std::exp(-kLn2 / (autoReleaseMs * 0.001 * fs)));
        }
        left[i] *= g;
        right[i] *= g;
        meterGain.store(g, std::memory_order_relaxed);
        left[i] *= o;
        right[i] *= o;
    }
}

}  // namespace DSP::FX
