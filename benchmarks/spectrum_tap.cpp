// The spectrum's two costs: what the audio thread pays to hand one host block of 512 stereo frames
// to the analyser, and what the window thread pays per paint that brings a new frame (transform,
// levels, smoothing and the curve of a plot 440 pixels wide). Compare the first with 512 times the
// ns_per_frame of bench_effect_process to get the tap's share of a process call.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "dsp/analysis/CFFTRenderer.h"

namespace {
constexpr int kBlock = 512;
constexpr int kPlotWidth = 440;

std::vector<float> tone(int length, double hertz) {
    std::vector<float> x(static_cast<size_t>(length));
    for (int i = 0; i < length; ++i) x[i] = static_cast<float>(0.5 * std::sin(2.0 * M_PI * hertz * i / 44100.0));
    return x;
}

void tapPerBlock(benchmark::State& state) {
    DSP::CFFTRenderer renderer(22, 22050);
    const std::vector<float> left = tone(kBlock, 440.0), right = tone(kBlock, 660.0);
    for (auto _ : state) {
        renderer.push(left.data(), right.data(), kBlock);
        benchmark::ClobberMemory();
    }
    state.counters["ns_per_block"] =
        benchmark::Counter(1.0, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(tapPerBlock);

void analysePerFrame(benchmark::State& state) {
    DSP::CFFTRenderer renderer(22, 22050);
    const std::vector<float> frame = tone(DSP::CFFTRenderer::kFftSize, 1000.0);
    std::vector<float> curve(kPlotWidth);
    for (auto _ : state) {
        state.PauseTiming();
        renderer.push(frame.data(), nullptr, DSP::CFFTRenderer::kFftSize);
        state.ResumeTiming();
        renderer.paint();
        renderer.curve(curve.data(), kPlotWidth);
        benchmark::DoNotOptimize(curve.data());
    }
}
BENCHMARK(analysePerFrame)->Unit(benchmark::kMicrosecond);
}  // namespace
