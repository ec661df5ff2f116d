#include "dsp/effects/CFXRingMod.h"

#include <xmmintrin.h>

#include <algorithm>
#include <bit>
#include <cstdint>

namespace DSP::FX {

CFXRingMod::CFXRingMod() {
    osc.setSampleRate(sampleRate);
    osc.setFrequency(frequency);
}

void CFXRingMod::setParam(int index, float value) {
    if (index == 0) {
        frequency = std::clamp(value, 0.01f, 16000.0f);
        osc.setFrequency(frequency);
        gateTarget = frequency <= 0.0101f ? 0.0f : 1.0f;
    } else if (index == 1) {
        mixTarget = std::clamp(value, -1.0f, 1.0f);
    }
}

void CFXRingMod::setSampleRate(float rate) {
    sampleRate = rate;
    osc.setSampleRate(rate);
    osc.setFrequency(frequency);
    reset();
}

void CFXRingMod::reset() {
    osc.reset();
    gateCurrent = gateTarget;
}

float CFXRingMod::stereoGain() {
    mixCurrent += (mixTarget - mixCurrent) * 0.005f + 1e-19f;
    gateCurrent += (gateTarget - gateCurrent) * 0.00011f + 1e-19f;
    const float s = osc.nextFloat();
    const float m = std::clamp(mixCurrent * gateCurrent, 0.0f, 1.0f);
    return 1.0f - (s + 1.0f) * 0.5f * m;
}

float CFXRingMod::monoGain() {
    mixCurrent = std::clamp(mixCurrent + (mixTarget - mixCurrent) * 0.005f + 1e-19f, -1.0f, 1.0f);
    return 1.0f - osc.nextFloat() * mixCurrent;
}

void CFXRingMod::tick(const float* inL, const float* inR, float* outL, float* outR) {
    const float g = stereoGain();
    *outL = *inL * g;
    *outR = *inR * g;
}

void CFXRingMod::process(const DSP::StereoBuffer& in, const DSP::StereoBuffer& out, unsigned count) {
    for (unsigned i = 0; i < count; ++i) tick(in.left + i, in.right + i, out.left + i, out.right + i);
}

void CFXRingMod::tickInPlace(float* left, float* right) { tick(left, right, left, right); }

void CFXRingMod::processInPlace(const DSP::StereoBuffer& io, unsigned count) { process(io, io, count); }

namespace {
bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }
}  // namespace

void CFXRingMod::processInPlace(float* const* io, unsigned count) {
    float* left = io[0];
    float* right = io[1];
    const int n = static_cast<int>(count);
    int i = 0;
    // Mix and gate glide per sample until a step leaves both where they are; from then on they
    // stay, and only the oscillator moves.
    for (; i < n; ++i) {
        const float nextMix = mixCurrent + ((mixTarget - mixCurrent) * 0.005f + 1e-19f);
        const float nextGate = gateCurrent + ((gateTarget - gateCurrent) * 0.00011f + 1e-19f);
        if (sameBits(nextMix, mixCurrent) && sameBits(nextGate, gateCurrent)) break;
        const float g = stereoGain();
        left[i] *= g;
        right[i] *= g;
    }
    const float m = std::clamp(mixCurrent * gateCurrent, 0.0f, 1.0f);
    const __m128 one = _mm_set1_ps(1.0f), half = _mm_set1_ps(0.5f), depth = _mm_set1_ps(m);
    while (i < n) {
        const int slice = std::min(kSlice, n - i);
        osc.fill(oscValues, slice);
        float* l = left + i;
        float* r = right + i;
        int k = 0;
        for (; k + 4 <= slice; k += 4) {
            const __m128 s = _mm_loadu_ps(oscValues + k);
            const __m128 g = _mm_sub_ps(one, _mm_mul_ps(_mm_mul_ps(_mm_add_ps(s, one), half), depth));
            _mm_storeu_ps(l + k, _mm_mul_ps(_mm_loadu_ps(l + k), g));
            _mm_storeu_ps(r + k, _mm_mul_ps(_mm_loadu_ps(r + k), g));
        }
        for (; k < slice; ++k) {
            const float g = 1.0f - (oscValues[k] + 1.0f) * 0.5f * m;
            l[k] *= g;
            r[k] *= g;
        }
        i += slice;
    }
}

void CFXRingMod::tick(const float* in, float* out) { *out = *in * monoGain(); }

void CFXRingMod::process(const float* in, float* out, unsigned count) {
    for (unsigned i = 0; i < count; ++i) tick(in + i, out + i);
}

void CFXRingMod::tickInPlace(float* sample) { tick(sample, sample); }

void CFXRingMod::processInPlace(float* io, unsigned count) { process(io, io, count); }

}  // namespace DSP::FX
