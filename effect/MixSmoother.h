#pragma once

// The dry/wet crossfade with its per-sample smoothed amount: k = k + 1e-24 + (target - k) * 0.005
// in double precision, stored as float, then wet += (other - wet) * k.
//
// The amounts of a block depend only on the amount before it and the target. A settled mix starts
// every chunk from the same amount (the effect keeps 1 - k, which rounds the tiny k away), so the
// sequence of the last block is kept and reused while both stay the same to the bit.
class MixSmoother {
public:
    // Crossfades `wet` toward `other` in place; `k` is the amount before the block and after it.
    void apply(float* wetL, float* wetR, const float* otherL, const float* otherR, float& k, float target, int n);

private:
    static constexpr int kCapacity = 512;
    const float* amounts(float start, float target, int n);

    float values[kCapacity] = {};
    float cachedStart = 0, cachedTarget = 0;
    int cachedCount = 0;
};
