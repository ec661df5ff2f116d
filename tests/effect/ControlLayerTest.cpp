#include <gtest/gtest.h>

#include "EffectHarness.h"
#include "effect/ModulationMath.h"

using namespace ModulationMath;

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
    harness.setAll({{kLowPassFreq, 4000}, {kHighPassFreq, 1000}, {kLinkFilters, 1}});
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

// The restart sets the LFO's phase: what it ran before, with the transport stopped, leaves no trace.
TEST_F(ControlLayer, ASyncedLfoRunsAlikeAfterItsRestartWhateverRanBefore) {
    std::vector<float> means[2];
    for (int stoppedBlocks : {0, 7}) {
        EffectHarness h;
        h.effect->getParameter(kLfoSync)->setValue(1);
        h.effect->getParameter(kLfoRate)->setNormalized(5.0f / 23.0f);
        std::vector<float> l(441, 0.1f), r = l;
        for (int i = 0; i < stoppedBlocks; ++i) h.runBlock(l.data(), r.data(), 441);
        h.playing = true, h.position = 0;  // a host starting its transport from the top
        for (int i = 0; i < 10; ++i, means[stoppedBlocks > 0].push_back(h.effect->modulation().lfoMean()))
            h.runBlock(l.data(), r.data(), 441);
    }
    EXPECT_EQ(means[0], means[1]);
}

namespace {
struct Rule {
    template <typename A, typename E>
    Rule(A a, E e, double t = 0) : actual(static_cast<double>(a)), expected(static_cast<double>(e)), tolerance(t) {}
    double actual, expected, tolerance;  // no tolerance given: to a few parts in ten million
};

void expectRules(const std::vector<Rule>& rules) {
    for (size_t i = 0; i < rules.size(); ++i) {
        const Rule& r = rules[i];
        EXPECT_NEAR(r.actual, r.expected, r.tolerance > 0 ? r.tolerance : 5e-7 * std::max(1.0, std::fabs(r.expected)))
            << "rule " << i;
    }
}
}  // namespace

// The follower, envelope, LFO factor and resonance rules shape every reference output; these rules
// act only on settings the references leave alone.
TEST(ModulationMath, GlideAndInertia) {
    expectRules({
        // At 24 dB and below inertia changes nothing; at inertia 1 a steep filter moves at most 4.05 % a chunk.
        {glideStep(1000, 2000, 24, 0.001f), 1505},  {glideStep(1000, 2000, 24, 1.0f), 1505},
        {glideStep(1000, 20000, 96, 1.0f), 1040.5}, {glideStep(1000, 10, 48, 1.0f), 1000 / 1.0405},
        {glideStep(1000, 1010, 96, 1.0f), 1000 + 0.105 * 10},
        // Large jumps are limited to the ratio even without inertia, from at least 10 Hz.
        {glideStep(100, 20000, 12, 1.0f), 805},     {glideStep(5, 20000, 12, 1.0f), 80.5},
        {inertiaFromRow(1), 1},         {inertiaFromRow(0.5f), 0.875},   {inertiaFromRow(0), 0.001},
    });
}

TEST(ModulationMath, SyncPeriodsAndLinks) {
    expectRules({
        {syncPeriodSamples(6, 120, 44100), 22050},      // 1/4
        {syncPeriodSamples(4, 120, 44100), 88200},      {syncPeriodSamples(3, 120, 44100), 2 * 176400},  // 2/1
        {syncPeriodSamples(2, 120, 44100), 3 * 88200},  {syncPeriodSamples(22, 120, 48000), 36000},  // 1/4D
        {syncPeriodSamples(14, 120, 44100), static_cast<int>(22050 * static_cast<double>(0.6666667f))},
        {syncPeriodSamples(6, 0, 44100), 0},            {syncPeriodSamples(0, 120, 44100), 0},
        {rateLinkControl(22050, 1, false), 1},          {rateLinkControl(0, 1, false), 0},
        {rateLinkControl(0, 0.5f, true), 1},            {rateLinkControl(22050, 1, true), 0.1},
        {linkTowardFilter(0.2f, 0.8f, 0.5f), 0.5},      {linkTowardFilter(0.5f, 0.8f, -0.5f), 0.3},
        {linkTowardFilter(0.5f, 0.8f, 0), 0.5},
    });
}
