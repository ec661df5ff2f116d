#include <benchmark/benchmark.h>

#include <X11/Xlib.h>
#include <time.h>

#include <chrono>
#include <thread>

#include "lib/drawing/CDrawContext.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/views/CFrame.h"
#include "lib/views/CView.h"

// An editor-sized X11 frame (534 x 488, about 60 views) on its own thread. Idle: the process's CPU
// time per second of wall time while nothing changes (the target is at most 2 % of a core).
// Animating: one view asks for the next frame at every paint; CPU milliseconds per painted frame.
// Needs a display: run under xvfb-run.
namespace {

using namespace Vinta;

class Tile : public CView {
public:
    Tile(const CRect& rect, bool animates) : CView(rect), animating(animates) {}
    void draw(CDrawContext* context) override {
        phase = (phase + 7) % 255;
        context->setFillColor(CColor{static_cast<uint8_t>(animating ? phase : 80), 90, 110, 255});
        context->drawRoundRect(size, 6.0, kDrawFilled);
        context->setFontColor(kWhiteCColor);
        context->drawString("Cutoff", size, 0, kAlignCenter);
        setDirty(animating);
    }

private:
    bool animating;
    int phase = 0;
};

double processCpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return now.tv_sec + now.tv_nsec * 1e-9;
}

void runEditor(benchmark::State& state, bool animating, bool gl) {
    Display* display = XOpenDisplay(nullptr);
    if (!display) return state.SkipWithError("no X display (run under xvfb-run)");
    const Window host = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 534, 488, 0, 0, 0);
    XMapWindow(display, host);
    XSync(display, False);
    CFrame* frame = X11::X11Frame::openFrame(host, CRect(0, 0, 534, 488), nullptr,
                                            {X11::EventDriver::OwnThread, 1.0, gl});
    for (int index = 0; index < 60; ++index) {
        const double x = 10 + (index % 10) * 52, y = 10 + (index / 10) * 78;
        frame->addView(new Tile(CRect(x, y, x + 44, y + 60), animating && index == 0));
    }
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    platform->setFrameRate(60);
    platform->start();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));  // first paints, libraries loaded
    for (auto _ : state) {
        const double cpuBefore = processCpuSeconds();
        const uint64_t paintsBefore = platform->getPaintCount();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const double cpu = processCpuSeconds() - cpuBefore;
        const auto paints = static_cast<double>(platform->getPaintCount() - paintsBefore);
        state.SetIterationTime(cpu);
        state.counters["cpu_percent_of_core"] = cpu * 100.0;
        state.counters["frames_per_second"] = paints;
        state.counters["cpu_ms_per_frame"] = paints > 0 ? cpu * 1000.0 / paints : 0.0;
    }
    X11::X11Frame::closeFrame(frame);
    XDestroyWindow(display, host);
    XCloseDisplay(display);
}

void BM_EditorIdleGL(benchmark::State& state) { runEditor(state, false, true); }
void BM_EditorIdleSoftware(benchmark::State& state) { runEditor(state, false, false); }
void BM_EditorAnimatingGL(benchmark::State& state) { runEditor(state, true, true); }
void BM_EditorAnimatingSoftware(benchmark::State& state) { runEditor(state, true, false); }

BENCHMARK(BM_EditorIdleGL)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditorIdleSoftware)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditorAnimatingGL)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EditorAnimatingSoftware)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
