#include "editor/CLineVUBar.h"

#include <algorithm>
#include <cmath>

#include "editor/EditorPalette.h"
#include "lib/drawing/CDrawContext.h"

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
    smooth(channels[0], left);
    smooth(channels[1], right);
    // No setDirty here: it would take the frame's lock on the audio thread. The display repaints on its timer.
}

void CLineVUBar::smooth(Channel& channel, float x) {
    if (!std::isfinite(x)) x = 0.0f;
    x = std::fabs(x);
    float smoothed = channel.smoothed.load(std::memory_order_relaxed);
    smoothed += (x - smoothed) * (x <= smoothed ? kFall : kRise) + 1e-19f;
    channel.smoothed.store(smoothed, std::memory_order_relaxed);
    if (smoothed > channel.loudest.load(std::memory_order_relaxed))
        channel.loudest.store(smoothed, std::memory_order_relaxed);
    channel.cleared.store(false, std::memory_order_relaxed);
}

float CLineVUBar::getLevelDb(int channel) const {
    const Channel& c = channels[channel & 1];
    if (c.cleared.load(std::memory_order_relaxed)) return kClearedDb;
    return kDbPerNeper * std::log(std::max(c.smoothed.load(std::memory_order_relaxed), 1e-30f));
}

void CLineVUBar::updatePeaks(uint32_t now) {
    for (Channel& channel : channels) {
        // A level the audio thread raises between these two steps waits for the next call.
        const float loudest = channel.loudest.exchange(0.0f, std::memory_order_relaxed);
        if (channel.cleared.load(std::memory_order_relaxed)) continue;
        const float level = kDbPerNeper * std::log(std::max(loudest, 1e-30f));
        if (level >= channel.peakDb) {
            channel.peakDb = level;
            channel.peakTick = now;
            channel.peakFalling = false;
        } else if (now - channel.peakTick >= kPeakHoldMs || channel.peakFalling) {
            if (!channel.peakFalling) {
                channel.peakTick = now;
                channel.peakFalling = true;
            } else {
                const float t = std::min(static_cast<float>(now - channel.peakTick) / 60.0f, 1000.0f);
                channel.peakTick = now;
                channel.peakDb = std::max(channel.peakDb - 2.0f * t, -100.0f);
            }
        }
    }
}

void CLineVUBar::clearLevels() {
    for (Channel& channel : channels) channel.cleared.store(true, std::memory_order_relaxed);
}

void CLineVUBar::draw(CDrawContext* context) {
    const CRect& r = getViewSize();
    drawBar(context, CRect(r.left, r.top, r.left + kBarWidth, r.bottom), getLevelDb(0), channels[0].peakDb);
    drawBar(context, CRect(r.right - kBarWidth, r.top, r.right, r.bottom), getLevelDb(1), channels[1].peakDb);
    setDirty(false);
}

void CLineVUBar::drawBar(CDrawContext* context, const CRect& bar, float levelDb, float peakDb) const {
    const int n = static_cast<int>(bar.getHeight() * 0.5);
    if (n <= 0) return;
    const double s = 55.0 / n;
    // Rows clamp to the bar's range first, so that a level of -1111 dB cannot overflow an int.
    auto rowOf = [&](float db) {
        return static_cast<int>(std::clamp(n + (static_cast<double>(db) - 7.0) * s, -1.0, n + 1.0));
    };
    const int levelRow = rowOf(levelDb);
    const int peakRow = rowOf(peakDb);
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
