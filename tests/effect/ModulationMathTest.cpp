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
