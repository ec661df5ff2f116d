#include <set>

#include "dsp/filters/CSlopeFilter.h"
#include "dsp_filters/FilterTestHelpers.h"
#include "support/AllocationCounter.h"

using DSP::CBiquadCascade;
using DSP::CSlopeFilter;

namespace {

// The bin curve, evaluated in float as the cache does.
int expectedBin(float hertz) {
    const float u = hertz / 22050.0f;
    return static_cast<int>(21.0f * u / (20.0f * u + 1.0f) * 2756.0f);
}

void expectFirstSection(const CBiquadCascade& c, const FilterTest::Section& expected) {
    FilterTest::expectSection(FilterTest::firstSection(c), expected, 1e-9);
}

}  // namespace

TEST(SlopeFilterCache, CutoffIsFlooredAndClampedAndDesignedBelow0_4995TimesTheRate) {
    CSlopeFilter f(8);
    for (auto [set, kept] : {std::pair{5.0, 10.0}, {10.9, 10.0}, {1234.99, 1234.0}, {30000.0, 22000.0}}) {
        f.setCutoff(set);
        EXPECT_EQ(f.getCutoff(), kept) << set;
    }
    f.setSampleRate(96000);
    f.setCutoff(40000.0);
    EXPECT_EQ(f.getCutoff(), 22000.0);
    f.setCutoff(std::nan(""));
    EXPECT_EQ(f.getCutoff(), 22000.0);
    f.setSampleRate(32000);
    f.setCutoff(22000);
    expectFirstSection(f.lowPathA(), FilterTest::butterworthSection(15984, 32000, std::sqrt(0.5), false));
}

TEST(SlopeFilterCache, TypeSampleRateAndModeChangesClearTheCache) {
    CSlopeFilter f(8);
    f.setCutoff(20000);
    f.setCutoff(20050);
    f.setType(1);  // mode 0: the cascades stay low-pass
    CSlopeFilter reference(8);
    reference.setCutoff(20050);
    expectFirstSection(f.lowPathA(), FilterTest::firstSection(reference.lowPathA()));

    f.mode = 1;
    f.setSlope(24);
    expectFirstSection(f.lowPathA(), FilterTest::butterworthSection(20050, 44100, std::sqrt(0.5), true));

    const double before = f.lowPathA().a1[0];
    f.setSampleRate(0);
    f.setSampleRate(-1);
    EXPECT_EQ(f.lowPathA().a1[0], before);
    f.setSampleRate(96000);
    expectFirstSection(f.lowPathA(), FilterTest::butterworthSection(20050, 96000, std::sqrt(0.5), true));
}

TEST(SlopeFilterCache, SlopesGiveOrdersAndStageCounts) {
    CSlopeFilter f(8);
    for (auto [slope, stages] : {std::pair{12, 1}, {24, 1}, {48, 2}, {96, 4}}) {
        f.setSlope(slope);
        EXPECT_EQ(f.getOrder(), slope / 12);
        for (const CBiquadCascade* c : {&f.lowPathA(), &f.lowPathB(), &f.allPassStages()})
            EXPECT_EQ(c->stageCount(), stages) << slope;
    }
    EXPECT_EQ(CSlopeFilter(1).getOrder(), 1) << "the order starts at 2 where the filter allows it";
    f.setSlope(120);
    EXPECT_EQ(f.getOrder(), 8);
    f.setSlope(-24);
    EXPECT_EQ(f.getOrder(), 8);
    f.setSlope(12);
    EXPECT_EQ(f.lowPathA().a2[0], 0.0);
    EXPECT_EQ(f.lowPathA().b2[0], 0.0);
    EXPECT_EQ(f.allPassStages().b2[0], 0.0);
    EXPECT_NEAR(f.allPassStages().b0[0], f.lowPathA().a1[0], 1e-15);
}

TEST(SlopeFilterCache, SweepThroughTwoThousandNewBinsDoesNotAllocate) {
    CSlopeFilter f(8);
    f.setSlope(96);
    std::vector<float> block(96, 0.25f);
    std::vector<double> cutoffs;
    std::set<int> bins;
    for (double hz = 10; bins.size() < 2000 && hz <= 22000; hz += 1.0) {
        if (bins.insert(expectedBin(static_cast<float>(hz))).second) cutoffs.push_back(hz);
    }
    ASSERT_EQ(bins.size(), 2000u);
    TestSupport::AllocationScope scope;
    for (double hz : cutoffs) {
        f.setCutoff(hz);
        f.process(block.data(), block.data(), static_cast<unsigned>(block.size()));
    }
    f.setType(1);
    f.setSlope(48);
    f.setSampleRate(48000);
    f.setCutoff(333);
    EXPECT_EQ(scope.allocations(), 0u);
}

TEST(SlopeFilterResponse, SeriesPathFollowsTheSquaredButterworthMagnitude) {
    for (int slope : {12, 24, 48, 96}) {
        for (unsigned type : {0u, 1u}) {
            for (double cutoff : {100.0, 1000.0, 8000.0}) {
                CSlopeFilter f(8);
                f.mode = 2;
                f.setSampleRate(48000);
                f.setType(type);
                f.setSlope(slope);
                f.setCutoff(cutoff);
                std::vector<double> freqs, db;
                for (double ratio : {0.03, 0.3, 0.7, 1.0, 1.4, 2.9, 12.0})
                    if (ratio * cutoff < 23000) freqs.push_back(ratio * cutoff);
                db.resize(freqs.size());
                f.response(freqs.data(), db.data(), static_cast<int>(freqs.size()));
                for (std::size_t i = 0; i < freqs.size(); ++i) {
                    const double m = FilterTest::butterworthMagnitude(freqs[i], cutoff, 48000, slope / 12, type == 1);
                    EXPECT_NEAR(db[i], std::max(2 * FilterTest::toDb(m), -200.0), 1e-6) << slope << " " << freqs[i];
                }
                EXPECT_NEAR(db[3], -6.0206, 1e-3) << "at the cutoff";
            }
        }
    }
}
