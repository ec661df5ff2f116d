#include "editor/CLineVUBar.h"

#include <algorithm>
#include <cmath>

#include "editor/EditorPalette.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/VintaClock.h"

namespace ZonfraEditor {

using namespace Vinta;

namespace {
constexpr float kRise = 1.0f;
constexpr float kFall = 0.01f;
constexpr float kDbPerNeper = 8.685889638065037f;
constexpr uint32_t kPeakHoldMs = 1000;
}  // namespace

CLineVUBar::CLineVUBar(const CRect& rect) : CView(rect) {
    setMouseEnabled(false);
    setTransparency(true);
}

void CLineVUBar::setLevels(float left, float right) {
    const uint32_t now = getVintaTicks();
    update(channels[0], left, now);
    update(channels[1], right, now);
    // No setDirty here: it would take the frame's lock on the audio thread. The display repaints on its timer.
}

void CLineVUBar::update(Channel& channel, float x, uint32_t now) {
    if (!std::isfinite(x)) x = 0.0f;
    x = std::fabs(x);
    const float gap = x - channel.smoothed;
    channel.smoothed += gap * (x <= channel.smoothed ? kFall : kRise) + 1e-19f;
    const float level = kDbPerNeper * std::log(std::max(channel.smoothed, 1e-30f));
    channel.levelDb.store(level, std::memory_order_relaxed);
    float peak = channel.peakDb.load(std::memory_order_relaxed);
    if (level >= peak) {
        peak = level;
        channel.peakTick = now;
        channel.peakFalling = false;
    } else if (now - channel.peakTick >= kPeakHoldMs || channel.peakFalling) {
        if (!channel.peakFalling) {
            channel.peakTick = now;
            channel.peakFalling = true;
        } else {
            const float t = std::min(static_cast<float>(now - channel.peakTick) / 60.0f, 1000.0f);
            channel.peakTick = now;
            peak = std::max(peak - 2.0f * t, -100.0f);
        }
    }
    channel.peakDb.store(peak, std::memory_order_relaxed);
}

void CLineVUBar::clearLevels() {
    for (Channel& channel : channels) channel.levelDb.store(kClearedDb, std::memory_order_relaxed);
}

void CLineVUBar::draw(CDrawContext* context) {
    const CRect& r = getViewSize();
    drawBar(context, CRect(r.left, r.top, r.left + kBarWidth, r.bottom), channels[0]);
    drawBar(context, CRect(r.right - kBarWidth, r.top, r.right, r.bottom), channels[1]);
    setDirty(false);
}

void CLineVUBar::drawBar(CDrawContext* context, const CRect& bar, const Channel& channel) const {
    const int n = static_cast<int>(bar.getHeight() * 0.5);
    if (n <= 0) return;
    const double s = 55.0 / n;
    // Rows clamp to the bar's range first, so that a level of -1111 dB cannot overflow an int.
    auto rowOf = [&](float db) {
        return static_cast<int>(std::clamp(n + (static_cast<double>(db) - 7.0) * s, -1.0, n + 1.0));
    };
    const int levelRow = rowOf(channel.levelDb.load(std::memory_order_relaxed));
    const int peakRow = rowOf(channel.peakDb.load(std::memory_order_relaxed));
    const int zeroRow = static_cast<int>(n - 7.0 * s);
    const bool over = zeroRow < levelRow || zeroRow < peakRow;
    context->setLineWidth(0.75f);
    for (int i = n - 1; i >= 0; --i) {
        const double y = bar.top + (n - 1 - i) * 2.0 + 0.5;
        const bool lit = i <= levelRow || i == peakRow;
        if (!lit)
            context->setFrameColor(i == zeroRow ? kPanelColor120 : kPanelColor60);
        else
            context->setFrameColor(over && i > zeroRow ? kMeterRed : kPanelColor200);
        context->drawLine(bar.left, y, bar.right, y);
    }
}

}  // namespace ZonfraEditor
