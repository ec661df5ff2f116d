#include "editor/pages/LfoWindow.h"

#include <cmath>
#include <vector>

#include "editor/pages/PageStyle.h"
#include "lib/drawing/CDrawContext.h"

namespace ZonfraPages {

using namespace Vinta;

// Parameters: rate, shape, sync, low-pass and high-pass depth, shift, tempo.
CLFOWindow::CLFOWindow(const CInfo& info)
    : Vinta_AttachedWindow(info), shape(info.parameters[1]), shift(info.parameters[5]) {
    DialColumn column{5.0, 16.0, 115.0, 45.0};
    addRow(column, info.parameters[0]);
    addRow(column, shape);
    addRow(column, info.parameters[2], 5.0);
    addRow(column, info.parameters[3], 0.0, nullptr, true);
    addRow(column, info.parameters[4], 0.0, nullptr, true);

    const double width = localRect().getWidth();
    DialColumn side{width - 85.0, 63.0, 75.0, 25.0, 9.0, 9.0};
    addRow(side, shift);
    if (Vinta_MiniDial* bpm = addRow(side, info.parameters[6])) bpm->setSensitivity(400.0f);
    listenTo(shape);
    listenTo(shift);

    chart = CRect(std::floor(width - 85.0) + 0.5, 20.5, std::floor(width - 10.0) + 0.5, 52.5);
}

void CLFOWindow::drawContent(CDrawContext* context) {
    const int width = static_cast<int>(chart.getWidth());
    if (width < 2) return;
    const double half = chart.getHeight() * 0.5;
    const double middle = chart.top + half;
    preview.setSampleRate(width);
    preview.setRate(1.0);
    preview.setShape(previewShape(shape ? shape->getInt() : 0));
    preview.restart();
    preview.setShift(0.0);
    preview.setShift(shift ? shift->getValue() : 0.0);

    CPoint points[256];
    const int count = std::min(width, 254);
    for (int x = 0; x < count; ++x)
        points[x] = CPoint(chart.left + x, middle - preview.tick() * half * 0.9);
    points[count] = CPoint(chart.left + count - 1, middle);
    points[count + 1] = CPoint(chart.left, middle);

    context->setLinearGradient(chart, frameColour(), withAlpha(kPanelColor200, 15));
    context->drawPolygon(points, count + 2, kDrawFilled, true);
    context->setLineWidth(1.0f);
    context->setFrameColor(kPanelColor200);
    context->drawPolyline(points, count);
    context->setFrameColor(frameColour());
    context->drawRect(chart, kDrawStroked);
}

}  // namespace ZonfraPages
