#include "dsp/filters/ButterworthDesign.h"
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
