#include "editor/CPlotDisplay.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "editor/EditorPalette.h"
#include "editor/FilterResponse.h"
#include "effect/ModulationMath.h"
#include "framework/parameters/IPluginParameter.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace ZonfraEditor {

using namespace Vinta;

namespace {

constexpr int kSlopeDb[] = {12, 24, 48, 96};
constexpr double kDbPerNeper = 8.685889638065037;
constexpr float kMinCutoffMove = 0.5f;

CColor scaled(const CColor& c, double r, double g, double b, uint8_t alpha) {
    return {static_cast<uint8_t>(c.red * r), static_cast<uint8_t>(c.green * g), static_cast<uint8_t>(c.blue * b),
            alpha};
}

const CColor kEnvCurveColor = scaled(kCurveColor, 0.6, 1.0, 0.6, 80);
const CColor kLfoCurveColor = scaled(kCurveColor, 1.0, 0.6, 0.6, 80);
const CColor kBaseCurveColor = scaled(kCurveColor, 1.0, 1.0, 1.0, 30);

double finiteOr(double v, double fallback) { return std::isfinite(v) ? v : fallback; }

}  // namespace

CPlotDisplay::CPlotDisplay(const CRect& rect, Ondra::IPluginParameter* const* sources)
    : CView(rect), renderer(22, 22050), filterModel(8) {
    setMouseEnabled(false);
    setTransparency(true);
    plotRect = CRect(27.0, 15.0, rect.getWidth() - 26.0, rect.getHeight() - 25.0);
    pointCount = std::max(2, static_cast<int>(plotRect.getWidth() / kPointStep));
    pointHertz.resize(static_cast<size_t>(pointCount));
    for (int i = 0; i < pointCount; ++i)
        pointHertz[static_cast<size_t>(i)] =
            renderer.frequencyAt(static_cast<float>(i), static_cast<float>(pointCount));
    for (int i = 0; i < kCurveCount; ++i) {
        curves[i].assign(static_cast<size_t>(pointCount), 0.0);
        dirty[i].store(true);
    }
    combined.resize(static_cast<size_t>(pointCount));
    points.resize(static_cast<size_t>(pointCount) + 10);
    spectrumDb.resize(static_cast<size_t>(std::max(1.0, plotRect.getWidth())));
    spectrumPath.resize(spectrumDb.size() + 2);
    for (int i = 0; i < kSourceCount; ++i) params[i] = sources ? sources[i] : nullptr;
    modulated[0].store(value(kLowFreq));
    modulated[1].store(value(kHighFreq));
    modulated[2].store(value(kLowFreq));
    modulated[3].store(value(kHighFreq));
    for (Ondra::IPluginParameter* p : params)
        if (p) p->addListener(this, false);
}

CPlotDisplay::~CPlotDisplay() {
    for (Ondra::IPluginParameter* p : params)
        if (p) p->removeListener(this);
}

float CPlotDisplay::value(Source s) const {
    Ondra::IPluginParameter* p = params[s];
    if (!p) return 0.0f;
    const float v = p->getValue();
    return std::isfinite(v) ? v : 0.0f;
}

void CPlotDisplay::markDirty(bool high) {
    for (int id = high ? kHigh : kLow; id < kCurveCount; id += 2) dirty[id].store(true, std::memory_order_relaxed);
}

void CPlotDisplay::setEnvelopeCutoffs(float low, float high) {
    const float given[2] = {low, high};
    for (int side = 0; side < 2; ++side) {
        if (!std::isfinite(given[side])) continue;
        if (std::fabs(given[side] - modulated[side].load(std::memory_order_relaxed)) <= kMinCutoffMove) continue;
        modulated[side].store(given[side], std::memory_order_relaxed);
        dirty[kLowEnv + side].store(true, std::memory_order_relaxed);
    }
}

void CPlotDisplay::setLfoCutoffs(float low, float high) {
    const float given[2] = {low, high};
    for (int side = 0; side < 2; ++side) {
        if (!std::isfinite(given[side])) continue;
        if (std::fabs(given[side] - modulated[2 + side].load(std::memory_order_relaxed)) <= kMinCutoffMove) continue;
        modulated[2 + side].store(given[side], std::memory_order_relaxed);
        dirty[kLowLfo + side].store(true, std::memory_order_relaxed);
    }
}

void CPlotDisplay::setSampleRate(float hertz) { renderer.setSampleRate(hertz); }

void CPlotDisplay::setReadout(const char* text) {
    std::snprintf(readout, sizeof readout, "%s", text ? text : "");
    setDirty(true);
}

void CPlotDisplay::parameterChanged(Ondra::IPluginParameter* changed) {
    for (int s = 0; s < kSourceCount; ++s) {
        if (params[s] != changed) continue;
        if (s <= kHighWidth) markDirty(s % 2 == 1);
        // Moved cutoffs start from a new setting until the next audio block tells where they went.
        if (s == kLowFreq || s == kHighFreq) {
            modulated[s].store(value(static_cast<Source>(s)), std::memory_order_relaxed);
            modulated[2 + s].store(value(static_cast<Source>(s)), std::memory_order_relaxed);
        }
        // The depths decide whether a moved curve differs from the static one.
        if (s >= kLowEnvDepth) markDirty(s % 2 == 0);
    }
    // Changes may come on the audio thread, where the frame's lock must not be taken: the curves'
    // flags are enough, as the display repaints on its timer.
}

void CPlotDisplay::computeCurve(double* out, const double* hertz, int count, float cutoff, bool highPass,
                                int slopeRow, float q, float width) {
    if (!std::isfinite(cutoff)) cutoff = highPass ? 10.0f : 22000.0f;
    const double rate = renderer.getSampleRate();
    filterModel.setSampleRate(rate);
    filterModel.setType(highPass ? 1 : 0);
    filterModel.setSlope(kSlopeDb[std::clamp(slopeRow, 1, 4) - 1]);
    filterModel.setCutoff(cutoff);
    // A design of exactly this cutoff, not of another that visited its cache bin before.
    filterModel.clearDesigns();
    slopeFilterResponseDb(filterModel, hertz, out, count);
    // The resonance peak, designed as the effect's control step designs it.
    const ModulationMath::ResonanceShape shape = ModulationMath::resonanceShape(
        std::isfinite(q) ? q : 0.0f, std::clamp(cutoff, 0.0f, 22050.0f), std::isfinite(width) ? width : 1.0f);
    DSP::CPeakBiquad peak;
    peak.setSampleRate(static_cast<int>(rate));
    peak.set(6, std::min(cutoff, 18000.0f), shape.bandwidth, shape.gainDb, true);
    DSP::CBiquadCascade section(1);
    section.setOrder(2);
    section.b0[0] = peak.b0, section.b1[0] = peak.b1, section.b2[0] = peak.b2;
    section.a1[0] = peak.a1, section.a2[0] = peak.a2;
    section.response(hertz, rate, out, count, true, true);
    for (int i = 0; i < count; ++i) out[i] = finiteOr(out[i], -200.0);
}

void CPlotDisplay::updateCurves() {
    if (filterModel.getSampleRate() != renderer.getSampleRate())
        for (auto& flag : dirty) flag.store(true, std::memory_order_relaxed);
    const bool active[4] = {value(kLowEnvDepth) != 0.0f, value(kHighEnvDepth) != 0.0f, value(kLowLfoDepth) != 0.0f,
                            value(kHighLfoDepth) != 0.0f};
    const int order[kCurveCount] = {kHigh, kLow, kLowEnv, kHighEnv, kLowLfo, kHighLfo};
    for (int id : order) {
        if (!dirty[id].exchange(false, std::memory_order_relaxed)) continue;
        const bool high = id % 2 == 1;
        float cutoff = value(high ? kHighFreq : kLowFreq);
        if (id >= kLowEnv) {
            const int moved = id - kLowEnv;  // low env, high env, low LFO, high LFO
            if (active[moved]) cutoff = modulated[moved].load(std::memory_order_relaxed);
        }
        computeCurve(curves[id].data(), pointHertz.data(), pointCount, cutoff, high,
                     static_cast<int>(value(high ? kHighSlope : kLowSlope)), value(high ? kHighQ : kLowQ),
                     value(high ? kHighWidth : kLowWidth));
    }
}

void CPlotDisplay::draw(CDrawContext* context) {
    if (clearRequested.exchange(false, std::memory_order_relaxed)) renderer.clear();
    nonFinite = 0;
    drawGrid(context);
    drawSpectrum(context);
    if (params[kLowFreq] && params[kHighFreq]) {
        const bool parallel = value(kMode) >= 0.5f;
        updateCurves();
        CRect savedClip;
        context->getClipRect(savedClip);
        CRect area = plotRect;
        area.offset(getViewSize().left, getViewSize().top);
        context->setClipRect(area.bound(savedClip));
        context->setLineWidth(2.0f);
        drawCurve(context, curves[kLow].data(), kBaseCurveColor);
        drawCurve(context, curves[kHigh].data(), kBaseCurveColor);
        auto both = [&](Curve a, Curve b, const CColor& colour) {
            for (int i = 0; i < pointCount; ++i)
                combined[static_cast<size_t>(i)] = curves[a][static_cast<size_t>(i)] + curves[b][static_cast<size_t>(i)];
            drawCurve(context, combined.data(), colour);
        };
        if (!parallel) {
            both(kLowEnv, kHighEnv, kEnvCurveColor);
            both(kLowLfo, kHighLfo, kLfoCurveColor);
            both(kLow, kHigh, kCurveColor);
        } else {
            if (value(kLowEnvDepth) != 0.0f) drawCurve(context, curves[kLowEnv].data(), kEnvCurveColor);
            if (value(kHighEnvDepth) != 0.0f) drawCurve(context, curves[kHighEnv].data(), kEnvCurveColor);
            if (value(kLowLfoDepth) != 0.0f) drawCurve(context, curves[kLowLfo].data(), kLfoCurveColor);
            if (value(kHighLfoDepth) != 0.0f) drawCurve(context, curves[kHighLfo].data(), kLfoCurveColor);
            drawCurve(context, curves[kLow].data(), kCurveColor);
            drawCurve(context, curves[kHigh].data(), kCurveColor);
        }
        context->setClipRect(savedClip);
    }
    if (readout[0]) {
        const CRect& v = getViewSize();
        const CRect box(v.left + plotRect.left + 6, v.top + plotRect.top + 3, v.left + plotRect.right - 6,
                        v.top + plotRect.top + 17);
        context->setFont(kNormalFont, 11.0, 0);
        context->setFontColor(kValueTextColor);
        context->drawString(readout, box, 0, kAlignRight);
    }
    setDirty(false);
}

void CPlotDisplay::drawCurve(CDrawContext* context, const double* db, const CColor& colour) {
    const CRect& v = getViewSize();
    const double left = v.left + plotRect.left, top = v.top + plotRect.top, height = plotRect.getHeight();
    for (int i = 0; i < pointCount; ++i) {
        // Far below the plot every level looks the same; clamping keeps the path finite.
        const double level = std::clamp(finiteOr(db[i], -200.0), -200.0, 200.0);
        if (!std::isfinite(db[i])) ++nonFinite;
        points[static_cast<size_t>(i)] = CPoint(left + kPointStep * i, top + (level - kTopDb) * (-1.0 / kRangeDb) * height);
    }
    context->setFrameColor(colour);
    context->drawPolyline(points.data(), pointCount);
}

void CPlotDisplay::drawSpectrum(CDrawContext* context) {
    renderer.paint();
    const int width = static_cast<int>(spectrumDb.size());
    renderer.curve(spectrumDb.data(), width);
    const CRect& v = getViewSize();
    const double left = v.left + plotRect.left, bottom = v.top + plotRect.bottom, h = plotRect.getHeight();
    std::vector<CPoint>& path = spectrumPath;
    for (int x = 0; x < width; ++x) {
        const double level = std::clamp(static_cast<double>(finiteOr(spectrumDb[static_cast<size_t>(x)], -DSP::CFFTRenderer::kRangeDb)),
                                        -static_cast<double>(DSP::CFFTRenderer::kRangeDb), 0.0);
        path[static_cast<size_t>(x)] =
            CPoint(std::floor(left + x + 0.5), std::floor(bottom - DSP::CFFTRenderer::heightFraction(static_cast<float>(level)) * h + 0.5));
    }
    path[static_cast<size_t>(width)] = CPoint(left + width - 1, bottom);
    path[static_cast<size_t>(width) + 1] = CPoint(left, bottom);
    context->setFillColor(CColor{kPanelColor60.red, kPanelColor60.green, kPanelColor60.blue, 70});
    context->setFrameColor(kPanelColor130);
    context->setLineWidth(1.0f);
    context->drawPolygon(path.data(), width + 2, kDrawFilled, true);
    context->drawPolyline(path.data(), width);
}

void CPlotDisplay::drawGrid(CDrawContext* context) {
    const CRect& v = getViewSize();
    CRect area = plotRect;
    area.offset(v.left, v.top);
    const double w = area.getWidth() - 1.0, h = area.getHeight() - 1.0;
    const double lowHz = renderer.getLowHz(), highHz = renderer.getHighHz();
    auto xOf = [&](double f) {
        return std::floor(area.left + w * std::log(std::min(f, highHz) / lowHz) / std::log(highHz / lowHz)) + 0.5;
    };
    context->setLineWidth(1.0f);
    context->setFrameColor(kPanelColor20);
    context->drawRect(area, kDrawStroked);
    context->setFont(kSystemFont, 8.0, 0);
    context->setFontColor(kPanelColor200);
    static constexpr double kTicks[] = {25, 50, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    double previous = kTicks[0];
    for (double tick : kTicks) {
        const double step = (tick - previous) / 6.0;
        context->setFrameColor(kPanelColor20);
        if (step > 0.0)
            for (int i = 1; i <= 5; ++i) {
                const double x = xOf(previous + i * step);
                context->drawLine(x, area.top, x, area.bottom);
            }
        const double x = xOf(tick);
        context->setFrameColor(kPanelColor60);
        context->drawLine(x, area.top, x, area.bottom);
        char label[16];
        if (tick < 1000.0)
            std::snprintf(label, sizeof label, "%.0f Hz", tick);
        else
            std::snprintf(label, sizeof label, "%.0f kHz", tick / 1000.0);
        const double half = std::trunc(context->getStringWidth(label) / 2.0);
        double from = x - half, to = x + half;
        if (from < area.left) to += area.left - from, from = area.left;
        if (to > area.right) from -= to - area.right, to = area.right;
        context->drawString(label, CRect(from - 1, area.bottom + 1, to + 1, area.bottom + 12), 0, kAlignCenter);
        previous = tick;
    }
    const double range = DSP::CFFTRenderer::kRangeDb;
    context->setFrameColor(kPanelColor20);
    for (double level = -12.0; level >= -range; level -= 12.0) {
        const double y = std::floor(area.bottom - (level + range) / range * h) + 0.5;
        context->drawLine(area.left, y, area.right, y);
    }
}

}  // namespace ZonfraEditor
