#pragma once
// Checks that a stage's block form gives, to the bit, what its per-sample form gives.
#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <vector>

namespace BlockForm {

template <typename T>
bool same(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Fixed-seed noise from -amplitude to amplitude.
inline std::vector<float> noise(size_t n, uint32_t seed, float amplitude = 1.0f) {
    std::vector<float> x(n);
    for (float& v : x) {
        seed = seed * 1664525u + 1013904223u;
        v = amplitude * (static_cast<float>(seed >> 8) / 8388608.0f - 1.0f);
    }
    return x;
}

// Noise over many magnitudes, with zeros of both signs, subnormals and values far above 1.
inline std::vector<float> awkward(size_t n, uint32_t seed) {
    std::vector<float> x = noise(n, seed);
    const float scales[] = {1.0f, 1e-3f, 1e-38f, 1e-42f, 40.0f, 3e7f, 1e30f};
    for (size_t i = 0; i < n; ++i) x[i] *= scales[(i * 5 + seed) % 7];
    for (size_t i = 0; i < n; i += 89) x[i] = -0.0f;
    for (size_t i = 0; i < n; i += 97) x[i] = 0.0f;
    return x;
}

// Block sizes that cross every boundary of the short-vector loops.
inline constexpr int kBlocks[] = {96, 1, 7, 200, 33, 128, 129, 2, 64, 300};

// One block of a case, in place: settings may change first by `round`; then the block runs as one
// block (asBlock) or sample by sample through a second, identical object.
using Step = std::function<void(int round, bool asBlock, float* left, float* right, int n)>;

// Runs both forms over the same input, cut by kBlocks, and compares every sample (NaN matches NaN)
// and, after every block, what `sameState` compares of the two objects.
inline ::testing::AssertionResult sameAsSampleForm(const Step& step, std::vector<float> left, std::vector<float> right,
                                                   const std::function<bool()>& sameState) {
    std::vector<float> sampleL = left, sampleR = right;
    size_t at = 0;
    for (int round = 0; at < left.size(); ++round) {
        const int n = static_cast<int>(std::min<size_t>(static_cast<size_t>(kBlocks[round % 10]), left.size() - at));
        step(round, true, left.data() + at, right.data() + at, n);
        step(round, false, sampleL.data() + at, sampleR.data() + at, n);
        at += static_cast<size_t>(n);
        if (!sameState()) return ::testing::AssertionFailure() << "state after block " << round;
    }
    for (size_t i = 0; i < left.size(); ++i) {
        for (auto [a, b] : {std::pair{left[i], sampleL[i]}, std::pair{right[i], sampleR[i]}}) {
            if (!same(a, b) && !(std::isnan(a) && std::isnan(b)))
                return ::testing::AssertionFailure() << "sample " << i << ": " << a << " against " << b;
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace BlockForm
