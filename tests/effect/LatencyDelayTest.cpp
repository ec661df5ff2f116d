#include <gtest/gtest.h>

#include <vector>

#include "effect/LatencyDelay.h"

namespace {
// Pushes a ramp through the delay in chunks of the given sizes and checks every sample against
// a plain reference delay.
void expectExactDelay(int length, const std::vector<int>& chunks) {
    Ondra::CNChannelBuffer ring, scratch;
    ring.resize(length, 2);
    scratch.resize(6000, 1);
    std::vector<float> left, right;
    for (int c : chunks)
        for (int i = 0; i < c; ++i) {
            left.push_back(static_cast<float>(left.size() + 1));
            right.push_back(-static_cast<float>(right.size() + 1));
        }
    std::vector<float> inputL = left, inputR = right;
    size_t at = 0;
    for (int c : chunks) {
        delayInPlace(ring, scratch, left.data() + at, right.data() + at, c);
        at += static_cast<size_t>(c);
    }
    for (size_t i = 0; i < left.size(); ++i) {
        const float expectedL = i < static_cast<size_t>(length) ? 0.0f : inputL[i - static_cast<size_t>(length)];
        const float expectedR = i < static_cast<size_t>(length) ? 0.0f : inputR[i - static_cast<size_t>(length)];
        ASSERT_EQ(left[i], expectedL) << "sample " << i;
        ASSERT_EQ(right[i], expectedR) << "sample " << i;
    }
}
}  // namespace

TEST(LatencyDelay, ShortAndLongChunksKeepTheDelayExact) {
    expectExactDelay(221, {1, 1, 5000, 88, 1, 220, 221, 222, 5000});
    expectExactDelay(481, {96, 5000, 1, 480, 481, 482});
}

TEST(LatencyDelay, ZeroLengthAndZeroSamplesDoNothing) {
    Ondra::CNChannelBuffer ring, scratch;
    scratch.resize(16, 1);
    float left[4] = {1, 2, 3, 4}, right[4] = {5, 6, 7, 8};
    delayInPlace(ring, scratch, left, right, 4);
    EXPECT_EQ(left[3], 4);
    ring.resize(2, 2);
    delayInPlace(ring, scratch, left, right, 0);
    EXPECT_EQ(right[0], 5);
}
