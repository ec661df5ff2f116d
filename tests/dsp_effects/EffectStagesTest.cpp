// The distortion's shaping and the rate reducer's quantising and holding are written out as the sample
// form in BlockForms; here the mappings of their settings.
#include <gtest/gtest.h>
#include <tuple>

#include "dsp/effects/CDistortion.h"
#include "dsp/effects/CRateReduction.h"

using DSP::FX::CDistortion;
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

TEST(Distortion, DriveMappingAndEmptyBlocks) {
    CDistortion d;
    const float w = 1.0f - 1.5f / 2.0f;
    const struct {
        float drive, wet, dry, makeup;
    } rows[] = {{0, 0, 1, 1}, {1, 1, 0, 0.43f}, {0.5f, w, 1 - w, 1.0f - 0.57f * (6.5f * w / (5.5f * w + 1.0f))}};
    for (const auto& row : rows) {
        d.setDrive(row.drive);
        EXPECT_FLOAT_EQ(d.getWet(), row.wet) << row.drive;
        EXPECT_FLOAT_EQ(d.getDry(), row.dry) << row.drive;
        EXPECT_FLOAT_EQ(d.getMakeup(), row.makeup) << row.drive;
    }
    float l = 0.5f, r = 0.5f;
    DSP::StereoBuffer io;
    io.refer(&l, &r, 1);
    d.process(io, 0);
    EXPECT_EQ(l, 0.5f);
}
