#include <gtest/gtest.h>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "effect/FusedFilterStage.h"

namespace {

// The objects of one filter stage, set up as the effect sets them up.
struct Stage {
    DSP::CSlopeFilter lowL{8}, lowR{8}, highL{8}, highR{8};
    DSP::CPeakBiquad resonanceLow, resonanceHigh;
    DSP::CBiquadCascade dryLowL{12}, dryLowR{12}, dryHighL{12}, dryHighR{12};
    bool parallel;

    Stage(int lowSlope, int highSlope, bool parallelMode) : parallel(parallelMode) {
        for (DSP::CSlopeFilter* f : {&lowL, &lowR, &highL, &highR}) {
            f->setSampleRate(48000);
            f->mode = parallel ? 1 : 0;
            f->setType(f == &highL || f == &highR ? 1 : 0);
            f->setSlope(f == &highL || f == &highR ? highSlope : lowSlope);
        }
        resonanceLow.set(6, 1000, 0.9f, 9, true);
        resonanceHigh.set(6, 300, 0.7f, 6, true);
    }

    void setCutoffs(double low, double high) {
        for (DSP::CSlopeFilter* f : {&lowL, &lowR}) f->setCutoff(low);
        for (DSP::CSlopeFilter* f : {&highL, &highR}) f->setCutoff(high);
        resonanceLow.setFrequency(static_cast<float>(low));
        resonanceHigh.setFrequency(static_cast<float>(high));
        for (DSP::CBiquadCascade* c : {&dryHighL, &dryHighR}) c->copyCoefficients(highL.allPassStages());
        for (DSP::CBiquadCascade* c : {&dryLowL, &dryLowR}) c->copyCoefficients(lowL.allPassStages());
    }

    FilterStageParts parts() {
        return {lowL, lowR, highL, highR, resonanceLow, resonanceHigh, dryLowL, dryLowR, dryHighL, dryHighR};
    }
};

uint32_t bits(float v) {
    uint32_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

// Noise with silent, tiny, subnormal and signed-zero stretches.
std::vector<float> signal(size_t n, uint32_t seed) {
    std::vector<float> x(n);
    for (size_t i = 0; i < n; ++i) {
        seed = seed * 1664525u + 1013904223u;
        float v = static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
        const size_t part = (i / 300) % 6;
        if (part == 2) v = 0.0f;
        if (part == 3) v *= 1e-30f;
        if (part == 4) v *= 1e-40f;
        if (part == 5 && i % 3 == 0) v = -0.0f;
        x[i] = v;
    }
    return x;
}

}  // namespace

TEST(FusedFilterStage, EverySlopeAndModeMatchesTheFiltersRunOneByOneToTheBit) {
    const int slopes[] = {12, 24, 48, 96};
    const int chunks[] = {96, 1, 7, 2, 300, 17, 96, 5, 64, 3};
    // The widest form this processor has (AVX where present) and the SSE2 form every x86-64 has.
    for (const auto& [lanes, parallel] : {std::pair{FusedLanes::widest, false}, std::pair{FusedLanes::widest, true},
                                          std::pair{FusedLanes::sse2, false}, std::pair{FusedLanes::sse2, true}}) {
        for (int lowSlope : slopes) {
            for (int highSlope : slopes) {
                auto fused = std::make_unique<Stage>(lowSlope, highSlope, parallel);
                auto plain = std::make_unique<Stage>(lowSlope, highSlope, parallel);
                const size_t total = 1800;
                std::vector<float> inL = signal(total, 1), inR = signal(total, 2);
                std::vector<float> rawL = signal(total, 3), rawR = signal(total, 4);
                std::vector<float> outA(2 * total), outB(2 * total), dryA(2 * total), dryB(2 * total);
                size_t at = 0;
                for (int round = 0; at < total; ++round) {
                    const int n = static_cast<int>(std::min<size_t>(static_cast<size_t>(chunks[round % 10]), total - at));
                    const double low = 300.0 + 1700.0 * (round % 5), high = 40.0 + 90.0 * (round % 7);
                    fused->setCutoffs(low, high);
                    plain->setCutoffs(low, high);
                    auto io = [&](std::vector<float>& out, std::vector<float>& dry) {
                        return FilterStageBuffers{inL.data() + at, inR.data() + at, rawL.data() + at, rawR.data() + at,
                                                  out.data() + at, out.data() + total + at, dry.data() + at,
                                                  dry.data() + total + at};
                    };
                    FilterStageParts parts = fused->parts(), plainParts = plain->parts();
                    ASSERT_TRUE(runFusedFilterStage(parts, parallel, io(outA, dryA), n, lanes));
                    runFilterStageOneByOne(plainParts, parallel, io(outB, dryB), n);  // filters its input in place
                    at += static_cast<size_t>(n);
                }
                SCOPED_TRACE(testing::Message() << "slopes " << lowSlope << "/" << highSlope << ", parallel " << parallel);
                for (size_t i = 0; i < 2 * total; ++i) {
                    ASSERT_EQ(bits(outA[i]), bits(outB[i])) << "wet " << i;
                    ASSERT_EQ(bits(dryA[i]), bits(dryB[i])) << "dry " << i;
                }
            }
        }
    }
}

TEST(FusedFilterStage, ShapesWithoutAFusedFormAreLeftToTheCaller) {
    auto stage = std::make_unique<Stage>(96, 48, false);
    stage->setCutoffs(1000, 100);
    stage->lowR.setSlope(48);  // the channels of a side differ
    std::vector<float> in(64, 0.25f), out(64, 7.0f), dry(64, 7.0f);
    FilterStageParts parts = stage->parts();
    const FilterStageBuffers io{in.data(), in.data(), in.data(), in.data(), out.data(), out.data(), dry.data(), dry.data()};
    EXPECT_FALSE(runFusedFilterStage(parts, false, io, 64));
    EXPECT_EQ(out[0], 7.0f);
    EXPECT_EQ(dry[63], 7.0f);

    auto series = std::make_unique<Stage>(48, 48, false);
    series->setCutoffs(1000, 100);
    FilterStageParts seriesParts = series->parts();
    EXPECT_FALSE(runFusedFilterStage(seriesParts, true, io, 64));  // high-pass not in its parallel form
}
