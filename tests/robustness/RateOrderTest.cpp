#include <gtest/gtest.h>

#include "effect/EffectHarness.h"
#include "robustness/Setups.h"

using TestSupport::NamedState;

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
