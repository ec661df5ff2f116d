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

TEST(BiquadCascade, NewStagesPassTheSignalAndSetOrderIgnoresWhatDoesNotFit) {
    CBiquadCascade c(3);
    EXPECT_EQ(c.capacity(), 3);
    EXPECT_EQ(c.stageCount(), 3);
    for (double x : {0.5, -1.0, 0.25}) EXPECT_EQ(c.tick(x), x);
    EXPECT_EQ(CBiquadCascade(0).capacity(), 12);  // capacity below one becomes twelve
    EXPECT_EQ(CBiquadCascade(-4).stageCount(), 12);
    // Orders are stages of two: what does not fit or is negative leaves the count.
    for (auto [order, stages] : {std::pair{1, 1}, {5, 3}, {7, 3}, {0, 0}, {9, 0}, {-3, 0}}) {
        c.setOrder(order);
        EXPECT_EQ(c.stageCount(), stages) << order;
    }
    EXPECT_EQ(c.tick(0.75), 0.75);
}

TEST(BiquadCascade, TickIsDirectFormOneOfEveryStageInSeries) {
    CBiquadCascade c = twoStageLowPass();
    const auto s0 = FilterTest::butterworthSection(1000, 44100, 1.3065629648763766, false);
    const auto s1 = FilterTest::butterworthSection(1000, 44100, 0.5411961001461970, false);
    double u[3] = {}, v[3] = {}, w[3] = {};
    for (int n = 0; n < 200; ++n) {
        const double x = n == 0 ? 1.0 : std::sin(0.05 * n);
        u[0] = x;
        v[0] = s0.b0 * u[0] + s0.b1 * u[1] + s0.b2 * u[2] - s0.a1 * v[1] - s0.a2 * v[2];
        w[0] = s1.b0 * v[0] + s1.b1 * v[1] + s1.b2 * v[2] - s1.a1 * w[1] - s1.a2 * w[2];
        ASSERT_NEAR(c.tick(x), w[0], 1e-13) << n;
        for (double* a : {u, v, w}) a[2] = a[1], a[1] = a[0];
    }
}

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

TEST(BiquadCascade, ResponseMatchesIndependentEvaluationFlooredAtMinus200) {
    CBiquadCascade c = twoStageLowPass();
    std::vector<double> f = {0, 50, 1000, 4000, 20000}, db(f.size()), mag(f.size(), 2.0);
    c.response(f.data(), 44100, db.data(), static_cast<int>(f.size()), true, false);
    c.response(f.data(), 44100, mag.data(), static_cast<int>(f.size()), false, true);
    for (std::size_t i = 0; i < f.size(); ++i) {
        const double expected = FilterTest::butterworthMagnitude(f[i], 1000, 44100, 4, false);
        EXPECT_NEAR(db[i], std::max(FilterTest::toDb(expected), -200.0), 1e-8) << f[i];
        EXPECT_NEAR(mag[i], 2.0 * expected, 1e-11) << f[i];
    }
    EXPECT_NEAR(db[2], -3.0103, 1e-4);

    // The floor applies after accumulation: the zero at Nyquist is the log of 0.
    CBiquadCascade steep(4);
    steep.setOrder(8);
    const auto qualities = FilterTest::butterworthQualities(8);
    for (int k = 0; k < 4; ++k) setSection(steep, k, FilterTest::butterworthSection(100, 44100, qualities[k], false));
    f = {20000, 50, 22050};
    steep.response(f.data(), 44100, db.data(), 3, true, false);
    EXPECT_EQ(db[0], -200.0);
    EXPECT_EQ(db[2], -200.0);
    const double pass = db[1];
    steep.response(f.data(), 44100, db.data(), 3, true, true);
    EXPECT_EQ(db[0], -200.0);
    EXPECT_NEAR(db[1], 2 * pass, 1e-12);
    steep.response(f.data(), 44100, db.data(), 0, true, false);
    steep.response(nullptr, 44100, db.data(), 3, true, false);
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
