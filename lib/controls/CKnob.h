#pragma once
// A rotary knob drawn as a line (or a handle bitmap) over its background. The value follows the
// pointer's angle around the centre, or, with alt held, a linear drag along both axes.
#include "lib/views/CControl.h"

namespace Vinta {

class CKnob : public CControl {
public:
    CKnob(const CRect& size, CControlListener* listener, int32_t tag, CBitmap* background, CBitmap* handle,
          const CPoint& handleOffset = CPoint());
    CKnob(const CKnob& other);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    bool onWheel(const CPoint& where, float delta, CButtonState buttons) override;
    int32_t onKeyDown(const VstKeyCode& key) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void setMin(float limit) override;
    void setMax(float limit) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CKnob(*this); }
    const char* getClassName() const override { return "CKnob"; }

    virtual void drawHandle(CDrawContext* context);
    virtual void setStartAngle(float angle);
    virtual float getStartAngle() const { return startAngle; }
    virtual void setRangeAngle(float angle);
    virtual float getRangeAngle() const { return rangeAngle; }
    virtual void setZoomFactor(float factor) { zoomFactor = factor; }
    virtual float getZoomFactor() const { return zoomFactor; }
    virtual void setInsetValue(int32_t pixels) { inset = pixels; }
    virtual void setHandleBitmap(CBitmap* bitmap);
    virtual void setColorShadowHandle(const CColor& colour) { shadowColor = colour; }
    virtual void setColorHandle(const CColor& colour) { handleColor = colour; }

    // Handle position for the present value, relative to the view's top left.
    CPoint valueToPoint() const;
    // Value for a point relative to the view's top left; the dead zone goes to the nearer end.
    float valueFromPoint(const CPoint& point) const;

protected:
    ~CKnob() override;
    void compute();
    // Fine drags cover the range over `zoomFactor` times the distance.
    float rangeFor(CButtonState buttons) const;

    CPoint handleOffset;
    CColor shadowColor = kWhiteCColor;
    CColor handleColor = kGreyCColor;
    CBitmap* handleBitmap = nullptr;
    int32_t inset = 3;
    float startAngle = 3.9269907f;
    float rangeAngle = -4.712389f;
    float halfAngle = 0.7853982f;
    float aCoef = 0.0f;
    float bCoef = 0.0f;
    float radius = 0.0f;
    float zoomFactor = 10.0f;
    CPoint firstPoint;
    CPoint lastDragPoint;
    float dragOldValue = 0.0f;
    float startValue = 0.0f;
    float dragRange = 200.0f;
    float dragCoef = 0.0f;
    CButtonState oldButton = 0;
    bool linearMode = false;
};

} // namespace Vinta
