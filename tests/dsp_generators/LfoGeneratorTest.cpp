#include <gtest/gtest.h>
#include <cmath>
#include <vector>

#include "dsp/generators/CLfoGenerator.h"
#include "support/AllocationCounter.h"

using DSP::CLfoGenerator;

namespace {
CLfoGenerator make(int shape, double hertz, double rate = 44100) {
    CLfoGenerator lfo;
    lfo.setSampleRate(rate);
    lfo.setShape(shape);
    lfo.setRate(hertz);
    lfo.restart();
    return lfo;
}

std::vector<double> ticks(CLfoGenerator& lfo, int n) {
    std::vector<double> out(static_cast<size_t>(n));
    for (double& v : out) v = lfo.tick();
    return out;
}
}  // namespace

TEST(LfoGenerator, SineStartsAtZeroRising) {
    CLfoGenerator lfo = make(CLfoGenerator::kSine, 1.0);
    EXPECT_NEAR(lfo.tick(), std::sin(2 * M_PI / 44100), 1e-15);
    // A quarter cycle later it is at the top.
    CLfoGenerator quarter = make(CLfoGenerator::kSine, 100.0, 44000);
    const std::vector<double> v = ticks(quarter, 110);
    EXPECT_NEAR(v[109], 1.0, 1e-9);
    EXPECT_NEAR(v[219 - 110 - 1], std::sin(2 * M_PI * 100 * 109 / 44000.0), 1e-9);
}

// Saw and square wrap at one or more, the triangle reflects even for large steps.
TEST(LfoGenerator, SawSquareAndTriangleSteps) {
    const struct {
        int shape;
        double hertz;
        std::vector<double> values;
    } rows[] = {
        {CLfoGenerator::kSaw, 11025.0, {0.5, 0.0, -0.5, -1.0, 0.5}},  // step 0.25: phase exactly 1 does not wrap yet
        {CLfoGenerator::kSquare, 11025.0, {1, -1, -1, 1, 1}},         // 0.25 0.5 0.75 1->0 0.25
        {CLfoGenerator::kTriangle, 5512.5, {0.5, 1.0, 0.5, 0.0, -0.5, -1.0}},  // step 0.5
    };
    for (const auto& row : rows) {
        CLfoGenerator lfo = make(row.shape, row.hertz);
        EXPECT_EQ(ticks(lfo, static_cast<int>(row.values.size())), row.values) << row.shape;
    }
    CLfoGenerator fast = make(CLfoGenerator::kTriangle, 27562.5);  // step 2.5
    for (double x : ticks(fast, 50)) EXPECT_TRUE(x >= -1.0 && x <= 1.0);
}

TEST(LfoGenerator, RandomShapesRepeatAfterConstructionButNotAfterRestart) {
    CLfoGenerator a = make(CLfoGenerator::kRandomSteps, 4410.0);
    CLfoGenerator b = make(CLfoGenerator::kRandomSteps, 4410.0);
    const std::vector<double> first = ticks(a, 200);
    EXPECT_EQ(first, ticks(b, 200));
    a.restart();
    EXPECT_NE(ticks(a, 200), first);
    // The first value: seed 0xcac6701f >> 16 = 51910, mod 32000 = 19910.
    CLfoGenerator c = make(CLfoGenerator::kRandomSteps, 11025.0);  // step 1: a draw every tick
    EXPECT_DOUBLE_EQ(c.tick(), (19910.0 - 16000.0) / 16000.0);
    for (double x : ticks(c, 1000)) {
        EXPECT_GE(x, -1.0);
        EXPECT_LT(x, 1.0);
    }
}

TEST(LfoGenerator, RandomRampsAreStraightLinesBetweenDraws) {
    CLfoGenerator lfo = make(CLfoGenerator::kRandomRamps, 441.0);  // step 0.04: 25 ticks per draw
    const std::vector<double> v = ticks(lfo, 100);
    for (size_t i = 30; i < 45; ++i) EXPECT_NEAR(v[i + 1] - v[i], v[i + 2] - v[i + 1], 1e-12);
}

TEST(LfoGenerator, SineShapesStayInRange) {
    for (int shape : {CLfoGenerator::kSineOctave, CLfoGenerator::kHalfDampedSine}) {
        CLfoGenerator lfo = make(shape, 3.0);
        const std::vector<double> v = ticks(lfo, 44100);
        const auto [lowest, highest] = std::minmax_element(v.begin(), v.end());
        EXPECT_LE(*highest, 1.0 + 1e-9);
        EXPECT_GE(*lowest, -1.0 - 1e-9);
        if (shape == CLfoGenerator::kHalfDampedSine) {
            EXPECT_NEAR(*lowest, 0.0, 1e-9);
        }
    }
}

TEST(LfoGenerator, TempoToHertzTable) {
    const double b = 120.0 / 60.0;
    const std::pair<int, double> rows[] = {{1, b / 16},       {6, b},         {8, 4 * b},  {9, 1.5 * b / 16},
                                           {16, 6 * b},       {17, (2.0 / 3.0) * b / 16}, {24, (8.0 / 3.0) * b},
                                           {0, 1.0},          {25, 1.0}};
    for (auto [index, hertz] : rows) EXPECT_DOUBLE_EQ(CLfoGenerator::tempoToHertz(index, 120), hertz) << index;
}

TEST(LfoGenerator, SyncKeepsTheLastSyncedFrequencyUntilTheNextRate) {
    CLfoGenerator lfo = make(CLfoGenerator::kSine, 3.0);
    lfo.setTempo(90);
    lfo.setSyncIndex(6);
    EXPECT_DOUBLE_EQ(lfo.getFrequency(), 1.5);
    lfo.setTempo(120);
    EXPECT_DOUBLE_EQ(lfo.getFrequency(), 2.0);
    lfo.setSyncIndex(0);
    EXPECT_DOUBLE_EQ(lfo.getFrequency(), 2.0);
    lfo.setTempo(60);
    EXPECT_DOUBLE_EQ(lfo.getFrequency(), 2.0);
    lfo.setRate(0.5);
    EXPECT_DOUBLE_EQ(lfo.getFrequency(), 0.5);
}

TEST(LfoGenerator, ShiftMovesThePhase) {
    CLfoGenerator saw = make(CLfoGenerator::kSaw, 441.0);  // step 0.01
    saw.setShift(0.5);
    EXPECT_NEAR(saw.tick(), 1.0 - 2.0 * 0.51, 1e-12);
    CLfoGenerator square = make(CLfoGenerator::kSquare, 441.0);
    square.setShift(0.6);
    EXPECT_EQ(square.tick(), -1.0);
    CLfoGenerator triangle = make(CLfoGenerator::kTriangle, 441.0);  // step 0.04
    triangle.setShift(0.5);
    EXPECT_NEAR(triangle.tick(), -0.04, 1e-12);  // from 0 going down
    CLfoGenerator sine = make(CLfoGenerator::kSine, 1.0);
    sine.setShift(0.25);
    EXPECT_NEAR(sine.tick(), 1.0, 1e-3);  // a quarter cycle ahead: near the top
}

TEST(LfoGenerator, UnknownShapeIsSilentAndTickAllocatesNothing) {
    CLfoGenerator lfo = make(9, 5.0);
    EXPECT_EQ(lfo.tick(), 0.0);
    CLfoGenerator sine = make(CLfoGenerator::kRandomRamps, 5.0);
    TestSupport::AllocationScope scope;
    double sum = 0;
    for (int i = 0; i < 10000; ++i) sum += sine.tick();
    EXPECT_EQ(scope.allocations(), 0u);
    EXPECT_TRUE(std::isfinite(sum));
}
