#include <gtest/gtest.h>

#include <cmath>

#include "effect/ModulationMath.h"

using namespace ModulationMath;

TEST(ModulationMath, FollowerCoefficients) {
    EXPECT_FLOAT_EQ(attackCoefficient(5), 1.0f);
    EXPECT_FLOAT_EQ(attackCoefficient(50), 0.16f);
    EXPECT_FLOAT_EQ(attackCoefficient(1000), 0.008f);
    // Release stretches the time: 50 ms act as 1000 * 0.95 / 1.9 = 500 ms.
    EXPECT_FLOAT_EQ(releaseCoefficient(50), 8.0f / 500.0f);
    EXPECT_FLOAT_EQ(releaseCoefficient(1000), 8.0f / (1000.0f * 19.0f / 19.0f));
    EXPECT_FLOAT_EQ(releaseCoefficient(10), 8.0f / (1000.0f * 0.19f / 1.18f));
}

TEST(ModulationMath, EnvelopeLevel) {
    EXPECT_FLOAT_EQ(envelopeLevel(0), 0.0f);
    EXPECT_FLOAT_EQ(envelopeLevel(1), 1.0f);
    EXPECT_FLOAT_EQ(envelopeLevel(4), 1.0f);  // above full scale still 1
    const float g = 0.39810717f;
    EXPECT_NEAR(envelopeLevel(g * g), 0.6667f, 1e-4);
    EXPECT_FLOAT_EQ(envelopeLevel(1e-3f), 0.0f);  // -30 dB is below the floor
    EXPECT_NEAR(envelopeLevel(std::pow(10.0f, -1.2f)), 0.5f, 1e-5);  // -12 dB
}

TEST(ModulationMath, EnvelopeReachShrinksWithTheCutoff) {
    EXPECT_FLOAT_EQ(envelopeReachScale(100), 1.0f);
    EXPECT_FLOAT_EQ(envelopeReachScale(40), 1.0f);
    EXPECT_NEAR(envelopeReachScale(22050), 1.0f - 31.0f * 0.95f / (30.0f * 0.95f + 1.0f), 1e-6);
    EXPECT_LT(envelopeReachScale(5000), envelopeReachScale(500));
}

TEST(ModulationMath, LfoAppliesAsAFactorWithStrengthsAboveOne) {
    EXPECT_FLOAT_EQ(applyLfo(100, 1, 3), 2700);
    EXPECT_FLOAT_EQ(applyLfo(100, 1, -1), 25);
    EXPECT_FLOAT_EQ(applyLfo(100, 1, 2.5f), 100 * 3 * 3 * 2);
    EXPECT_FLOAT_EQ(applyLfo(100, -1, -1), 300);
    EXPECT_FLOAT_EQ(applyLfo(100, -1, 1), 25);
    EXPECT_FLOAT_EQ(applyLfo(100, 0.5f, 0), 100);
    EXPECT_FLOAT_EQ(applyLfo(100, -0.5f, -3), 100 * 2 * 2 * 2);
}

TEST(ModulationMath, GlideAndInertia) {
    // At 24 dB and below inertia changes nothing.
    EXPECT_FLOAT_EQ(glideStep(1000, 2000, 24, 1.0f), glideStep(1000, 2000, 24, 0.001f));
    EXPECT_FLOAT_EQ(glideStep(1000, 2000, 24, 1.0f), 1000 + 0.505f * 1000);
    // At inertia 1 a steep filter moves by at most 4.05 % per chunk.
    EXPECT_FLOAT_EQ(glideStep(1000, 20000, 96, 1.0f), 1000 * 1.0405f);
    EXPECT_FLOAT_EQ(glideStep(1000, 10, 48, 1.0f), 1000 / 1.0405f);
    EXPECT_FLOAT_EQ(glideStep(1000, 1010, 96, 1.0f), 1000 + 0.105f * 10);
    // Large jumps are limited to the ratio r even without inertia.
    EXPECT_FLOAT_EQ(glideStep(100, 20000, 12, 1.0f), 805);
    EXPECT_FLOAT_EQ(glideStep(5, 20000, 12, 1.0f), 80.5f);  // ratio from at least 10 Hz
    EXPECT_FLOAT_EQ(inertiaFromRow(1), 1.0f);
    EXPECT_FLOAT_EQ(inertiaFromRow(0.5f), 0.875f);
    EXPECT_FLOAT_EQ(inertiaFromRow(0), 0.001f);
}

TEST(ModulationMath, ResonanceShape) {
    ResonanceShape mid = resonanceShape(0.5f, 1000, 1.2f);
    EXPECT_FLOAT_EQ(mid.gainDb, 12);
    EXPECT_FLOAT_EQ(mid.bandwidth, 1.2f);
    ResonanceShape lowEnd = resonanceShape(1, 50, 1);
    EXPECT_FLOAT_EQ(lowEnd.gainDb, 24 * 0.45f);
    ResonanceShape top = resonanceShape(1, 22050, 1);
    EXPECT_FLOAT_EQ(top.gainDb, 19);
    EXPECT_FLOAT_EQ(top.bandwidth, 0.4f);
    EXPECT_FLOAT_EQ(resonanceShape(1, 10, 1).gainDb, 24 * 0.35f);  // clipped to 40 Hz first
}

TEST(ModulationMath, SyncPeriods) {
    EXPECT_EQ(syncPeriodSamples(6, 120, 44100), 22050);   // 1/4
    EXPECT_EQ(syncPeriodSamples(4, 120, 44100), 88200);   // 1/1
    EXPECT_EQ(syncPeriodSamples(3, 120, 44100), 2 * 176400);  // 2/1: twice the note
    EXPECT_EQ(syncPeriodSamples(2, 120, 44100), 3 * 88200);
    EXPECT_EQ(syncPeriodSamples(22, 120, 48000), static_cast<int>(24000 * 1.5));  // 1/4D
    EXPECT_EQ(syncPeriodSamples(14, 120, 44100), static_cast<int>(22050 * static_cast<double>(0.6666667f)));
    EXPECT_EQ(syncPeriodSamples(6, 0, 44100), 0);
    EXPECT_EQ(syncPeriodSamples(0, 120, 44100), 0);
}

TEST(ModulationMath, RateLinkAndFilterLinks) {
    EXPECT_FLOAT_EQ(rateLinkControl(22050, 1, false), 1.0f);
    EXPECT_FLOAT_EQ(rateLinkControl(0, 1, false), 0.0f);
    EXPECT_FLOAT_EQ(rateLinkControl(0, 0.5f, true), 1.0f - 0.45f + 0.45f);
    EXPECT_FLOAT_EQ(rateLinkControl(22050, 1, true), 0.1f);
    EXPECT_FLOAT_EQ(linkTowardFilter(0.2f, 0.8f, 0.5f), 0.5f);
    EXPECT_FLOAT_EQ(linkTowardFilter(0.5f, 0.8f, -0.5f), 0.5f - 0.4f * 0.5f);
    EXPECT_FLOAT_EQ(linkTowardFilter(0.5f, 0.8f, 0), 0.5f);
}
