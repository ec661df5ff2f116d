#include "effect/MixSmoother.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "dsp/memory/BlockScan.h"

namespace {
bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }

float step(float k, float target) {
    return static_cast<float>(static_cast<double>(k) + 1e-24 + (static_cast<double>(target) - k) * 0.005);
}
}  // namespace

void MixSmoother::apply(float* wetL, float* wetR, const float* otherL, const float* otherR, float& k, float target,
                        int n) {
    for (int at = 0; at < n; at += kCapacity) {
        const int count = std::min(kCapacity, n - at);
        const float* amount = amounts(k, target, count);
        DSP::Block::crossfade(wetL + at, otherL + at, count, amount);
        DSP::Block::crossfade(wetR + at, otherR + at, count, amount);
        k = amount[count - 1];
    }
}

// The amounts of the next n samples. The smoothing ends in a value it keeps or, through rounding,
// in two values it swaps between; once there (seen to the bit) the rest follows without steps.
const float* MixSmoother::amounts(float start, float target, int n) {
    if (cachedCount >= n && sameBits(start, cachedStart) && sameBits(target, cachedTarget)) return values;
    float k = start, before = start;
    for (int i = 0; i < n; ++i) {
        const float next = step(k, target);
        if (sameBits(next, k) || (i > 0 && sameBits(next, before))) {
            const float other = step(next, target);
            for (int j = i; j < n; ++j) values[j] = (j - i) % 2 == 0 ? next : other;
            break;
        }
        before = k;
        k = next;
        values[i] = k;
    }
    cachedStart = start;
    cachedTarget = target;
    cachedCount = n;
    return values;
}
