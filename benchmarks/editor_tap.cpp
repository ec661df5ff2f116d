#include <benchmark/benchmark.h>

#include <X11/Xlib.h>

#include <time.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "EffectHarness.h"
#include "editor/CZonfraEditor.h"

// What the open editor's audio tap adds to the audio thread. Host blocks of noise run through the
// effect (in its control chunks, as the adapters cut them); then the tap is called again for the
// same chunks the effect hands it. Each is timed in batches by the thread's CPU clock, so that
// other programs on the machine do not count. Counters: both per host block, and the tap's share
// of the process call in percent. Needs a display (xvfb-run -a).
namespace {

constexpr int kBatch = 64;

double threadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::vector<float> noise(int samples) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> level(-0.5f, 0.5f);
    std::vector<float> out(static_cast<size_t>(samples));
    for (float& v : out) v = level(random);
    return out;
}

// One connection for the program, opened before any benchmark runs.
Display* const display = XOpenDisplay(nullptr);

void tapShareOfProcess(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    setenv("ZONFRA_NO_GL", "1", 1);
    if (!display) return state.SkipWithError("no X display for the editor's window");
    CZonfra::editorFactory = [](CZonfra& effect) -> Ondra::PluginEditor* { return new CZonfraEditor(&effect); };
    auto harness = std::make_unique<EffectHarness>(48000.0f, block);
    auto* editor = dynamic_cast<CZonfraEditor*>(harness->effect->getEditor());
    editor->setEventDriver(Vinta::X11::EventDriver::HostIdle);
    const Window parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 600, 500, 0, 0, 0);
    if (!editor->open(reinterpret_cast<void*>(parent))) return state.SkipWithError("the editor did not open");
    const int chunk = harness->effect->getControlChunkSize();
    // A stretch of streaming audio per batch, refilled outside the timed parts.
    const std::vector<float> source = noise(block * kBatch);
    std::vector<float> left, right;
    double processSeconds = 0, tapSeconds = 0;
    for (auto _ : state) {
        left = source, right = source;
        const double start = threadSeconds();
        for (int i = 0; i < kBatch; ++i) harness->runBlock(left.data() + i * block, right.data() + i * block, block);
        benchmark::DoNotOptimize(left.data());
        const double processed = threadSeconds();
        for (int i = 0; i < kBatch; ++i)
            for (int at = i * block; at < (i + 1) * block; at += chunk)
                editor->audioTap(*harness->effect, left.data() + at, right.data() + at, std::min(chunk, (i + 1) * block - at));
        tapSeconds += threadSeconds() - processed;
        processSeconds += processed - start;
    }
    // The process time above holds one tap already; take it out to compare with the effect alone.
    const double effectAlone = processSeconds - tapSeconds;
    const double blocks = static_cast<double>(state.iterations()) * kBatch;
    state.counters["process_us"] = effectAlone * 1e6 / blocks;
    state.counters["tap_us"] = tapSeconds * 1e6 / blocks;
    state.counters["tap_percent"] = effectAlone > 0 ? 100.0 * tapSeconds / effectAlone : 0.0;
    editor->close();
    harness.reset();
    XDestroyWindow(display, parent);
}
BENCHMARK(tapShareOfProcess)->Arg(64)->Arg(512)->Arg(4096)->Unit(benchmark::kMicrosecond);

}  // namespace
