#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "dsp/filters/CSlopeFilter.h"

namespace {

constexpr unsigned kBlock = 88;  // one control chunk at 44.1 kHz

std::vector<float> testSignal(std::size_t length) {
    std::vector<float> x(length);
    for (std::size_t i = 0; i < length; ++i) x[i] = static_cast<float>(0.5 * std::sin(0.01 * static_cast<double>(i)));
    return x;
}

// ns per sample of process at a fixed cutoff; arguments: slope, type, mode.
void processPerSlope(benchmark::State& state) {
    DSP::CSlopeFilter filter(8);
    filter.mode = static_cast<unsigned>(state.range(2));
    filter.setType(static_cast<unsigned>(state.range(1)));
    filter.setSlope(static_cast<int>(state.range(0)));
    filter.setCutoff(1000);
    std::vector<float> buffer = testSignal(kBlock);
    for (auto _ : state) {
        filter.process(buffer.data(), buffer.data(), kBlock);
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBlock);
    state.counters["ns_per_sample"] = benchmark::Counter(
        static_cast<double>(state.iterations() * kBlock), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(processPerSlope)
    ->ArgNames({"slope", "type", "mode"})
    ->Args({12, 0, 0})->Args({24, 0, 0})->Args({48, 0, 0})->Args({96, 0, 0})
    ->Args({96, 1, 0})->Args({96, 1, 1});

// One block of a sweep: a new cutoff, then the block. With misses every cutoff lands in a new
// bin (the cache is cleared when the sweep wraps); with hits the bins were visited before.
void sweepBlock(benchmark::State& state) {
    const bool hits = state.range(0) != 0;
    DSP::CSlopeFilter filter(8);
    filter.setSlope(96);
    std::vector<float> buffer = testSignal(kBlock);
    double cutoff = 20;
    if (hits)
        for (double hz = 20; hz < 600; hz += 1) filter.setCutoff(hz);
    for (auto _ : state) {
        cutoff += 1;
        if (cutoff >= 600) {
            cutoff = 20;
            if (!hits) {
                state.PauseTiming();
                filter.setSlope(96);  // clears the cache
                state.ResumeTiming();
            }
        }
        filter.setCutoff(cutoff);
        filter.process(buffer.data(), buffer.data(), kBlock);
        benchmark::DoNotOptimize(buffer.data());
    }
    state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(sweepBlock)->ArgName("cacheHits")->Arg(0)->Arg(1);

}  // namespace
