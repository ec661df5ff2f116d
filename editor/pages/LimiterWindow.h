#pragma once
// The limiter: release, its own switch and output gain, a gain-reduction bar, and the effect's
// global limiter switch.
#include <atomic>

#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class CLimiterWindow : public Vinta_AttachedWindow {
public:
    static constexpr double kBarWidth = 100.0;
    static constexpr double kBarRangeDb = 24.0;

    explicit CLimiterWindow(const CInfo& info);

    // From the audio tap: the shown gain falls at once to a deeper reduction and creeps back.
    void setGainReduction(float gain);
    void resetGain() { shownGain.store(1.0f, std::memory_order_relaxed); }
    float getShownGain() const { return shownGain.load(std::memory_order_relaxed); }
    // The part of the bar that is filled, 0..1, for a gain.
    static double barFraction(double gain);
    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CLimiterWindow"; }

private:
    Vinta::CRect bar;
    std::atomic<float> shownGain{1.0f};
};

}  // namespace ZonfraPages
