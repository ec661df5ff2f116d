#pragma once
// A bitmap button of two stacked rows: momentary (on while held) or toggle, with an optional
// fade between the rows.
#include "lib/views/CControl.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class Vinta_ActionButton : public CControl {
public:
    enum Type : int32_t { kMomentary = 0, kToggle = 1 };

    class CInfo : public Vinta_ObjectConstructorInfoBase {
    public:
        CView* CreateObject() override;

        int32_t type = kMomentary;
        CBitmap* bitmap = nullptr;
        bool fade = false;
        float fadeSpeed = 1.0f;
        bool inverted = false;
    };

    explicit Vinta_ActionButton(const CInfo& info);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    bool hitTest(const CPoint& where, CButtonState buttons = ~0u) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void setValue(float newValue) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "Vinta_ActionButton"; }

    bool isOn() const { return on; }
    float getLevel() const { return level; }

protected:
    ~Vinta_ActionButton() override;

private:
    void touch();
    void updateHitRect();

    int32_t type = kMomentary;
    bool fade = false;
    float fadeSpeed = 1.0f;
    bool inverted = false;
    bool on = false;
    double frameHeight = 0.0;
    float level = 0.0f;
    uint32_t tick = 0;
    CRect hitRect;
};

} // namespace Vinta
