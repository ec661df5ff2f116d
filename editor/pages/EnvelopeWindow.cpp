#include "editor/pages/EnvelopeWindow.h"

#include <algorithm>
#include <cmath>

#include "editor/pages/PageLayouts.h"
#include "editor/pages/PageStyle.h"
#include "framework/parameters/UnitType.h"
#include "lib/drawing/CDrawContext.h"

namespace ZonfraPages {

using namespace Vinta;

namespace {

// A chart band 10 units above and below a dial row, right of the dials, on pixel centres.
CRect chartBeside(const CRect& page, double rowTop) {
    const double width = page.getWidth();
    return {std::floor(width - 90.0) + 0.5, std::floor(rowTop - 10.0) + 0.5, std::floor(width - 10.0) + 0.5,
            std::floor(rowTop + 22.0) + 0.5};
}

}  // namespace

CEnvelopeWindow::CEnvelopeWindow(const CInfo& info) : Vinta_AttachedWindow(info), zoom(ownParameter()) {
    zoom.initFromRecord({"PPZOOM", "Zoom", "Zoom", 1.0f, 15.0f, 10.0f, 10.0f, false, 0.0f, Ondra::kUnitNumber, 0});

    DialColumn column{5.0, 16.0, 93.0, 35.0};
    Ondra::IPluginParameter* const* p = info.parameters;  // LP attack, release, strength, HP the same,
    addRow(column, p[0]);                                 // measuring point, boost
    addRow(column, p[1]);
    addRow(column, p[2], 5.0, nullptr, true);
    addRow(column, p[3]);
    addRow(column, p[4]);
    addRow(column, p[5], 5.0, nullptr, true);
    column.left = 100.0;
    column.top = 103.0;
    addRow(column, p[6]);
    addRow(column, p[7], 0.0, nullptr, true);
    DialColumn zoomColumn{120.0, 55.0, 72.0, 30.0, 8.0, 9.0, 0x11};
    addRow(zoomColumn, &zoom);

    const CRect page = localRect();
    lowChart = chartBeside(page, 30.0);
    highChart = chartBeside(page, 77.0);
    clearHistory();
}

void CEnvelopeWindow::pushEnvelope(float lowValue, float highValue) {
    if (std::isfinite(lowValue)) lowPeak = std::max(lowPeak, lowValue);
    if (std::isfinite(highValue)) highPeak = std::max(highPeak, highValue);
    if (++count < kTapsPerPixel) return;
    const uint32_t next = (newest.load(std::memory_order_relaxed) + 1) % kHistoryLength;
    low[next].store(lowPeak, std::memory_order_relaxed);
    high[next].store(highPeak, std::memory_order_relaxed);
    newest.store(next, std::memory_order_release);
    lowPeak = highPeak = 0.0f;
    count = 0;
    markChanged();
}

void CEnvelopeWindow::clearHistory() {
    for (int i = 0; i < kHistoryLength; ++i) {
        low[i].store(0.0f, std::memory_order_relaxed);
        high[i].store(0.0f, std::memory_order_relaxed);
    }
    lowPeak = highPeak = 0.0f;
    count = 0;
    markChanged();
}

float CEnvelopeWindow::historyAt(bool lowSide, int age) const {
    const auto& values = lowSide ? low : high;
    const int slot = (static_cast<int>(newest.load(std::memory_order_acquire)) - age + 2 * kHistoryLength) %
                     kHistoryLength;
    return values[slot].load(std::memory_order_relaxed);
}

void CEnvelopeWindow::drawChart(CDrawContext* context, const CRect& chart, bool lowSide) {
    const double scale = zoom.getValue() / 10.0;
    const int width = std::min(kHistoryLength, static_cast<int>(chart.getWidth()));
    CPoint points[kHistoryLength + 2];
    for (int x = 0; x < width; ++x) {
        const double v = std::min(1.0, std::max(0.0, historyAt(lowSide, width - 1 - x) * scale));
        points[x] = CPoint(chart.left + x, chart.bottom - v * chart.getHeight());
    }
    points[width] = CPoint(chart.left + width - 1, chart.bottom);
    points[width + 1] = CPoint(chart.left, chart.bottom);
    context->setLinearGradient(chart, withAlpha(kPanelColor130, 150), withAlpha(kPanelColor130, 15));
    context->drawPolygon(points, width + 2, kDrawFilled, true);
    context->setFrameColor(frameColour());
    context->setLineWidth(1.0f);
    context->drawPolyline(points, width);
    context->drawRect(chart, kDrawStroked);
}

void CEnvelopeWindow::drawContent(CDrawContext* context) {
    drawChart(context, lowChart, true);
    drawChart(context, highChart, false);
}

}  // namespace ZonfraPages
