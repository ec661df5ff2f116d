#pragma once
// A two-channel level meter of short lines: the level rises at once and falls by 1 % of the gap
// per audio block, a peak line holds for a second and then falls; lines above 0 dB turn red.
// The audio thread only smooths; decibels and the peak line are worked out on the window's side,
// so the tap takes no clock and no logarithm.
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
    // Any thread: all lines unlit until the next level; the peak falls by itself.
    void clearLevels();
    // Window thread, before drawing: the peak line takes the loudest level since the last call.
    void updatePeaks(uint32_t now);
    void draw(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CLineVUBar"; }

    float getLevelDb(int channel) const;
    float getPeakDb(int channel) const { return channels[channel & 1].peakDb; }

private:
    struct Channel {
        std::atomic<float> smoothed{0.0f};
        // The loudest smoothed level since the window last looked; the audio thread only raises it.
        std::atomic<float> loudest{0.0f};
        std::atomic<bool> cleared{true};
        float peakDb = -11111.0f;
        uint32_t peakTick = 0;
        bool peakFalling = false;
    };
    static void smooth(Channel& channel, float x);
    void drawBar(Vinta::CDrawContext* context, const Vinta::CRect& bar, float levelDb, float peakDb) const;

    Channel channels[2];
};

}  // namespace ZonfraEditor
