#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext_GL.h"
#include "lib/drawing/CFontDesc.h"
#include "lib_drawing/OffscreenGLWindow.h"

// One editor-sized frame (534 x 488) with about 60 knob-like items, each a filmstrip frame and a
// label, through each back end; time per iteration is milliseconds per frame.
namespace {

using namespace Vinta;

constexpr int kWidth = 534, kHeight = 488;
constexpr int kColumns = 10, kRows = 6;
constexpr int kKnob = 40, kFrames = 64;

struct Forget {
    void operator()(CBaseObject* object) const { object->forget(); }
};

// A knob filmstrip drawn through the software context: a ring, a value arc and a pointer per frame.
std::unique_ptr<CBitmap, Forget> makeKnobStrip() {
    std::unique_ptr<CBitmap, Forget> strip(new CBitmap(kKnob, kKnob * kFrames));
    CDrawContext& c = *strip->getDrawContext();
    for (int frame = 0; frame < kFrames; ++frame) {
        const double top = frame * kKnob, turn = frame / double(kFrames - 1);
        const CRect ring(4, top + 4, kKnob - 4, top + kKnob - 4);
        c.setFillColor(CColor{50, 54, 60, 255});
        c.setFrameColor(CColor{90, 96, 104, 255});
        c.setLineWidth(2);
        c.drawEllipse(ring, 2);
        c.setFrameColor(CColor{240, 150, 40, 255});
        c.setLineWidth(3);
        c.drawArc(CRect(2, top + 2, kKnob - 2, top + kKnob - 2), 135, 270 * turn + 0.5, 0);
        const double angle = (135 + 270 * turn) * 0.017453292519943295;
        c.setFrameColor(kWhiteCColor);
        c.drawLine(kKnob / 2.0, top + kKnob / 2.0, kKnob / 2.0 + 12 * std::cos(angle), top + kKnob / 2.0 + 12 * std::sin(angle));
    }
    return strip;
}

void drawFrame(CDrawContext& context, CBitmap& strip, int step) {
    context.clearWithColor(CColor{24, 26, 30, 255});
    context.setFont(kNormalFont, 10, 0);
    context.setFontColor(CColor{200, 200, 200, 255});
    char label[16];
    for (int row = 0; row < kRows; ++row)
        for (int column = 0; column < kColumns; ++column) {
            const int item = row * kColumns + column;
            const double left = 4 + column * 53.0, top = 4 + row * 80.0;
            const int frame = (item * 7 + step) % kFrames;
            strip.draw(&context, CRect(left + 6, top, left + 6 + kKnob, top + kKnob), CPoint(0, frame * kKnob));
            std::snprintf(label, sizeof label, "Knob %d", item + 1);
            context.drawString(label, CRect(left, top + kKnob + 2, left + 52, top + kKnob + 16), 0, 1);
        }
}

void softwareContext(benchmark::State& state) {
    auto strip = makeKnobStrip();
    std::unique_ptr<CBitmap, Forget> canvas(new CBitmap(kWidth, kHeight));
    int step = 0;
    for (auto _ : state) {
        drawFrame(*canvas->getDrawContext(), *strip, step++);
        benchmark::DoNotOptimize(canvas->getPixels());
    }
}
BENCHMARK(softwareContext)->Unit(benchmark::kMillisecond);

// Runs under a display only (xvfb-run -a ...); Mesa's llvmpipe renders on the processor, so this is
// no measure of a real GPU, only of the work the GL path hands to the driver.
void nanovgContext(benchmark::State& state) {
    static DrawingTest::OffscreenGLWindow window(kWidth, kHeight);
    if (!window.ready()) {
        state.SkipWithError(("no OpenGL 3.3 core context: " + window.whyNot()).c_str());
        return;
    }
    NVGcontext* nvg = CDrawContext_GL::createNanoVG(false);
    auto strip = makeKnobStrip();
    auto* context = new CDrawContext_GL(nullptr, nvg, kWidth, kHeight);
    int step = 0;
    for (auto _ : state) {
        window.beginPaint();
        context->beginFrame(kWidth, kHeight, 1.0f);
        drawFrame(*context, *strip, step++);
        context->endFrame();
        window.readPixels();  // waits for the frame to finish
    }
    context->forget();
    CDrawContext_GL::deleteNanoVG(nvg);
}
BENCHMARK(nanovgContext)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
