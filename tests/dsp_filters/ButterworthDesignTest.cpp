#include "dsp/filters/ButterworthDesign.h"
#include "dsp/filters/CComplex.h"
#include "dsp_filters/FilterTestHelpers.h"

using namespace DSP;
using FilterTest::expectSection;
using FilterTest::Section;

namespace {

struct Designed {
    double b0[12] = {}, b1[12] = {}, b2[12] = {}, a1[12] = {}, a2[12] = {};
    Section section(int k) const { return {b0[k], b1[k], b2[k], a1[k], a2[k]}; }
};

Designed designFor(double frequency, double sampleRate, int order, unsigned type) {
    CFilterDesignSpec settings;
    settings.setSampleRate(sampleRate);
    settings.setFrequency(frequency);
    settings.setOrder(order);
    settings.setType(type);
    Designed d;
    design(settings, d.b0, d.b1, d.b2, d.a1, d.a2);
    return d;
}

}  // namespace

TEST(ButterworthDesign, FirstAndSecondOrderLowPassAt1kHzMatchPublishedCoefficients) {
    const struct {
        int order;
        Section published, reference;
    } rows[] = {
        {2, {0.0046039985, 0.0092079970, 0.0046039985, -1.7990964095, 0.8175124034},
         FilterTest::butterworthSection(1000, 44100, std::sqrt(0.5), false)},
        {1, {0.0666057803, 0.0666057803, 0.0, -0.8667884395, 0.0}, FilterTest::butterworthFirstOrder(1000, 44100, false)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.order);
        const Designed d = designFor(1000, 44100, row.order, CFilterDesignSpec::kLowPass);
        expectSection(d.section(0), row.published, 1e-8);  // zeros stay exactly zero
        expectSection(d.section(0), row.reference, 1e-11);
    }
}

TEST(ButterworthDesign, EveryOrderFactorsIntoStagesOfDescendingQualityForBothTypes) {
    for (int order : {1, 2, 3, 4, 5, 6, 8}) {
        for (bool highPass : {false, true}) {
            const Designed d = designFor(2500, 48000, order,
                                         highPass ? CFilterDesignSpec::kHighPass : CFilterDesignSpec::kLowPass);
            const auto qualities = FilterTest::butterworthQualities(order);
            for (std::size_t k = 0; k < qualities.size(); ++k)
                expectSection(d.section(static_cast<int>(k)),
                              FilterTest::butterworthSection(2500, 48000, qualities[k], highPass), 1e-9);
            if (order % 2 == 1)
                expectSection(d.section(order / 2), FilterTest::butterworthFirstOrder(2500, 48000, highPass), 1e-9);
        }
    }
}

TEST(ButterworthDesign, FrequencyAboveLimitIsDesignedAt0_4995TimesSampleRate) {
    const Designed d = designFor(22000, 32000, 2, CFilterDesignSpec::kLowPass);
    expectSection(d.section(0), FilterTest::butterworthSection(15984, 32000, std::sqrt(0.5), false), 1e-9);
    const Designed exact = designFor(15984, 32000, 2, CFilterDesignSpec::kLowPass);
    EXPECT_EQ(d.a1[0], exact.a1[0]);
    EXPECT_EQ(d.b0[0], exact.b0[0]);
}

TEST(FilterDesignSpec, SetOperationsIgnoreOutOfRangeValues) {
    CFilterDesignSpec settings;
    settings.setSampleRate(0);
    settings.setSampleRate(-48000);
    settings.setOrder(0);
    settings.setOrder(-3);
    settings.setType(8);
    EXPECT_EQ(settings.sampleRate, 44100.0);
    EXPECT_EQ(settings.order, 2);
    EXPECT_EQ(settings.type, CFilterDesignSpec::kLowPass);
    EXPECT_EQ(settings.frequency, 1000.0);
    EXPECT_EQ(settings.family, CFilterDesignSpec::kButterworth);
}

TEST(Complex, QuotientAndExponentialAreWrittenOutCorrectly) {
    const CComplex q = CComplex(1, 2) / CComplex(3, -4);
    EXPECT_NEAR(q.re, -0.2, 1e-15);
    EXPECT_NEAR(q.im, 0.4, 1e-15);
    const CComplex e = CComplex(0, FilterTest::kPi / 2).exp();
    EXPECT_NEAR(e.re, 0.0, 1e-15);
    EXPECT_NEAR(e.im, 1.0, 1e-15);
    EXPECT_DOUBLE_EQ(CComplex(3, 4).abs(), 5.0);
}
