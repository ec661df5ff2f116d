// Cost of the whole effect per stereo frame at 48 kHz, for the init settings and for the heaviest
// settings, against the floor of the same number of biquad sections run alone.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "dsp/filters/CBiquadCascade.h"
#include "effect/CZonfra.h"
#include "framework/plugin/ChunkedProcess.h"

namespace {
constexpr float kRate = 48000.0f;

void heaviest(CZonfra& effect) {
    auto set = [&](int id, float v) { effect.getParameter(id)->setValue(v); };
    set(kLowPassSlope, 4);
    set(kHighPassSlope, 4);
    set(kLowPassFreq, 2500);
    set(kHighPassFreq, 300);
    set(kLowPassQ, 0.6f);
    set(kHighPassQ, 0.4f);
    set(kLpStrength, 0.7f);
    set(kHpStrength, -0.5f);
    set(kLpStrengthLfo, 1.5f);
    set(kHpStrengthLfo, -1.0f);
    set(kLfoSync, 0);
    set(kLfoRate, 2.0f);
    set(kMeasurePoint, 2000);
    set(kRingModStrength, 0.5f);
    set(kRingModFreq, 800);
    set(kFreqModStrength, 0.5f);
    set(kFreqModFreq, 5);
    set(kDistLevel, 0.6f);
    set(kDistPrePost, 0);
    set(kRateReduceLevel, 0.6f);
    set(kRatePrePost, 1);
    set(kLimiterBypass, 1);
    set(kLimitRelease, 1);
    set(kDryWetMix, 0.8f);
}

void runEffect(benchmark::State& state, bool heavy) {
    const int blockSize = static_cast<int>(state.range(0));
    auto effect = std::make_unique<CZonfra>(nullptr);
    effect->setSampleRate(kRate);
    effect->setBlockSize(blockSize);
    if (heavy) heaviest(*effect);
    std::vector<float> left(static_cast<size_t>(blockSize)), right(static_cast<size_t>(blockSize));
    uint32_t seed = 1;
    double position = 0;
    for (auto _ : state) {
        for (int i = 0; i < blockSize; ++i) {
            seed = seed * 1664525u + 1013904223u;
            left[static_cast<size_t>(i)] = static_cast<float>(seed >> 9) / 8388608.0f - 1.0f;
            right[static_cast<size_t>(i)] = left[static_cast<size_t>(i)] * 0.5f;
        }
        Ondra::OndraAudioBlock block;
        block.in[0].refer(left.data(), right.data(), blockSize);
        block.out[0].refer(left.data(), right.data(), blockSize);
        block.inputCount = block.outputCount = 1;
        block.tempo = 120;
        block.transportPlaying = true;
        block.samplePos = position;
        Ondra::processInChunks(*effect, block, blockSize, Ondra::ChunkingRules{});
        position += blockSize;
        benchmark::DoNotOptimize(left.data());
    }
    state.SetItemsProcessed(state.iterations() * blockSize);
    state.counters["ns_per_frame"] =
        benchmark::Counter(static_cast<double>(state.iterations() * blockSize),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void InitPreset(benchmark::State& state) { runEffect(state, false); }
void Heaviest(benchmark::State& state) { runEffect(state, true); }

// Both filters at 96 dB/oct in series with their dry twins: 2 x 8 sections per channel in the wet
// path and 2 x 4 all-pass sections in the dry path, per channel.
void BiquadFloor(benchmark::State& state) {
    const int blockSize = static_cast<int>(state.range(0));
    DSP::CBiquadCascade wetL(16), wetR(16), dryL(8), dryR(8);
    std::vector<float> left(static_cast<size_t>(blockSize), 0.25f), right(static_cast<size_t>(blockSize), -0.25f);
    for (auto _ : state) {
        for (int i = 0; i < blockSize; ++i) {
            const auto at = static_cast<size_t>(i);
            left[at] = static_cast<float>(wetL.tick(left[at])) + dryL.tickRounded(left[at]);
            right[at] = static_cast<float>(wetR.tick(right[at])) + dryR.tickRounded(right[at]);
        }
        benchmark::DoNotOptimize(left.data());
    }
    state.SetItemsProcessed(state.iterations() * blockSize);
    state.counters["ns_per_frame"] =
        benchmark::Counter(static_cast<double>(state.iterations() * blockSize),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
}  // namespace

BENCHMARK(InitPreset)->Arg(32)->Arg(512)->Arg(4096);
BENCHMARK(Heaviest)->Arg(32)->Arg(512)->Arg(4096);
BENCHMARK(BiquadFloor)->Arg(512);
