#include <gtest/gtest.h>
#include <cfloat>
#include <limits>

#include "effect/EffectHarness.h"
#include "robustness/Setups.h"
#include "support/HeaviestSettings.h"

namespace {
struct Played {
    std::vector<float> left, right;
};

// Every stage on, in either filter mode, fed one second of signal in host blocks of `block`.
Played runWithSampleAt100(float value, int block, bool parallel, float inputGain = 1.0f) {
    EffectHarness harness(44100, block);
    TestSupport::applyHeaviestSettings(*harness.effect);
    // The limiter off: its own guard must not hide the others'.
    harness.setAll({{kFilterMode, parallel ? 1.0f : 0.0f}, {kInputGain, inputGain}, {kLimiterBypass, 0}});
    Played run;
    TestSupport::testSignal(run.left, run.right, 44100, 44100);
    run.left[100] = value;
    harness.run(run.left, run.right, block);
    return run;
}
}  // namespace

// A non-finite input sample passes as silence through every stage, at any host block size: the
// output is what the same input with a 0 there gives, to the bit.
TEST(BadAudio, ANonFiniteInputSampleActsAsSilence) {
    for (bool parallel : {false, true}) {
        for (int block : {1, 64, 512, 4096}) {
            const Played clean = runWithSampleAt100(0.0f, block, parallel);
            for (float bad : {std::numeric_limits<float>::quiet_NaN(), INFINITY, -INFINITY}) {
                const Played run = runWithSampleAt100(bad, block, parallel);
                ASSERT_EQ(run.left, clean.left) << bad << " block " << block << " parallel " << parallel;
                ASSERT_EQ(run.right, clean.right) << bad << " block " << block << " parallel " << parallel;
            }
        }
    }
}

// Full-scale floats times the input gain overflow inside the chain; the block that overflowed
// is silenced and the stages start afresh, so that sound returns at once.
TEST(BadAudio, AnOverflowInsideTheChainIsForgottenWithinAChunk) {
    for (int block : {1, 64, 512, 4096}) {
        const Played run = runWithSampleAt100(FLT_MAX, block, false, 2.0f);
        for (size_t i = 0; i < run.left.size(); ++i)
            ASSERT_TRUE(std::isfinite(run.left[i]) && std::isfinite(run.right[i])) << i << " block " << block;
        double late = 0;
        for (size_t i = 40000; i < run.left.size(); ++i) late += std::fabs(run.left[i]);
        EXPECT_GT(late, 100.0) << "block " << block;
    }
}
