#pragma once
// Shows a parameter's text, on one line or as value above unit.
#include "lib/controls/CParamDisplay.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class Vinta_ParamDisplay : public CParamDisplay {
public:
    // The text record of the display kinds.
    class CInfo : public Vinta_ObjectConstructorInfoBase {
    public:
        CView* CreateObject() override;

        CFontDesc* font = nullptr;
        float fontSize = 10.0f;
        CColor fontColor = kWhiteCColor;
        CColor backColor = kBlackCColor;
        int32_t align = 1;
        uint32_t style = kNoFrame;
        bool transparent = true;
        bool twoLines = false;
        bool hideName = true;
        bool mouseEnabled = false;
    };

    Vinta_ParamDisplay(const CRect& size, Ondra::IPluginParameter* parameter, bool twoLines = false);
    explicit Vinta_ParamDisplay(const CInfo& info);

    void draw(CDrawContext* context) override;
    void getDisplayString(char* out, size_t capacity) const override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "Vinta_ParamDisplay"; }

protected:
    ~Vinta_ParamDisplay() override;

    bool twoLines = false;
    bool hideName = true;
};

} // namespace Vinta
