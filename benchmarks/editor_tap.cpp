#include <benchmark/benchmark.h>

#include <X11/Xlib.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "EffectHarness.h"
#include "editor/CZonfraEditor.h"

// What the open editor's audio tap adds to the audio thread: one host block of noise through the
// effect with no editor, and with the editor open (meters, spectrum hand-over, moved cutoffs).
// The difference over the first is the tap's share of a process call. Needs a display (xvfb-run -a).
namespace {

std::vector<float> noise(int samples) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> level(-0.5f, 0.5f);
    std::vector<float> out(static_cast<size_t>(samples));
    for (float& v : out) v = level(random);
    return out;
}

// One connection for the program, opened before any benchmark runs.
Display* const display = XOpenDisplay(nullptr);

void process(benchmark::State& state, bool withEditor) {
    setenv("ZONFRA_NO_GL", "1", 1);
    if (withEditor && !display) return state.SkipWithError("no X display for the editor's window");
    CZonfra::EditorFactory makeEditor = [](CZonfra& effect) -> Ondra::PluginEditor* { return new CZonfraEditor(&effect); };
    CZonfra::editorFactory = withEditor ? makeEditor : nullptr;
    auto harness = std::make_unique<EffectHarness>(48000.0f, 512);
    if (withEditor) {
        auto* editor = dynamic_cast<CZonfraEditor*>(harness->effect->getEditor());
        editor->setEventDriver(Vinta::X11::EventDriver::HostIdle);
        const Window parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 600, 500, 0, 0, 0);
        if (!editor->open(reinterpret_cast<void*>(parent))) return state.SkipWithError("the editor did not open");
    }
    const std::vector<float> source = noise(512);
    std::vector<float> left = source, right = source;
    for (auto _ : state) {
        harness->runBlock(left.data(), right.data(), 512);
        benchmark::DoNotOptimize(left.data());
        left = source, right = source;
    }
    harness.reset();
}

void processWithoutEditor(benchmark::State& state) { process(state, false); }
void processWithEditorOpen(benchmark::State& state) { process(state, true); }
BENCHMARK(processWithoutEditor)->Unit(benchmark::kMicrosecond);
BENCHMARK(processWithEditorOpen)->Unit(benchmark::kMicrosecond);

}  // namespace
