// Bit-exact reference output of the whole effect. The checksums were recorded from the plain
// per-sample implementation; any faster form of the signal path must reproduce every sample to
// the bit, in every build type. When a change is meant to alter the sound, record new values.
#include <gtest/gtest.h>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "EffectHarness.h"
#include "support/HeaviestSettings.h"
#include "support/Samples.h"

namespace {

constexpr float kRate = 48000.0f;
constexpr size_t kSeconds = 3;

// FNV-1a over the float bit patterns, left before right in each frame.
uint64_t checksum(const std::vector<float>& left, const std::vector<float>& right) {
    uint64_t hash = 0xcbf29ce484222325ull;
    auto add = [&](float value) {
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        for (int byte = 0; byte < 4; ++byte) {
            hash ^= (bits >> (8 * byte)) & 0xffu;
            hash *= 0x100000001b3ull;
        }
    };
    for (size_t i = 0; i < left.size(); ++i) {
        add(left[i]);
        add(right[i]);
    }
    return hash;
}

// Fixed-seed noise plus a sine per channel, loud enough to reach the limiter with some gain.
void testSignal(float rate, size_t frames, std::vector<float>& left, std::vector<float>& right) {
    left.resize(frames);
    right.resize(frames);
    uint32_t seed = 0x1234567u;
    auto noise = [&] {
        seed = seed * 1664525u + 1013904223u;
        return static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
    };
    for (size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / rate;
        left[i] = 0.3f * noise() + 0.5f * static_cast<float>(std::sin(2.0 * M_PI * 220.0 * t));
        right[i] = 0.3f * noise() + 0.4f * static_cast<float>(std::sin(2.0 * M_PI * 331.0 * t + 0.5));
    }
}

// The heaviest settings with a hot input, so that the limiter works on most of the signal.
void heaviest(EffectHarness& h) {
    TestSupport::applyHeaviestSettings(*h.effect);
    h.set(kInputGain, 1.6f);
}

// Passages of true silence, of signals far below the float resolution of the loud parts and of
// subnormal values, where the small offsets against denormals decide the output.
void withQuietPassages(std::vector<float>& left, std::vector<float>& right, float rate) {
    const auto second = static_cast<size_t>(rate);
    for (size_t i = 0; i < left.size(); ++i) {
        const size_t part = i * 4 / second;  // quarter seconds
        float scale = 1.0f;
        if (part == 4 || part == 5) scale = 0.0f;
        if (part == 6) scale = 1e-25f;
        if (part == 7) scale = 1e-39f;
        if (part == 9) scale = i % 2 ? -0.0f : 0.0f;
        left[i] *= scale;
        right[i] *= scale;
    }
}

struct Case {
    const char* name;
    float rate;
    int block;
    std::function<void(EffectHarness&)> setup;
    // Called before each host block with the block's index; may change parameters.
    std::function<void(EffectHarness&, int)> automate;
    uint64_t expected;
    bool quiet = false;
    bool playing = false;  // the host's transport runs, so that a synced LFO locks to it
};

uint64_t render(const Case& c) {
    EffectHarness harness(c.rate, 512);
    harness.playing = c.playing;  // at the harness's 120 BPM
    if (c.setup) c.setup(harness);
    std::vector<float> left, right;
    testSignal(c.rate, kSeconds * static_cast<size_t>(c.rate), left, right);
    if (c.quiet) withQuietPassages(left, right, c.rate);
    harness.run(left, right, c.block, [&](int block) {
        if (c.automate) c.automate(harness, block);
    });
    const double energy = TestSupport::energy(left) + TestSupport::energy(right);
    EXPECT_GT(std::sqrt(energy / static_cast<double>(2 * left.size())), 0.01) << c.name << ": output is silent";
    return checksum(left, right);
}

void expectReference(const Case& c) {
    const uint64_t actual = render(c);
    char text[32];
    std::snprintf(text, sizeof text, "0x%016" PRIx64 "ull", actual);
    EXPECT_EQ(actual, c.expected) << c.name << " at block " << c.block << " now gives " << text;
}

void parallelHeavy(EffectHarness& h) {
    heaviest(h);
    h.setAll({{kFilterMode, 1}, {kDistPrePost, 1}, {kRatePrePost, 0}, {kLowPassFreq, 600}, {kHighPassFreq, 5000}});
}

void preStagesWithMix(EffectHarness& h) {
    h.setAll({{kLowPassSlope, 3}, {kHighPassSlope, 1}, {kLowPassFreq, 6000}, {kHighPassFreq, 120}, {kDistLevel, 0.9f},
              {kDistPrePost, 0}, {kRateReduceLevel, 0.3f}, {kRatePrePost, 0}, {kDryWetMix, 0.35f}, {kInputGain, 0.7f},
              {kOutputGain, 1.3f}, {kLimiterBypass, 1}, {kLimitRelease, 200}, {kMeasurePoint, 100}});
}

// Cutoffs, gains and structure move between blocks, as host automation would move them.
void automateSweep(EffectHarness& h, int block) {
    h.set(kLowPassFreq, 200.0f + static_cast<float>((block * 397) % 18000));
    h.set(kHighPassFreq, 20.0f + static_cast<float>((block * 131) % 3000));
    h.set(kInputGain, block % 7 == 0 ? 1.2f : 0.9f);
    h.set(kDryWetMix, block % 11 < 5 ? 1.0f : 0.5f);
    if (block == 40) h.set(kLowPassSlope, 1);
    if (block == 80) h.set(kHighPassSlope, 3);
    if (block == 120) h.set(kFilterMode, 1);
    if (block == 160) h.set(kRingModStrength, 0.7f);
    if (block == 200) h.set(kFilterMode, 0);
    if (block == 230) h.set(kLimiterBypass, 1);
}

void limiterWithManualRelease(EffectHarness& h) {
    heaviest(h);
    h.setAll({{kInputGain, 2.0f}, {kLimitRelease, 200}, {kLimiterOutGain, -0.5f}});
}

void syncedLfo(EffectHarness& h) {
    TestSupport::applyHeaviestSettings(*h.effect);
    h.setAll({{kLfoSync, 1}, {kLfoRate, 2.5f}, {kLfoShape, 1}, {kLfoShift, 0.3f}, {kLowPassSlope, 3},
              {kHighPassSlope, 2}, {kFilterMode, 1}});
}

void bypassToggles(EffectHarness& h, int block) {
    if (block == 30 || block == 72) h.set(kBypass, 1);
    if (block == 70 || block == 73) h.set(kBypass, 0);
}

}  // namespace

TEST(EffectReferenceOutput, EverySettingAtItsBlockSizeToTheBit) {
    const Case cases[] = {
        {"init", kRate, 512, nullptr, nullptr, 0xe27604385abfcbaaull},
        {"init", kRate, 333, nullptr, nullptr, 0xe27604385abfcbaaull},
        {"init", 44100.0f, 512, nullptr, nullptr, 0x4181e3bbf60eb669ull},
        {"heaviest", kRate, 512, heaviest, nullptr, 0xe93eeaff7e6773e3ull},
        {"heaviest", kRate, 333, heaviest, nullptr, 0x882beee97da61ff4ull},
        {"parallel filters, post distortion", kRate, 512, parallelHeavy, nullptr, 0x558f56583892d543ull},
        {"pre stages against the dry mix", kRate, 256, preStagesWithMix, nullptr, 0x01e02f0aa59be583ull},
        {"automated cutoffs and structure", kRate, 480, nullptr, automateSweep, 0x736f4f4196df1d22ull},
        {"bypass fades", kRate, 400, heaviest, bypassToggles, 0x75c01cc85ce87d0aull},
        {"quiet init", kRate, 512, nullptr, nullptr, 0x98e362281c29a450ull, true},
        {"quiet heaviest", kRate, 512, heaviest, nullptr, 0x0a21cdb081a5b125ull, true},
        {"quiet parallel", kRate, 333, parallelHeavy, nullptr, 0xb7624e55de29bbb3ull, true},
        {"quiet pre stages", kRate, 256, preStagesWithMix, nullptr, 0xf405af9703859795ull, true},
        {"manual release", kRate, 512, limiterWithManualRelease, nullptr, 0x56eedf7de056850cull},
        {"synced, transport running", 44100.0f, 441, syncedLfo, nullptr, 0xed0f7631a3e3d13eull, false, true},
    };
    for (const Case& c : cases) expectReference(c);
}
