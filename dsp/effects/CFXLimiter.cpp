#include "dsp/effects/CFXLimiter.h"

#include <emmintrin.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

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

// The largest ring value as m = max(m, value) from 0: values are squares, so no NaN ever wins and
// zero has one sign; the order does not matter.
float CFXLimiter::ringMaximum() const {
    const float* ring = peakRing.data();
    __m128 high = _mm_setzero_ps();
    int i = 0;
    for (; i + 4 <= peakRingLength; i += 4) high = _mm_max_ps(_mm_loadu_ps(ring + i), high);
    float lanes[4];
    _mm_storeu_ps(lanes, high);
    float m = 0;
    for (float lane : lanes) m = std::max(m, lane);
    for (; i < peakRingLength; ++i) m = std::max(m, ring[i]);
    return m;
}

namespace {
float peakFromSquare(float square) {
    float peak = std::sqrt(square);
    if (peak > 100000.0f) peak = 100000.0f;
    if (peak < 1e-19f) peak = 0.0f;
    return peak;
}

bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }

// Whether the block holds a sample pair whose louder magnitude, as max(|l|, |r|) reads it (a NaN
// on the left hides the right), reaches 1e-18.
bool anyAudible(const float* left, const float* right, unsigned count) {
    const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    __m128 loudest = _mm_setzero_ps();
    const int n = static_cast<int>(count);
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        const __m128 l = _mm_and_ps(_mm_loadu_ps(left + i), magnitude);
        const __m128 r = _mm_and_ps(_mm_loadu_ps(right + i), magnitude);
        loudest = _mm_max_ps(_mm_max_ps(r, l), loudest);
    }
    float lanes[4];
    _mm_storeu_ps(lanes, loudest);
    float m = 0;
    for (float lane : lanes) m = std::max(m, lane);
    for (; i < n; ++i) m = std::max(m, std::max(std::fabs(left[i]), std::fabs(right[i])));
    return !(m < 1e-18f);
}
}  // namespace

void CFXLimiter::setRingPeakFromSquare(float square) { ringPeak = peakFromSquare(square); }

void CFXLimiter::detect(const float* left, const float* right, unsigned count) {
    // A silent block skips the ring only once the ring has gone silent too; while a peak is still
    // in it, the look-ahead must keep running or a transient before silence would pass unlimited.
    if (anyAudible(left, right, count) || !(ringMaximum() < 1e-18f)) {
        float* ring = peakRing.data();
        float* peaks = peakBuffer.data();
        const int length = peakRingLength;
        int pos = peakRingPos;
        float peak = ringPeak;
        float m = peak * peak;
        for (unsigned i = 0; i < count; ++i) {
            const float l = left[i] + 1e-19f;
            const float r = right[i] + 1e-19f;
            const float s = std::max(l * l, r * r);
            const float leaving = ring[pos];
            ring[pos] = s;
            if (++pos >= length) pos = 0;
            // Rescan only when the maximum leaves the ring.
            if (peak == 0 || leaving == m) {
                m = ringMaximum();
                peak = peakFromSquare(m);
            }
            peaks[i] = peak;
            if (s > m) {
                m = s;
                peak = peakFromSquare(s);
            }
        }
        peakRingPos = pos;
        ringPeak = peak;
        return;
    }
    std::fill(peakBuffer.begin(), peakBuffer.begin() + count, 0.0f);
}

void CFXLimiter::process(float* left, float* right, unsigned count) {
    if (count > peakBuffer.size()) count = static_cast<unsigned>(peakBuffer.size());  // the caller sizes blocks
    if (bypassed) {
        float* ring = peakRing.data();
        int pos = peakRingPos;
        for (unsigned i = 0; i < count; ++i) {
            ring[pos] = std::max(std::fabs(left[i]), std::fabs(right[i]));
            if (++pos >= peakRingLength) pos = 0;
        }
        peakRingPos = pos;
        delay.exchange(left, right, count);
        ringPeak = 0;
        return;
    }
    const float o = outputGain * makeup;
    detect(left, right, count);
    const double fs = sampleRate;
    const bool automatic = releaseMs <= 1.0f;
    const float exponent = ratio - 1.0f;
    float env = envelope, release = releaseCoefficient, autoMs = autoReleaseMs;
    // The library functions run again only for a new argument; the same argument gives the same
    // result, and while nothing is limited the arguments stand still.
    bool havePower = false, haveTarget = false, haveRelease = false;
    float powerOf = 0, power = 0, targetOf = 0, target = 0, releaseOf = 0;
    float* gains = peakBuffer.data();
    float g = gainBelowThreshold;
    for (unsigned i = 0; i < count; ++i) {
        const float p = gains[i];
        if (p > env)
            env += (p - env) * attackCoefficient + 1e-19f;
        else
            env = p + (env - p) * release + 1e-19f;
        g = gainBelowThreshold;
        if (env > threshold) {
            if (!havePower || !sameBits(env, powerOf)) {
                powerOf = env;
                power = std::pow(env, exponent);
                havePower = true;
            }
            g = power * gainScale;
        }
        if (automatic && g != 0) {
            if (!haveTarget || !sameBits(g, targetOf)) {
                targetOf = g;
                const float x = std::clamp(static_cast<float>(8.685889638065037 * std::log(g) / -24.0), 0.0f, 1.0f);
                target = (1.0f - 7.0f * (1.0f - x) / (6.0f * (1.0f - x) + 1.0f)) * 650.0f + 0.1f + 1.0f;
                haveTarget = true;
            }
            const float rate = target > autoMs ? autoRise : autoFall;
            autoMs += (target - autoMs) * rate + 1e-19f;
            if (!haveRelease || !sameBits(autoMs, releaseOf)) {
                releaseOf = autoMs;
                release = static_cast<float>(std::exp(-kLn2 / (autoMs * 0.001 * fs)));
                haveRelease = true;
            }
        }
        gains[i] = g;
    }
    envelope = env;
    releaseCoefficient = release;
    autoReleaseMs = autoMs;
    if (count > 0) meterGain.store(g, std::memory_order_relaxed);
    delay.exchange(left, right, count);
    const __m128 outGain = _mm_set1_ps(o);
    unsigned i = 0;
    for (; i + 4 <= count; i += 4) {
        const __m128 gain = _mm_loadu_ps(gains + i);
        _mm_storeu_ps(left + i, _mm_mul_ps(_mm_mul_ps(_mm_loadu_ps(left + i), gain), outGain));
        _mm_storeu_ps(right + i, _mm_mul_ps(_mm_mul_ps(_mm_loadu_ps(right + i), gain), outGain));
    }
    for (; i < count; ++i) {
        left[i] *= gains[i];
        right[i] *= gains[i];
        left[i] *= o;
        right[i] *= o;
    }
}

}  // namespace DSP::FX
