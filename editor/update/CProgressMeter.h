#pragma once
// The download meter in the editor's lower right corner: a bar and its percentage, which creep a
// tenth of the way to the last reported fraction at each paint.
#include <atomic>

#include "lib/views/CView.h"

namespace Resko {

class CProgressMeter : public Vinta::CView {
public:
    explicit CProgressMeter(const Vinta::CRect& rect);

    // Any thread.
    void setTarget(float fraction) { target.store(fraction, std::memory_order_relaxed); }
    float getTarget() const { return target.load(std::memory_order_relaxed); }
    float getShown() const { return shown; }

    void draw(Vinta::CDrawContext* context) override;
    int32_t onMouseMoved(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    const char* getClassName() const override { return "CProgressMeter"; }

private:
    float shown = 0.0f;
    std::atomic<float> target{0.0f};
};

}  // namespace Resko
