#include <gtest/gtest.h>

#include <vector>

#include "EffectHarness.h"
#include "effect/ModulationMath.h"

class ControlLayer : public ::testing::Test {
protected:
    Ondra::IPluginParameter* row(int id) { return harness.effect->getParameter(id); }
    const ModulationControl& control() { return harness.effect->modulation(); }
    void runChunks(int chunks, float level) {
        std::vector<float> l(static_cast<size_t>(88 * chunks), level), r = l;
        harness.run(l, r, 88);
    }
    // Runs a playing transport at 120 BPM in blocks of the given sizes from `start`, and collects the
    // host positions at which the LFO restarted.
    std::vector<double> restartsOver(double start, const std::vector<int>& blocks) {
        std::vector<double> restarts;
        std::vector<float> l(8192, 0.1f), r(8192, 0.1f);
        harness.playing = true;
        harness.position = start;
        for (int n : blocks) {
            const double before = control().lastLfoRestart();
            harness.runBlock(l.data(), r.data(), n);
            if (control().lastLfoRestart() != before) restarts.push_back(control().lastLfoRestart());
        }
        return restarts;
    }
    EffectHarness harness;
};

TEST_F(ControlLayer, FilterLinkMovesTheOtherCutoffOneWay) {
    row(kLowPassFreq)->setValue(4000);
    row(kHighPassFreq)->setValue(1000);
    row(kLinkFilters)->setValue(1);
    row(kLowPassFreq)->setValue(8000);
    EXPECT_FLOAT_EQ(row(kHighPassFreq)->getValue(), 2000);
    EXPECT_FLOAT_EQ(row(kLowPassFreq)->getValue(), 8000);
    row(kHighPassFreq)->setValue(500);
    EXPECT_FLOAT_EQ(row(kLowPassFreq)->getValue(), 2000);
    row(kLinkFilters)->setValue(0);
    row(kLowPassFreq)->setValue(3000);
    EXPECT_FLOAT_EQ(row(kHighPassFreq)->getValue(), 500);
}

TEST_F(ControlLayer, FilterModeExchangesAndRestoresTheFilters) {
    const float lowSet[4] = {5000, 0.3f, 0.8f, 3}, highSet[4] = {200, 0.1f, 1.2f, 1};
    auto expectFilters = [&](const float* low, const float* high) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_FLOAT_EQ(row(kLowPassFreq + i)->getValue(), low[i]) << i;
            EXPECT_FLOAT_EQ(row(kHighPassFreq + i)->getValue(), high[i]) << i;
        }
    };
    for (int i = 0; i < 4; ++i) {
        row(kLowPassFreq + i)->setValue(lowSet[i]);
        row(kHighPassFreq + i)->setValue(highSet[i]);
    }
    row(kFilterMode)->setValue(1);
    expectFilters(highSet, lowSet);
    row(kFilterMode)->setValue(1);  // unchanged mode: no exchange
    expectFilters(highSet, lowSet);
    row(kFilterMode)->setValue(0);
    expectFilters(lowSet, highSet);
}

TEST_F(ControlLayer, RateLinkAmountSignIsTheFlip) {
    row(kRateLpLink)->setValue(1);
    row(kLowPassFreq)->setValue(2000);
    const DSP::FX::CRateReduction& reducer = harness.effect->signalChain().rateReducer;
    auto setting = [&] { return std::pair{reducer.getLevels(), reducer.getPhaseStep()}; };
    row(kRateLinkAmount)->setValue(-0.5f);
    const auto negative = setting();
    row(kRateLinkAmount)->setValue(0.5f);
    EXPECT_NE(setting(), negative);
    row(kRateFlip)->setValue(1);
    EXPECT_EQ(setting(), negative);
}

TEST_F(ControlLayer, EnvelopeOfAFullScaleChunk) {
    row(kMeasurePoint)->setValue(100);  // band off
    row(kEnvBoost)->setValue(0);
    row(kLpAttack)->setValue(1);  // coefficient 1: the follower jumps to the level
    runChunks(1, 1.0f);
    EXPECT_NEAR(control().low().envOut, 0.6667f, 1e-4);
    float expected = control().low().envOut;
    for (int i = 0; i < 5; ++i) {
        runChunks(1, 0.0f);
        expected += (0.0f - expected) * control().low().envRelease + 1e-19f;
        EXPECT_NEAR(control().low().envOut, expected, 1e-6);
    }
}

TEST_F(ControlLayer, CutoffGlidesAndStopsWithinOneHertz) {
    row(kLowPassSlope)->setValue(4);
    row(kFilterInertia)->setValue(1);
    runChunks(2, 0.0f);
    row(kLowPassFreq)->setValue(1000);
    const float previous = control().low().cutoff;
    runChunks(1, 0.0f);
    EXPECT_LE(control().low().cutoff, previous);
    EXPECT_GE(control().low().cutoff, previous / 1.0405f * 0.9999f);
    runChunks(400, 0.0f);
    EXPECT_NEAR(control().low().cutoff, 1000, 1.0f);
    const float settled = control().low().cutoff;
    row(kLowPassFreq)->setValue(settled + 0.5f);
    runChunks(3, 0.0f);
    EXPECT_EQ(control().low().cutoff, settled);
    // Between the ends of the inertia row the step follows the row's curve.
    row(kFilterInertia)->setValue(0.5f);
    row(kLowPassFreq)->setValue(10000);
    runChunks(1, 0.0f);
    EXPECT_EQ(control().low().cutoff, ModulationMath::glideStep(settled, control().low().modulated, 96,
                                                                 ModulationMath::inertiaFromRow(0.5f)));
}

TEST_F(ControlLayer, TempoZeroWhilePlayingKeepsRunning) {
    row(kLfoSync)->setValue(1);
    row(kLpStrengthLfo)->setValue(1);
    std::vector<float> l(4096, 0.25f), r = l;
    harness.playing = true;
    harness.tempo = 0;
    harness.run(l, r, 4096);
    for (float v : l) ASSERT_TRUE(std::isfinite(v));
    EXPECT_TRUE(std::isfinite(control().lfoMean()));
}

TEST_F(ControlLayer, SyncRestartsOnTheHostsPeriodAcrossBlockSizes) {
    row(kLfoSync)->setValue(1);
    row(kLfoRate)->setNormalized(5.0f / 23.0f);  // 1/4: 22050 samples at 120 BPM
    EXPECT_EQ(control().lfoSyncIndex(), 6);
    std::vector<int> blocks;
    for (int i = 0; i < 400; ++i) blocks.push_back(i % 3 == 0 ? 37 : (i % 3 == 1 ? 512 : 1000));
    const std::vector<double> restarts = restartsOver(0, blocks);
    ASSERT_GE(restarts.size(), 8u);
    for (double at : restarts) EXPECT_EQ(std::fmod(at, 22050.0), 0.0) << at;
    // A jump of the play position re-locks to the next period boundary after it.
    const std::vector<double> afterJump = restartsOver(1000123, std::vector<int>(100, 480));
    ASSERT_FALSE(afterJump.empty());
    EXPECT_EQ(afterJump.front(), std::ceil(1000123 / 22050.0) * 22050.0);
    for (double at : afterJump) EXPECT_EQ(std::fmod(at, 22050.0), 0.0) << at;
    row(kLfoSync)->setValue(0);
    EXPECT_EQ(control().lfoSyncIndex(), 0);
}
