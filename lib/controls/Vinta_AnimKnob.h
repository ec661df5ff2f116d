#pragma once
// The editors' knob: a vertical drag over `sensitivity` pixels for the full range (ten times finer
// with shift or the right button), an optional flat spot at a snap centre, a glide of the shown
// value, and a cross-fade between neighbouring filmstrip frames.
#include "lib/controls/CAnimKnob.h"
#include "lib/controls/VerticalDrag.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class Vinta_AnimKnob : public CAnimKnob {
public:
    class CInfo : public CMultiBMPControlInfo {
    public:
        CView* CreateObject() override;

        bool snapEnabled = false;
        float snapBand = 0.02f;
        float snapCentre = 0.5f;
        float zoomFactor = 10.0f;
        float hitRadius = 0.0f;  // zero means half the width
        bool circularHit = true;
        bool returnOnRelease = false;
        bool stepped = false;
        int32_t stepCount = 0;
        bool smoothing = false;
        Ondra::IPluginParameter* extraParameter = nullptr;
    };

    Vinta_AnimKnob(const CRect& size, CControlListener* listener, int32_t tag, int32_t frameCount,
                   double frameHeight, CBitmap* filmstrip, const CPoint& offset = CPoint());
    explicit Vinta_AnimKnob(const CInfo& info);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    bool onWheel(const CPoint& where, float delta, CButtonState buttons) override;
    bool hitTest(const CPoint& where, CButtonState buttons = ~0u) override;
    void setVisible(bool state) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "Vinta_AnimKnob"; }

    // Pixels moved upward; horizontal movement does not count.
    virtual double getDragDelta(const CPoint& first, const CPoint& current) const { return first.y - current.y; }
    virtual void setSensitivity(float pixels) { drag.sensitivity = pixels; }
    virtual void setStepped(bool state, int32_t count);

    void setSnap(bool on, float centre, float band);
    void setSmoothing(bool state) { smoothing = state; }
    void setReturnOnRelease(bool state) { returnOnRelease = state; }
    void setZoomFactor(float factor) override { zoomFactor = drag.zoomFactor = factor; }
    float getShownValue() const { return shownValue; }
    float getExtraValue() const { return extraValue; }
    bool isDragActive() const { return dragActive; }

protected:
    ~Vinta_AnimKnob() override;
    CPoint drawnPoint() const override;
    void makeOffscreen();

    VerticalDrag drag;
    float dragOldValue = 0.0f;
    bool dragActive = false;
    float hitRadius = 0.0f;
    bool circularHit = true;
    bool returnOnRelease = false;
    Ondra::IPluginParameter* extraParameter = nullptr;
    float extraValue = 0.0f;
    float shownValue = 0.0f;
    bool stepped = false;
    int32_t stepCount = 0;
    bool smoothing = false;
    CBitmap* offscreen = nullptr;
    int32_t lastFrameKey = -1;
};

} // namespace Vinta
