// Cost of the whole effect per stereo frame at 48 kHz, for the init settings and for the heaviest
// settings, against the floor: the biquad sections the heaviest settings run, alone.
//
// Each iteration is one host block of fixed-seed noise, cut into control chunks as an adapter cuts
// it. The counter ns_per_frame is the time of one stereo frame.
#include <benchmark/benchmark.h>

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "effect/CZonfra.h"
#include "effect/FusedFilterStage.h"
#include "framework/plugin/ChunkedProcess.h"
#include "tests/support/HeaviestSettings.h"

namespace {
constexpr float kRate = 48000.0f;
constexpr size_t kSignalFrames = 2 * 48000;

// Per channel the heaviest settings run 2 x 4 low-pass stages, 3 x 4 high-pass stages (two
// cascades and the all-pass of the complementary form), two resonance peaks, 2 x 4 all-pass
// stages of the dry path and the measure band.
constexpr int kHeaviestSections = 8 + 12 + 2 + 8 + 1;

// Fixed-seed full-scale noise on the left, half of it on the right.
struct TestSignal {
    std::vector<float> left, right;
    TestSignal() : left(kSignalFrames), right(kSignalFrames) {
        uint32_t seed = 1;
        for (size_t i = 0; i < kSignalFrames; ++i) {
            seed = seed * 1664525u + 1013904223u;
            left[i] = static_cast<float>(seed >> 9) / 8388608.0f - 1.0f;
            right[i] = left[i] * 0.5f;
        }
    }
};

const TestSignal& signal() {
    static const TestSignal s;
    return s;
}

void reportPerFrame(benchmark::State& state, int frames) {
    state.SetItemsProcessed(state.iterations() * frames);
    state.counters["ns_per_frame"] = benchmark::Counter(
        static_cast<double>(frames), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void runEffect(benchmark::State& state, bool heavy) {
    const int blockSize = static_cast<int>(state.range(0));
    auto effect = std::make_unique<CZonfra>(nullptr);
    effect->setSampleRate(kRate);
    effect->setBlockSize(blockSize);
    if (heavy) TestSupport::applyHeaviestSettings(*effect);
    const TestSignal& source = signal();
    std::vector<float> left(static_cast<size_t>(blockSize)), right(static_cast<size_t>(blockSize));
    size_t at = 0;
    double position = 0;
    for (auto _ : state) {
        if (at + static_cast<size_t>(blockSize) > kSignalFrames) at = 0;
        std::memcpy(left.data(), source.left.data() + at, sizeof(float) * static_cast<size_t>(blockSize));
        std::memcpy(right.data(), source.right.data() + at, sizeof(float) * static_cast<size_t>(blockSize));
        at += static_cast<size_t>(blockSize);
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
        benchmark::ClobberMemory();
    }
    reportPerFrame(state, blockSize);
}

void InitPreset(benchmark::State& state) { runEffect(state, false); }
void Heaviest(benchmark::State& state) { runEffect(state, true); }

// The floor: as many biquad sections per channel as the heaviest settings run, in the plainest
// tight loop over stereo data: per sample through every section in turn, both channels in the
// two lanes of one register (Direct Form I, the cascades' arithmetic).
void BiquadFloor(benchmark::State& state) {
    const int blockSize = static_cast<int>(state.range(0));
    struct Section {
        __m128d b0, b1, b2, a1, a2, x1, x2, y1, y2;
    };
    std::vector<Section> sections(kHeaviestSections);
    for (Section& s : sections) {
        // A mild low-pass: 1 kHz, Q 0.7 at 48 kHz.
        s.b0 = _mm_set1_pd(0.003916126660547);
        s.b1 = _mm_set1_pd(0.007832253321094);
        s.b2 = _mm_set1_pd(0.003916126660547);
        s.a1 = _mm_set1_pd(-1.815341082704568);
        s.a2 = _mm_set1_pd(0.831005589346757);
        s.x1 = s.x2 = s.y1 = s.y2 = _mm_setzero_pd();
    }
    const TestSignal& source = signal();
    std::vector<float> left(static_cast<size_t>(blockSize)), right(static_cast<size_t>(blockSize));
    size_t at = 0;
    for (auto _ : state) {
        if (at + static_cast<size_t>(blockSize) > kSignalFrames) at = 0;
        for (int i = 0; i < blockSize; ++i) {
            __m128d x = _mm_setr_pd(source.left[at + static_cast<size_t>(i)], source.right[at + static_cast<size_t>(i)]);
            for (Section& s : sections) {
                __m128d y = _mm_mul_pd(x, s.b0);
                y = _mm_sub_pd(y, _mm_mul_pd(s.a1, s.y1));
                y = _mm_sub_pd(y, _mm_mul_pd(s.a2, s.y2));
                y = _mm_add_pd(y, _mm_mul_pd(s.b1, s.x1));
                y = _mm_add_pd(y, _mm_mul_pd(s.b2, s.x2));
                s.x2 = s.x1;
                s.x1 = x;
                s.y2 = s.y1;
                s.y1 = y;
                x = y;
            }
            left[static_cast<size_t>(i)] = static_cast<float>(_mm_cvtsd_f64(x));
            right[static_cast<size_t>(i)] = static_cast<float>(_mm_cvtsd_f64(_mm_unpackhi_pd(x, x)));
        }
        at += static_cast<size_t>(blockSize);
        benchmark::DoNotOptimize(left.data());
        benchmark::ClobberMemory();
    }
    reportPerFrame(state, blockSize);
}

// A filter stage alone, through the effect's fused, software-pipelined loop, in control chunks of
// 96 samples, in series mode with both slopes at the second argument: at 96 dB per octave that is
// the heaviest settings' stage (30 of their sections: all but the measure band), at 24 the init
// settings' stage.
void FilterStageAlone(benchmark::State& state) {
    const int blockSize = static_cast<int>(state.range(0));
    const int slope = static_cast<int>(state.range(1));
    constexpr int kChunk = 96;
    DSP::CSlopeFilter lowL(8), lowR(8), highL(8), highR(8);
    for (DSP::CSlopeFilter* f : {&lowL, &lowR, &highL, &highR}) {
        f->setSampleRate(kRate);
        f->setSlope(slope);
    }
    highL.setType(1);
    highR.setType(1);
    DSP::CPeakBiquad resonanceLow, resonanceHigh;
    resonanceLow.set(6, 2500, 0.9f, 10, true);
    resonanceHigh.set(6, 300, 0.9f, 8, true);
    DSP::CBiquadCascade dryLowL(12), dryLowR(12), dryHighL(12), dryHighR(12);
    FilterStageParts parts{lowL, lowR, highL, highR, resonanceLow, resonanceHigh, dryLowL, dryLowR, dryHighL, dryHighR};
    // The filter stage's inputs are its own to write; the fused form only reads them.
    std::vector<float> sourceL = signal().left, sourceR = signal().right;
    std::vector<float> outL(kChunk), outR(kChunk), dryL(kChunk), dryR(kChunk);
    size_t at = 0;
    for (auto _ : state) {
        if (at + static_cast<size_t>(blockSize) > kSignalFrames) at = 0;
        for (int chunk = 0; chunk < blockSize; chunk += kChunk) {
            const int n = std::min(kChunk, blockSize - chunk);
            lowL.setCutoff(2500);
            lowR.setCutoff(2500);
            highL.setCutoff(300);
            highR.setCutoff(300);
            dryLowL.copyCoefficients(lowL.allPassStages());
            dryLowR.copyCoefficients(lowL.allPassStages());
            dryHighL.copyCoefficients(highL.allPassStages());
            dryHighR.copyCoefficients(highL.allPassStages());
            float* inL = sourceL.data() + at + chunk;
            float* inR = sourceR.data() + at + chunk;
            const FilterStageBuffers io{inL, inR, inL, inR, outL.data(), outR.data(), dryL.data(), dryR.data()};
            runFusedFilterStage(parts, false, io, n);
        }
        at += static_cast<size_t>(blockSize);
        benchmark::DoNotOptimize(outL.data());
        benchmark::ClobberMemory();
    }
    reportPerFrame(state, blockSize);
}
// With --benchmark_repetitions, the fastest repetition: on a shared machine the least disturbed.
double fastest(const std::vector<double>& values) { return *std::min_element(values.begin(), values.end()); }
}  // namespace

BENCHMARK(InitPreset)->Arg(32)->Arg(512)->Arg(4096)->ComputeStatistics("min", fastest);
BENCHMARK(Heaviest)->Arg(32)->Arg(512)->Arg(4096)->ComputeStatistics("min", fastest);
BENCHMARK(BiquadFloor)->Arg(512)->ComputeStatistics("min", fastest);
BENCHMARK(FilterStageAlone)->Args({512, 96})->Args({512, 24})->ComputeStatistics("min", fastest);
