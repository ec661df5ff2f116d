// The shaping itself is written out as the sample form in BlockForms; here its drive mapping.
#include <gtest/gtest.h>

#include "dsp/effects/CDistortion.h"

using DSP::FX::CDistortion;

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
