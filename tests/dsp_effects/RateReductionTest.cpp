// Quantising and holding are written out as the sample form in BlockForms; here the mappings of the
// two settings, resets and empty blocks.
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "dsp/effects/CRateReduction.h"
#include "support/AllocationCounter.h"

using DSP::FX::CRateReduction;

TEST(RateReduction, Mappings) {
    CRateReduction rr;
    for (auto [bits, levels, tolerance] : {std::tuple{1.0f, 16002.0f, 0.0f}, {0.0f, 2.0f, 0.0f}, {0.5f, 34.0f, 1.0f},
                                           {0.9f, 284.0f, 1.0f}, {0.99f, 2642.0f, 5.0f}}) {
        rr.setBits(bits);
        EXPECT_NEAR(rr.getLevels(), levels, tolerance > 0 ? tolerance : 1e-6f * levels) << bits;
    }
    for (auto [rate, step, tolerance] :
         {std::tuple{1.0f, 1.0f, 0.0f}, {0.0f, 0.01204f, 1e-5f}, {0.5f, 0.0754f, 1e-4f}}) {
        rr.setRate(rate);
        EXPECT_NEAR(rr.getPhaseStep(), step, tolerance > 0 ? tolerance : 1e-6f) << rate;
    }
}

TEST(RateReduction, ResetAndEmptyBlocks) {
    CRateReduction rr;
    rr.setRate(0);
    std::vector<float> left(100, 0.5f), right(100, 0.5f);
    DSP::StereoBuffer io;
    io.refer(left.data(), right.data(), 100);
    rr.process(io, 100);
    float l = 9, r = 9;
    io.refer(&l, &r, 1);
    rr.process(io, 0);
    EXPECT_EQ(l, 9);
    rr.reset();
    rr.setRate(1);
    rr.process(io, 1);
    EXPECT_EQ(l, 9);  // phase from 0 reaches 1 at once
    io.refer(left.data(), right.data(), 100);
    TestSupport::AllocationScope scope;
    rr.process(io, 100);
    EXPECT_EQ(scope.allocations(), 0u);
}
