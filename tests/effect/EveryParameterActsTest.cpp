#include <gtest/gtest.h>

#include "EffectHarness.h"

namespace {
// A test signal with lows, highs and level changes, so that every stage has something to act on.
std::vector<float> programme(size_t frames, int channel) {
    std::vector<float> out(frames);
    uint32_t seed = 777u + static_cast<uint32_t>(channel);
    for (size_t i = 0; i < frames; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const double t = static_cast<double>(i) / 44100.0;
        const double burst = (static_cast<int>(t * 8) % 2) ? 1.0 : 0.2;
        const double noise = (static_cast<double>(seed >> 8) / 8388608.0 - 1.0) * 0.2;
        out[i] = static_cast<float>(burst * (0.4 * std::sin(2 * M_PI * 110 * t) + noise));
    }
    return out;
}

struct Row {
    int id;
    float value;
    std::function<void(EffectHarness&)> prepare;  // what the row needs to be audible
};

double difference(const std::vector<float>& a, const std::vector<float>& b) {
    double sum = 0;
    for (size_t i = 0; i < a.size(); ++i) sum += std::fabs(static_cast<double>(a[i]) - b[i]);
    return sum / static_cast<double>(a.size());
}

std::vector<float> render(const Row* row, bool change) {
    EffectHarness harness;
    if (row && row->prepare) row->prepare(harness);
    if (row && change) harness.set(row->id, row->value);
    std::vector<float> l = programme(44100, 0), r = programme(44100, 1);
    harness.playing = true;
    harness.run(l, r, 512);
    l.insert(l.end(), r.begin(), r.end());
    return l;
}
}  // namespace

TEST(EveryParameterActs, EachAutomatableRowChangesTheOutput) {
    auto set = [](int id, float v) { return [id, v](EffectHarness& h) { h.set(id, v); }; };
    auto both = [](std::function<void(EffectHarness&)> a, std::function<void(EffectHarness&)> b) {
        return [a, b](EffectHarness& h) { a(h); b(h); };
    };
    const auto lowPass = set(kLowPassFreq, 800);
    const auto envelope = both(lowPass, set(kLpStrength, 1.0f));
    const auto lfo = both(both(lowPass, set(kLpStrengthLfo, 1.0f)), set(kLfoSync, 0));
    const auto highEnvelope = both(set(kHighPassFreq, 300), set(kHpStrength, 1.0f));
    const auto ring = set(kRingModStrength, 0.7f);
    const auto freqMod = set(kFreqModStrength, 0.7f);
    const auto reduction = set(kRateReduceLevel, 0.3f);
    const auto limiter = both(set(kLimiterBypass, 1), set(kInputGain, 2));
    const auto high = set(kHighPassFreq, 300);
    const std::vector<Row> rows = {
        {kInputGain, 0.5f, {}},                                  {kLowPassFreq, 500, {}},
        {kLowPassQ, 0.8f, lowPass}, {kLowPassQWidth, 0.6f, both(lowPass, set(kLowPassQ, 0.8f))},
        {kLowPassSlope, 4, lowPass},                             {kHighPassFreq, 2000, {}},
        {kHighPassQ, 0.8f, high}, {kHighPassQWidth, 0.6f, both(high, set(kHighPassQ, 0.8f))},
        {kHighPassSlope, 4, high},                               {kOutputGain, 0.5f, {}},
        {kFilterMode, 1, both(lowPass, set(kHighPassFreq, 3000))}, {kLpAttack, 500, envelope},
        {kLpRelease, 1000, envelope},                            {kLpStrength, 1, lowPass},
        {kHpAttack, 500, highEnvelope},                          {kHpRelease, 1000, highEnvelope},
        {kHpStrength, 1, high},                                  {kMeasurePoint, 100, envelope},
        {kEnvBoost, -12, envelope},                              {kLfoRate, 5, lfo},
        {kLfoShape, 2, lfo}, {kLfoSync, 0, both(lowPass, set(kLpStrengthLfo, 1.0f))},
        {kLpStrengthLfo, 1, both(lowPass, set(kLfoSync, 0))},    {kHpStrengthLfo, 1, both(high, set(kLfoSync, 0))},
        {kLfoBpm, 90, both(lowPass, set(kLpStrengthLfo, 1.0f))}, {kLfoShift, 0.5f, lfo},
        {kDistLevel, 0.8f, {}},                                  {kDistPrePost, 1, set(kDistLevel, 0.8f)},
        {kRateReduceLevel, 0.3f, {}},                            {kRateLpLink, 1, both(reduction, lowPass)},
        {kRateLinkAmount, -0.5f, both(both(reduction, lowPass), set(kRateLpLink, 1))},
        {kRatePrePost, 0, both(reduction, lowPass)},             {kLimitRelease, 900, limiter},
        {kLimiterBypass, 1, set(kInputGain, 2)},                 {kLimiterOutGain, -1, set(kLimiterBypass, 1)},
        {kRingModFreq, 3000, ring},                              {kRingModStrength, 0.7f, {}},
        {kRingModLinkFreqPercent, 0.8f, both(ring, lowPass)},    {kDryWetMix, 0.3f, lowPass},
        {kBypass, 1, lowPass},                                   {kFreqModFreq, 8, freqMod},
        {kFreqModStrength, 0.7f, {}}, {kFreqModLinkFreqPercent, 0.8f, both(freqMod, lowPass)},
        {kFreqModLinkMixPercent, 0.8f, both(freqMod, lowPass)},
        {kFilterInertia, 0, both(envelope, set(kLowPassSlope, 4))},
    };
    // The filter link (row 10) only moves other rows: the control layer's tests check it.
    for (const Row& row : rows) {
        const std::vector<float> before = render(&row, false);
        const std::vector<float> after = render(&row, true);
        EXPECT_GT(difference(before, after), 1e-5) << "row " << row.id << " ("
                                                    << zonfraParameterRow(row.id).record.key << ") did not act";
    }
}

TEST(EveryParameterActs, RowsThirtyNineAndFortyFiveActOnlyThroughAStateLoad) {
    const Row ringLink{kRingModLinkFreq, 0, [](EffectHarness& h) {
                           h.set(kRingModStrength, 0.7f);
                           h.set(kRingModLinkFreqPercent, 0.8f);
                       }};
    EXPECT_EQ(difference(render(&ringLink, false), render(&ringLink, true)), 0.0);
    const Row fmLink{kFreqModLinkFreq, 1, [](EffectHarness& h) { h.set(kFreqModStrength, 0.7f); }};
    EXPECT_EQ(difference(render(&fmLink, false), render(&fmLink, true)), 0.0);
}
