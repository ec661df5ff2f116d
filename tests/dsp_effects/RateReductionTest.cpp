#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "dsp/effects/CRateReduction.h"
#include "support/AllocationCounter.h"

using DSP::FX::CRateReduction;

namespace {
struct Stereo {
    std::vector<float> left, right;
};

Stereo through(CRateReduction& rr, Stereo s) {
    DSP::StereoBuffer io;
    io.refer(s.left.data(), s.right.data(), static_cast<int>(s.left.size()));
    rr.process(io, static_cast<unsigned>(s.left.size()));
    return s;
}
}  // namespace

TEST(RateReduction, Mappings) {
    CRateReduction rr;
    rr.setBits(1);
    EXPECT_FLOAT_EQ(rr.getLevels(), 16002);
    rr.setBits(0);
    EXPECT_FLOAT_EQ(rr.getLevels(), 2);
    rr.setBits(0.5f);
    EXPECT_NEAR(rr.getLevels(), 34, 1);
    rr.setBits(0.9f);
    EXPECT_NEAR(rr.getLevels(), 284, 1);
    rr.setBits(0.99f);
    EXPECT_NEAR(rr.getLevels(), 2642, 5);
    rr.setRate(1);
    EXPECT_FLOAT_EQ(rr.getPhaseStep(), 1.0f);
    rr.setRate(0);
    EXPECT_NEAR(rr.getPhaseStep(), 0.01204f, 1e-5);
    rr.setRate(0.5f);
    EXPECT_NEAR(rr.getPhaseStep(), 0.0754f, 1e-4);
}

TEST(RateReduction, FullRateIsAPassThroughBehindTheFirstSample) {
    CRateReduction rr;
    rr.setBits(1);
    rr.setRate(1);
    Stereo in{{0.1f, -0.2f, 0.3f, 0.4f}, {1.0f, 2.0f, 3.0f, 4.0f}};
    const Stereo out = through(rr, in);
    EXPECT_EQ(out.left, in.left);
    EXPECT_EQ(out.right, in.right);
}

TEST(RateReduction, HoldsBetweenUpdates) {
    CRateReduction rr;
    rr.setRate(0);  // a new value about every 83 samples
    std::vector<float> ramp(400);
    for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<float>(i);
    const Stereo out = through(rr, {ramp, ramp});
    int changes = 0;
    for (size_t i = 1; i < out.left.size(); ++i) changes += out.left[i] != out.left[i - 1];
    EXPECT_GE(changes, 3);
    EXPECT_LE(changes, 5);
}

TEST(RateReduction, QuantisationIsSymmetric) {
    CRateReduction rr;
    rr.setRate(1);
    rr.setBits(0);  // two levels: one step is 0.5
    const Stereo out = through(rr, {{0.3f, -0.3f, 0.7f, -0.7f}, {0.49f, -0.49f, 1.0f, -1.0f}});
    EXPECT_EQ(out.left, (std::vector<float>{0.0f, 0.0f, 0.5f, -0.5f}));
    EXPECT_EQ(out.right, (std::vector<float>{0.0f, 0.0f, 1.0f, -1.0f}));
}

TEST(RateReduction, ResetAndEmptyBlocks) {
    CRateReduction rr;
    rr.setRate(0);
    Stereo s = through(rr, {std::vector<float>(100, 0.5f), std::vector<float>(100, 0.5f)});
    DSP::StereoBuffer io;
    float l = 9, r = 9;
    io.refer(&l, &r, 1);
    rr.process(io, 0);
    EXPECT_EQ(l, 9);
    rr.reset();
    rr.setRate(1);
    rr.process(io, 1);
    EXPECT_EQ(l, 9);  // phase from 0 reaches 1 at once
    io.refer(s.left.data(), s.right.data(), 100);
    TestSupport::AllocationScope scope;
    rr.process(io, 100);
    EXPECT_EQ(scope.allocations(), 0u);
}
