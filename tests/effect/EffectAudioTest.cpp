#include <gtest/gtest.h>
#include <xmmintrin.h>

#include "EffectHarness.h"
#include "support/AllocationCounter.h"

TEST(EffectAudio, GainRampSnapTakesTheTargetAndClearsThePeaks) {
    CGainRamp ramp;
    float left = 1.0f, right = -1.0f;
    ramp.setGain(2.0f);
    ramp.apply(&left, &right, 1);
    ramp.snap();
    EXPECT_EQ(ramp.getCurrent(), 2.0f);
    EXPECT_TRUE(ramp.maxL == 0.0f && ramp.minR == 0.0f);
}

TEST(EffectAudio, EntryOperationsRestoreTheHostsFloatingPointMode) {
    EffectHarness harness;
    const unsigned host = _mm_getcsr();
    _mm_setcsr(host | 0x8040);  // flush-to-zero and denormals-are-zero, as some hosts run
    std::vector<float> left(256, 0.5f), right(256, 0.5f);
    harness.run(left, right, 256);
    harness.set(kLowPassFreq, 1000);
    void* data = nullptr;
    harness.effect->getChunk(&data);
    EXPECT_EQ(_mm_getcsr() & 0xFFC0u, (host | 0x8040) & 0xFFC0u);
    _mm_setcsr(host);
}

namespace {
struct Scenario {
    const char* name;
    float rate;
    int maxBlock;
    std::function<void(EffectHarness&)> prepare;  // may allocate: settings, warm-up, rate changes
    std::function<void(EffectHarness&)> run;      // must not
};

// Made before any scenario counts, and run through in place again and again.
std::vector<float> signalL = sine(512, 300, 44100), signalR = sine(512, 500, 44100);

void play(EffectHarness& h, int n) { h.runBlock(signalL.data(), signalR.data(), n); }
}  // namespace

TEST(EffectRealtime, ProcessAllocatesNothing) {
    const Scenario scenarios[] = {
        {"the first block of a fresh instance", 48000, 256, {}, [](EffectHarness& h) { play(h, 256); }},
        {"any block up to the maximal one, a cutoff change and a bypass fade both ways", 44100, 512,
         [](EffectHarness& h) {
             h.setAll({{kDryWetMix, 0.5f}, {kInputGain, 1.5f}, {kDistPrePost, 0}, {kRatePrePost, 0},
                       {kFilterMode, 1}, {kLimiterBypass, 1}});
             play(h, 512);  // structural changes land on the first block
         },
         [](EffectHarness& h) {
             for (int block : {1, 7, 64, 88, 100, 511, 512}) play(h, block);
             h.set(kLowPassFreq, 800);
             for (float bypass : {1.0f, 0.0f}) {
                 h.set(kBypass, bypass);
                 for (int i = 0; i < 20; ++i) play(h, 512);
             }
         }},
        {"every stage at work after a rate change", 44100, 512,
         [](EffectHarness& h) {
             h.setAll({{kLowPassSlope, 4}, {kHighPassSlope, 4}, {kLowPassFreq, 2000}, {kHighPassFreq, 200},
                       {kLpStrength, 0.6f}, {kLpStrengthLfo, 1.5f}, {kLfoSync, 0}, {kDistLevel, 0.7f},
                       {kRateReduceLevel, 0.5f}, {kRateLpLink, 1}, {kRingModStrength, 0.5f},
                       {kFreqModStrength, 0.5f}, {kLimiterBypass, 1}, {kLimitRelease, 1}, {kDryWetMix, 0.7f}});
             play(h, 512);
             h.effect->setSampleRate(96000);  // allocates the new delay lines, off the audio thread
             play(h, 512);
         },
         [](EffectHarness& h) {
             for (int i = 0; i < 50; ++i) {
                 h.set(kLowPassFreq, 500.0f + 100.0f * static_cast<float>(i));
                 play(h, i % 2 ? 512 : 77);
             }
         }},
    };
    for (const Scenario& s : scenarios) {
        EffectHarness harness(s.rate, s.maxBlock);
        if (s.prepare) s.prepare(harness);
        TestSupport::AllocationScope scope;
        s.run(harness);
        EXPECT_EQ(scope.allocations(), 0u) << s.name;
    }
}
