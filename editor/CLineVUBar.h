#pragma once
// A two-channel level meter of short lines: the level rises at once and falls by 1 % of the gap
// per audio block, a peak line holds for a second and then falls; lines above 0 dB turn red.
#include <atomic>
#include <cstdint>

#include "lib/views/CView.h"

namespace ZonfraEditor {

class CLineVUBar : public Vinta::CView {
public:
    static constexpr double kBarWidth = 8.0;
    static constexpr double kBarGap = 3.0;
    static constexpr float kClearedDb = -1111.0f;

    // `size` holds both bars side by side.
    explicit CLineVUBar(const Vinta::CRect& size);

    // Audio thread: stores numbers only, and leaves the repaint to the display's timer. Values that
    // are not finite count as silence.
    void setLevels(float left, float right);
    // Any thread: all lines unlit; the peak falls by itself.
    void clearLevels();
    void draw(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CLineVUBar"; }

    float getLevelDb(int channel) const { return channels[channel & 1].levelDb.load(std::memory_order_relaxed); }
    float getPeakDb(int channel) const { return channels[channel & 1].peakDb.load(std::memory_order_relaxed); }

private:
    struct Channel {
        float smoothed = 0.0f;
        std::atomic<float> levelDb{kClearedDb};
        std::atomic<float> peakDb{-11111.0f};
        uint32_t peakTick = 0;
        bool peakFalling = false;
    };
    void update(Channel& channel, float x, uint32_t now);
    void drawBar(Vinta::CDrawContext* context, const Vinta::CRect& bar, const Channel& channel) const;

    Channel channels[2];
};

}  // namespace ZonfraEditor
