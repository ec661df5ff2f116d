#include <benchmark/benchmark.h>

#include <X11/Xlib.h>
#include <nanovg.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include "EffectHarness.h"
#include "editor/CZonfraEditor.h"
#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext_GL.h"
#include "lib/views/CFrame.h"
#include "lib_drawing/OffscreenGLWindow.h"

// The whole main panel, one paint per iteration, with noise running through the effect and its
// audio tap between paints so that the spectrum moves: milliseconds per frame at 100 % and 200 %.
// Needs a display for the editor's window (xvfb-run -a); the GL cases need GLX 3.3 as well.
namespace {

using namespace Vinta;

constexpr int kWidth = 534, kHeight = 488;

struct OpenPanel {
    OpenPanel() {
        setenv("ZONFRA_NO_GL", "1", 1);  // the window paints nothing of its own beside the benchmark
        display = XOpenDisplay(nullptr);
        if (!display) return;
        parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1100, 1000, 0, 0, 0);
        CZonfra::editorFactory = [](CZonfra& effect) -> Ondra::PluginEditor* { return new CZonfraEditor(&effect); };
        harness = std::make_unique<EffectHarness>(44100.0f, 1024);
        editor = dynamic_cast<CZonfraEditor*>(harness->effect->getEditor());
        editor->setEventDriver(X11::EventDriver::HostIdle);
        if (!editor->open(reinterpret_cast<void*>(parent))) editor = nullptr;
        harness->effect->findParameter("LOWPASSFREQ")->setValue(2000);
        harness->effect->findParameter("LP Strength")->setValue(0.5f);
        std::mt19937 random(7);
        std::uniform_real_distribution<float> level(-0.3f, 0.3f);
        for (float& v : noise) v = level(random);
    }
    ~OpenPanel() {
        harness.reset();
        if (display) XCloseDisplay(display);
    }
    // One paint's worth of audio (23 ms at 44.1 kHz), then the frame's tree drawn into `context`.
    void frame(CDrawContext& context) {
        std::vector<float> left = noise, right = noise;
        harness->runBlock(left.data(), right.data(), static_cast<int>(left.size()));
        editor->getFrame()->draw(&context);
    }

    Display* display = nullptr;
    Window parent = 0;
    std::unique_ptr<EffectHarness> harness;
    CZonfraEditor* editor = nullptr;
    std::vector<float> noise = std::vector<float>(1024);
};

OpenPanel& panel() {
    static OpenPanel shared;
    return shared;
}

// Software: the tree drawn in editor units; at 200 % the frame stretches that image to the window.
void softwarePanel(benchmark::State& state) {
    OpenPanel& p = panel();
    if (!p.editor) return state.SkipWithError("no X display for the editor's window");
    const int scale = static_cast<int>(state.range(0));
    auto* units = new CBitmap(kWidth, kHeight);
    auto* window = new CBitmap(kWidth * scale, kHeight * scale);
    for (auto _ : state) {
        units->clear();
        p.frame(*units->getDrawContext());
        if (scale > 1) window->getDrawContext()->drawBitmapStretched(*units, CRect(0, 0, kWidth * scale, kHeight * scale));
        benchmark::DoNotOptimize(window->getPixels());
    }
    units->forget();
    window->forget();
}
BENCHMARK(softwarePanel)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// nanovg on Mesa's llvmpipe: the work the GL path hands the driver, not a real GPU's speed.
void glPanel(benchmark::State& state) {
    OpenPanel& p = panel();
    if (!p.editor) return state.SkipWithError("no X display for the editor's window");
    const int scale = static_cast<int>(state.range(0));
    DrawingTest::OffscreenGLWindow window(kWidth * scale, kHeight * scale);
    if (!window.ready()) return state.SkipWithError(("no OpenGL 3.3 core context: " + window.whyNot()).c_str());
    NVGcontext* nvg = CDrawContext_GL::createNanoVG(false);
    auto* context = new CDrawContext_GL(nullptr, nvg, kWidth * scale, kHeight * scale);
    for (auto _ : state) {
        window.beginPaint();
        context->beginFrame(kWidth * scale, kHeight * scale, 1.0f);
        nvgScale(nvg, static_cast<float>(scale), static_cast<float>(scale));
        p.frame(*context);
        context->endFrame();
        window.readPixels();  // waits for the frame to finish
    }
    context->forget();
    CDrawContext_GL::deleteNanoVG(nvg);
}
BENCHMARK(glPanel)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
