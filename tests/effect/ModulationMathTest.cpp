#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "effect/ModulationMath.h"

using namespace ModulationMath;

namespace {
struct Rule {
    template <typename A, typename E>
    Rule(A a, E e, double t = 0) : actual(static_cast<double>(a)), expected(static_cast<double>(e)), tolerance(t) {}
    double actual, expected, tolerance;  // 0: to a few parts in ten million
};

void expectRules(const std::vector<Rule>& rules) {
    for (size_t i = 0; i < rules.size(); ++i) {
        const Rule& r = rules[i];
        EXPECT_NEAR(r.actual, r.expected, r.tolerance > 0 ? r.tolerance : 5e-7 * std::max(1.0, std::fabs(r.expected)))
            << "rule " << i;
    }
}
}  // namespace

TEST(ModulationMath, FollowerEnvelopeAndReach) {
    const float g = 0.39810717f;
    expectRules({
        {attackCoefficient(5), 1},      {attackCoefficient(50), 0.16},   {attackCoefficient(1000), 0.008},
        // Release stretches the time: 50 ms act as 1000 * 0.95 / 1.9 = 500 ms.
        {releaseCoefficient(50), 8.0 / 500}, {releaseCoefficient(1000), 8.0 / 1000},
        {releaseCoefficient(10), 8.0f / (1000.0f * 0.19f / 1.18f)},
        {envelopeLevel(0), 0},          {envelopeLevel(1), 1},           {envelopeLevel(4), 1},  // above full scale
        {envelopeLevel(g * g), 0.6667, 1e-4}, {envelopeLevel(1e-3f), 0},  // -30 dB is below the floor
        {envelopeLevel(std::pow(10.0f, -1.2f)), 0.5, 1e-5},                // -12 dB
        {envelopeReachScale(100), 1},   {envelopeReachScale(40), 1},
        {envelopeReachScale(22050), 1.0f - 31.0f * 0.95f / (30.0f * 0.95f + 1.0f), 1e-6},
        {envelopeReachScale(5000) < envelopeReachScale(500), 1},
    });
}

TEST(ModulationMath, LfoFactorGlideAndInertia) {
    expectRules({
        // Strengths above one multiply further.
        {applyLfo(100, 1, 3), 2700},    {applyLfo(100, 1, -1), 25},      {applyLfo(100, 1, 2.5f), 100 * 3 * 3 * 2},
        {applyLfo(100, -1, -1), 300},   {applyLfo(100, -1, 1), 25},      {applyLfo(100, 0.5f, 0), 100},
        {applyLfo(100, -0.5f, -3), 800},
        // At 24 dB and below inertia changes nothing; at inertia 1 a steep filter moves at most 4.05 % a chunk.
        {glideStep(1000, 2000, 24, 0.001f), 1505},  {glideStep(1000, 2000, 24, 1.0f), 1505},
        {glideStep(1000, 20000, 96, 1.0f), 1040.5}, {glideStep(1000, 10, 48, 1.0f), 1000 / 1.0405},
        {glideStep(1000, 1010, 96, 1.0f), 1000 + 0.105 * 10},
        // Large jumps are limited to the ratio even without inertia, from at least 10 Hz.
        {glideStep(100, 20000, 12, 1.0f), 805},     {glideStep(5, 20000, 12, 1.0f), 80.5},
        {inertiaFromRow(1), 1},         {inertiaFromRow(0.5f), 0.875},   {inertiaFromRow(0), 0.001},
    });
}

TEST(ModulationMath, ResonanceSyncAndLinks) {
    const ResonanceShape mid = resonanceShape(0.5f, 1000, 1.2f), top = resonanceShape(1, 22050, 1);
    expectRules({
        {mid.gainDb, 12},               {mid.bandwidth, 1.2},            {resonanceShape(1, 50, 1).gainDb, 24 * 0.45},
        {top.gainDb, 19},               {top.bandwidth, 0.4},
        {resonanceShape(1, 10, 1).gainDb, 24 * 0.35},  // clipped to 40 Hz first
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
