#pragma once
// A view with a value. The value may be tied to a parameter; the parameter may change on any
// thread, so the control's listener side only stores the value and marks the control dirty,
// and the window's thread picks the change up when it redraws.
#include <atomic>

#include "framework/parameters/ParameterChangeListener.h"
#include "lib/views/CView.h"

namespace Ondra {
class IPluginParameter;
}

namespace Vinta {

class CControlListener;

class CControl : public CView, public Ondra::ParameterChangeListener {
public:
    CControl(const CRect& size, CControlListener* listener = nullptr, int32_t tag = 0,
             CBitmap* background = nullptr);
    CControl(const CControl& other);

    void draw(CDrawContext* context) override;
    // Draws; a value set on another thread meanwhile (a host's change) leaves the control dirty,
    // as the draw's closing setDirty(false) would otherwise take it for drawn.
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    bool isDirty() const override;
    void setDirty(bool state = true) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseEntered(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseExited(const CPoint& where, CButtonState buttons) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CControl(*this); }
    const char* getClassName() const override { return "CControl"; }

    void parameterChanged(Ondra::IPluginParameter* changed) override;

    virtual void controlReserved() {}
    virtual void setValue(float newValue) { value = newValue; }
    virtual float getValue() const { return static_cast<float>(value.load(std::memory_order_relaxed)); }
    virtual void setMin(float limit) { vmin = limit; }
    virtual float getMin() const { return vmin; }
    virtual void setMax(float limit) { vmax = limit; }
    virtual float getMax() const { return vmax; }
    virtual void setOldValue(float old) { oldValue = old; }
    virtual float getOldValue() const { return oldValue.load(std::memory_order_relaxed); }
    virtual void setDefaultValue(float fallback) { defaultValue = fallback; }
    virtual float getDefaultValue() const;
    virtual void bounceValue();
    // The reset gesture (button word exactly 4 or 34, or a left double click): value to default,
    // told as one edit.
    virtual bool checkDefaultValue(CButtonState buttons);
    virtual void setTag(int32_t newTag) { tag = newTag; }
    virtual int32_t getTag() const { return tag; }
    virtual void beginEditOf(Ondra::IPluginParameter* edited);
    virtual void beginEdit();
    virtual void endEditOf(Ondra::IPluginParameter* edited);
    virtual void endEdit();
    virtual void performEditOf(Ondra::IPluginParameter* edited);
    virtual void performEdit();
    virtual CControlListener* getListener() const { return listener; }
    virtual void setListener(CControlListener* newListener) { listener = newListener; }
    virtual void setLastPoint(const CPoint& point) { lastPoint = point; }
    virtual void rememberOrigin() {}
    virtual void setWheelInc(float step) { wheelInc = step; }
    virtual float getWheelInc() const { return wheelInc; }
    virtual void setParameter(Ondra::IPluginParameter* edited);
    virtual Ondra::IPluginParameter* getParameter() const { return parameter; }
    virtual void setControlData(void*) {}
    virtual void updateHoverText();
    virtual void setVisibilityParameter(Ondra::IPluginParameter* shownBy);
    void setEnableParameter(Ondra::IPluginParameter* enabledBy);

    const char* getHoverText() const { return hoverText; }

protected:
    ~CControl() override;

    // The normalised value goes to the parameter without telling this control back.
    void sendToParameter(float normalized);
    // Subclasses that edit `parameter` listen to it, and stop in their own destructors, before
    // their part of the object is gone.
    void listenToParameter();
    void stopListeningToParameter();

    CControlListener* listener = nullptr;
    int32_t tag = 0;
    std::atomic<float> oldValue{0.0f};
    float defaultValue = 0.5f;
    std::atomic<double> value{0.0};
    float vmin = 0.0f;
    float vmax = 1.0f;
    float wheelInc = 0.1f;
    CPoint lastPoint;
    char hoverText[128] = {0};
    Ondra::IPluginParameter* visibilityParameter = nullptr;
    Ondra::IPluginParameter* enableParameter = nullptr;
    Ondra::IPluginParameter* parameter = nullptr;
};

} // namespace Vinta
