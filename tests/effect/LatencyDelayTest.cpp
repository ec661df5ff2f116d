#include <gtest/gtest.h>

#include <vector>

#include "effect/LatencyDelay.h"

// A ramp through the delay in chunks of the given sizes, every sample against a plain reference delay.
TEST(LatencyDelay, ShortAndLongChunksKeepTheDelayExact) {
    for (const auto& [length, chunks] : {std::pair{221, std::vector<int>{1, 1, 5000, 88, 1, 220, 221, 222, 5000}},
                                         {481, std::vector<int>{96, 5000, 1, 480, 481, 482}}}) {
        Ondra::CNChannelBuffer ring, scratch;
        ring.resize(length, 2);
        scratch.resize(6000, 1);
        std::vector<float> left, right;
        for (int c : chunks)
            for (int i = 0; i < c; ++i) {
                left.push_back(static_cast<float>(left.size() + 1));
                right.push_back(-static_cast<float>(right.size() + 1));
            }
        size_t at = 0;
        for (int c : chunks) {
            delayInPlace(ring, scratch, left.data() + at, right.data() + at, c);
            at += static_cast<size_t>(c);
        }
        for (size_t i = 0; i < left.size(); ++i) {
            const float expected = i < static_cast<size_t>(length) ? 0.0f : static_cast<float>(i + 1 - length);
            ASSERT_EQ(left[i], expected) << "sample " << i;
            ASSERT_EQ(right[i], -expected) << "sample " << i;
        }
    }
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
