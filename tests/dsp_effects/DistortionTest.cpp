#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "dsp/effects/CDistortion.h"

using DSP::FX::CDistortion;

namespace {
std::vector<float> through(const CDistortion& d, std::vector<float> left) {
    std::vector<float> right = left;
    DSP::StereoBuffer io;
    io.refer(left.data(), right.data(), static_cast<int>(left.size()));
    d.process(io, static_cast<unsigned>(left.size()));
    return left;
}
}  // namespace

TEST(Distortion, DriveMapping) {
    CDistortion d;
    d.setDrive(0);
    EXPECT_FLOAT_EQ(d.getWet(), 0);
    EXPECT_FLOAT_EQ(d.getDry(), 1);
    EXPECT_FLOAT_EQ(d.getMakeup(), 1);
    d.setDrive(1);
    EXPECT_FLOAT_EQ(d.getWet(), 1);
    EXPECT_FLOAT_EQ(d.getDry(), 0);
    EXPECT_FLOAT_EQ(d.getMakeup(), 0.43f);
    d.setDrive(0.5f);
    const float w = 1.0f - 1.5f / 2.0f;
    EXPECT_FLOAT_EQ(d.getWet(), w);
    EXPECT_FLOAT_EQ(d.getMakeup(), 1.0f - 0.57f * (6.5f * w / (5.5f * w + 1.0f)));
}

TEST(Distortion, ZeroDriveIsAnIdentity) {
    CDistortion d;
    d.setDrive(0);
    const std::vector<float> in = {0.0f, 0.1f, -0.5f, 1.0f, -3.0f, 1e-30f, 0.123456f};
    EXPECT_EQ(through(d, in), in);
}

TEST(Distortion, OddBoundedSigmoid) {
    CDistortion d;
    d.setDrive(1);
    const std::vector<float> out = through(d, {0.001f, -0.001f, 0.5f, -0.5f, 100.0f, 1e30f, -1e30f});
    EXPECT_NEAR(out[0], 0.43 * 0.001 * 10.001 / (1.000001 + 0.009), 1e-8);  // slope near 10 at the origin
    EXPECT_FLOAT_EQ(out[1], -out[0]);
    EXPECT_FLOAT_EQ(out[3], -out[2]);
    EXPECT_LT(out[4], 0.43f * 1.1f);
    EXPECT_NEAR(out[5], 0.43f, 1e-6);  // tends to wet times make-up, finite for any input
    EXPECT_NEAR(out[6], -0.43f, 1e-6);
}

TEST(Distortion, CountZeroWritesNothing) {
    CDistortion d;
    d.setDrive(1);
    float l = 0.5f, r = 0.5f;
    DSP::StereoBuffer io;
    io.refer(&l, &r, 1);
    d.process(io, 0);
    EXPECT_EQ(l, 0.5f);
}
