#pragma once
// A knob drawn as one frame of a filmstrip, chosen by the value.
#include "lib/controls/CKnob.h"
#include "lib/controls/IMultiBitmapControl.h"

namespace Vinta {

class CAnimKnob : public CKnob, public IMultiBitmapControl {
public:
    // Without a frame count or frame height, the other is worked out from the bitmap's height.
    CAnimKnob(const CRect& size, CControlListener* listener, int32_t tag, int32_t frameCount, double frameHeight,
              CBitmap* filmstrip, const CPoint& offset = CPoint());
    CAnimKnob(const CAnimKnob& other);

    void draw(CDrawContext* context) override;
    bool isDirty() const override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CAnimKnob(*this); }
    const char* getClassName() const override { return "CAnimKnob"; }

    void setInverseBitmap(bool state) { inverseBitmap = state; }

protected:
    // What the last draw showed, in the form of drawnPoint.
    virtual CPoint drawnPoint() const;

    bool inverseBitmap = false;
    CPoint lastDrawnPoint{-1.0, -1.0};
};

} // namespace Vinta
