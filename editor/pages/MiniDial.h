#pragma once
// The pages' small vector-drawn knob: a label, the dial and the value text in one row. A switch
// parameter shows a square that a click turns on and off.
#include "lib/controls/VerticalDrag.h"
#include "lib/views/CControl.h"
#include "lib/views/VintaObjectInfo.h"

namespace ZonfraPages {

enum MiniDialFlags : int32_t {
    kDialLabel = 0x01,
    kDialValue = 0x02,
    kDialValueLeft = 0x04,
    kDialLabelLeft = 0x10,
    kDialValueUnit = 0x40,
};

class Vinta_MiniDial : public Vinta::CControl {
public:
    class CInfo : public Vinta::Vinta_ObjectConstructorInfoBase {
    public:
        Vinta::CView* CreateObject() override;

        double fontSize = 10.0;
        int32_t flags = 0x5b;
        double dialWidth = 12.0;
        double dialHeight = 12.0;
        double dialOffsetX = 35.0;
        double dialOffsetY = 0.0;
        bool stepped = false;
        int32_t stepCount = 0;
        bool snapEnabled = false;
        float snapCentre = 0.5f;
        float snapBand = 0.1f;
        Vinta::CColor textColor{205, 210, 224, 255};
        const char* labelOverride = nullptr;
    };

    explicit Vinta_MiniDial(const CInfo& info);

    void draw(Vinta::CDrawContext* context) override;
    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseMoved(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    int32_t onMouseUp(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    void setEnabled(bool state) override;
    void setParameter(Ondra::IPluginParameter* edited) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    const char* getClassName() const override { return "Vinta_MiniDial"; }
    Vinta::CView* newCopy() const override { return nullptr; }

    void setSensitivity(float pixels) { drag.sensitivity = pixels; }
    bool isMouseActive() const { return mouseActive; }
    const Vinta::CRect& getDialRect() const { return dialRect; }
    bool isSwitch() const;

protected:
    ~Vinta_MiniDial() override;

private:
    void drawKnob(Vinta::CDrawContext* context);

    int32_t flags;
    double fontSize;
    Vinta::CRect dialRect;
    Vinta::CColor textColor;
    const char* labelOverride;
    Vinta::VerticalDrag drag;
    Vinta::CPoint dragStart;
    bool dragging = false;
    bool stepped;
    int32_t stepCount;
    bool mouseActive = true;
};

}  // namespace ZonfraPages
