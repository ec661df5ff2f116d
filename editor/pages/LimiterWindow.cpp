#include "editor/pages/LimiterWindow.h"

#include <algorithm>
#include <cmath>

#include "editor/pages/PageStyle.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace ZonfraPages {

using namespace Vinta;

// Parameters: release, the limiter's switch, output gain, the effect's global switch.
CLimiterWindow::CLimiterWindow(const CInfo& info) : Vinta_AttachedWindow(info) {
    DialColumn column{5.0, 4.0, 102.0, 48.0};
    addRow(column, info.parameters[0]);
    addRow(column, info.parameters[1]);
    addRow(column, info.parameters[2]);
    bar = CRect(4.5, column.top + 2.5, 4.5 + kBarWidth, column.top + 7.5);
    column.top += 20.0;
    addRow(column, info.parameters[3], 0.0, "Global");
}

void CLimiterWindow::setGainReduction(float gain) {
    if (!std::isfinite(gain)) return;
    const float shown = shownGain.load(std::memory_order_relaxed);
    const float gap = gain - shown;
    shownGain.store(shown + gap * (gain < shown ? 1.0f : 0.01f) + 1e-19f, std::memory_order_relaxed);
    markChanged();
}

double CLimiterWindow::barFraction(double gain) {
    if (!(gain > 0.0)) return 1.0;
    return std::clamp(std::fabs(20.0 * std::log10(gain)) / kBarRangeDb, 0.0, 1.0);
}

void CLimiterWindow::drawContent(CDrawContext* context) {
    context->setLineWidth(1.0f);
    context->setFrameColor(frameColour());
    context->drawRect(bar, kDrawStroked);

    context->setFont(kNormalFont, 8.0, 0);
    context->setFontColor(kPanelColor200);
    const double labelTop = bar.bottom + 1.0;
    // The end marks stand inside the bar's ends, the others centred on their places.
    const struct {
        const char* text;
        double at;
        int align;
    } marks[] = {{"-24", 0.0, 0}, {"-18", 0.25, 1}, {"-12", 0.5, 1}, {"-6", 0.75, 1}, {"0", 1.0, 2}};
    for (const auto& mark : marks) {
        const double x = bar.left + mark.at * kBarWidth;
        const double left = mark.align == 0 ? x : mark.align == 1 ? x - 10.0 : x - 20.0;
        context->drawString(mark.text, CRect(left, labelTop, left + 20.0, labelTop + 9.0), 0, mark.align);
    }
    context->drawString("GR", CRect(bar.right + 2.0, bar.top - 3.0, bar.right + 16.0, bar.bottom + 3.0), 0, 0);

    const double length = barFraction(getShownGain()) * kBarWidth;
    if (length <= 0.0) return;
    context->setFillColor(kValueColor);
    context->drawRect(CRect(bar.right - length, bar.top + 1.4, bar.right, bar.bottom - 1.4), kDrawFilled);
}

}  // namespace ZonfraPages
