#include <gtest/gtest.h>

#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "effect/EffectHarness.h"
#include "robustness/Setups.h"
#include "support/Samples.h"

using TestSupport::allFinite;
using TestSupport::NamedState;

namespace {
// Every rate a host offers, and a few no host should.
const double kRates[] = {8000,  11025, 16000,  22050,  24000,  32000,  44100,  48000,
                         88200, 96000, 176400, 192000, 384000, 768000, 1234, 1200000};
}  // namespace

TEST(SampleRates, EverySetupGivesFiniteSoundAtEveryRate) {
    const std::vector<NamedState> setups = TestSupport::everySetup();
    ASSERT_GT(setups.size(), 100u);
    for (double rate : kRates) {
        EffectHarness harness(static_cast<float>(rate), 512);
        harness.effect->reset();
        for (const NamedState& setup : setups) {
            ASSERT_TRUE(TestSupport::loadState(*harness.effect, setup)) << setup.name;
            std::vector<float> left, right;
            // Long enough to come out past the look-ahead at every rate.
            TestSupport::testSignal(left, right, static_cast<size_t>(rate * 0.03) + 2048, rate);
            harness.run(left, right, 512);
            ASSERT_TRUE(allFinite(left) && allFinite(right)) << setup.name << " at " << rate << " Hz";
        }
    }
}

// The low-pass reaches its cutoff wherever the rate has room for it; the complementary high-pass
// keeps its shape however high the rate; the resonance section stays stable up to its limit.
TEST(SampleRates, FiltersHoldTheirFrequenciesInsideWhatTheRateAllows) {
    for (double rate : kRates) {
        SCOPED_TRACE(rate);
        DSP::CSlopeFilter lowPass(8);
        lowPass.setSampleRate(rate);
        lowPass.setSlope(96);
        const double cutoff = std::min(1000.0, std::floor(rate * 0.3));
        lowPass.setCutoff(cutoff);
        double atCutoff = 0;
        lowPass.response(&cutoff, &atCutoff, 1);
        EXPECT_NEAR(atCutoff, -6.02, 0.05);  // two Butterworths in series, -3 dB each

        DSP::CSlopeFilter highPass(8);
        highPass.setType(1);
        highPass.setSampleRate(rate);
        highPass.setSlope(96);
        highPass.setCutoff(20);
        EXPECT_EQ(highPass.getCutoff(), std::max(20.0, std::floor(rate / 9600.0)));
        std::vector<float> left, right, out(1 << 16);
        TestSupport::testSignal(left, right, out.size(), rate);
        highPass.process(left.data(), out.data(), static_cast<unsigned>(out.size()));
        left.resize(out.size());
        const size_t half = out.size() / 2;
        EXPECT_NEAR(std::sqrt(TestSupport::energy(out, half) / TestSupport::energy(left, half)), 1.0, 0.05);

        for (float frequency : {18000.0f, 1e6f}) {
            DSP::CPeakBiquad peak;
            peak.sampleRate = rate;
            peak.set(6, frequency, 1.5f, 24, true);
            EXPECT_TRUE(std::isfinite(peak.b0) && std::isfinite(peak.b1) && std::isfinite(peak.b2));
            EXPECT_LT(std::fabs(peak.a2), 1.0);
            EXPECT_LT(std::fabs(peak.a1), 1.0 + peak.a2);
        }
    }
}

namespace {
enum class Order { RateThenState, StateThenRate };

// A fresh instance as a host makes it: a new insert learns the rate first and gets the user's
// settings after; a reopened session restores the state first.
std::unique_ptr<EffectHarness> instance(const NamedState& state, float rate, Order order) {
    auto harness = std::make_unique<EffectHarness>(44100.0f, 512);
    if (order == Order::StateThenRate) {
        EXPECT_TRUE(TestSupport::loadState(*harness->effect, state));
    }
    harness->effect->setSampleRate(rate);
    harness->effect->reset();
    if (order == Order::RateThenState) {
        EXPECT_TRUE(TestSupport::loadState(*harness->effect, state));
    }
    return harness;
}

void play(EffectHarness& harness, std::vector<float>& left, std::vector<float>& right, double rate) {
    TestSupport::testSignal(left, right, 6000, rate);
    harness.run(left, right, 512);
}
}  // namespace

TEST(RateOrder, TheStateSoundsTheSameWhetherItCameBeforeOrAfterTheRate) {
    const std::vector<NamedState> setups = TestSupport::everySetup();
    for (float rate : {44100.0f, 48000.0f, 88200.0f, 96000.0f}) {
        for (const NamedState& setup : setups) {
            auto first = instance(setup, rate, Order::RateThenState);
            auto second = instance(setup, rate, Order::StateThenRate);
            // At 48 kHz both switch to 96 kHz while running and play on.
            for (float now : rate == 48000.0f ? std::vector<float>{rate, 96000.0f} : std::vector<float>{rate}) {
                for (EffectHarness* harness : {first.get(), second.get()})
                    if (now != rate) harness->effect->setSampleRate(now);
                std::vector<float> l1, r1, l2, r2;
                play(*first, l1, r1, now);
                play(*second, l2, r2, now);
                ASSERT_TRUE(l1 == l2 && r1 == r2) << setup.name << " at " << rate << " then " << now;
            }
        }
    }
}
