#include "dsp/filters/CBiquadCascade.h"
#include "dsp_filters/FilterTestHelpers.h"

using DSP::CBiquadCascade;

namespace {

void setSection(CBiquadCascade& c, int k, const FilterTest::Section& s) {
    c.b0[k] = s.b0, c.b1[k] = s.b1, c.b2[k] = s.b2, c.a1[k] = s.a1, c.a2[k] = s.a2;
}

CBiquadCascade twoStageLowPass() {
    CBiquadCascade c(4);
    c.setOrder(4);
    setSection(c, 0, FilterTest::butterworthSection(1000, 44100, 1.3065629648763766, false));
    setSection(c, 1, FilterTest::butterworthSection(1000, 44100, 0.5411961001461970, false));
    return c;
}

}  // namespace

TEST(BiquadCascade, CopyCoefficientsKeepsTheStateAndTakesStageCountOnlyWhenItFits) {
    CBiquadCascade big(8);
    big.setOrder(12);
    big.b0[5] = 0.5;
    CBiquadCascade small = twoStageLowPass();
    for (int n = 0; n < 50; ++n) small.tick(1.0);
    const double state = small.y1[1];
    small.copyCoefficients(big);
    EXPECT_EQ(small.stageCount(), 2);
    big.setOrder(6);
    big.a1[2] = -0.3;
    small.copyCoefficients(big);
    EXPECT_EQ(small.stageCount(), 3);
    EXPECT_EQ(small.a1[2], -0.3);
    EXPECT_EQ(small.b0[3], 1.0);  // beyond the copied stages nothing changed
    EXPECT_EQ(small.y1[1], state);
    small.copyCoefficients(small);
    EXPECT_EQ(small.stageCount(), 3);
    EXPECT_EQ(small.a1[2], -0.3);
}

TEST(BiquadCascade, CopyConstructionDuplicatesArrays) {
    CBiquadCascade a = twoStageLowPass();
    a.tick(1.0);
    CBiquadCascade b(a);
    EXPECT_NE(b.a1, a.a1);
    EXPECT_EQ(b.a1[1], a.a1[1]);
    EXPECT_EQ(b.y1[0], a.y1[0]);
    EXPECT_EQ(b.tick(0.5), a.tick(0.5));
    CBiquadCascade c(1);
    c = a;
    EXPECT_EQ(c.capacity(), 4);
    EXPECT_EQ(c.tick(0.25), a.tick(0.25));
    a.reset();
    EXPECT_EQ(a.x1[0], 0.0);
    EXPECT_EQ(a.y2[1], 0.0);
}
