#pragma once
// Shows a value as text over a filled or bitmap background, with an optional frame and shadow.
#include "lib/views/CControl.h"

namespace Vinta {

class CFontDesc;

// Writes the text for `value` into `text` (256 bytes); answers whether it did.
using CParamDisplayValueToStringProc = bool (*)(float value, char* text, void* userData);
using CParamDisplayStringConvert = void (*)(float value, char* text, void* userData);

// Style bits of the text controls.
enum CParamDisplayStyle : uint32_t {
    kShadowText = 0x4,
    k3DIn = 0x80,
    k3DOut = 0x100,
    kPopupStyle = 0x200,
    kCheckStyle = 0x400,
    kNoTextStyle = 0x800,
    kNoDrawStyle = 0x1000,
    kDoubleClickStyle = 0x2000,
    kNoFrame = 0x4000,
};

class CParamDisplay : public CControl {
public:
    static constexpr size_t kTextCapacity = 256;

    CParamDisplay(const CRect& size, CBitmap* background = nullptr, uint32_t style = 0);
    CParamDisplay(const CParamDisplay& other);

    void draw(CDrawContext* context) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CParamDisplay(*this); }
    const char* getClassName() const override { return "CParamDisplay"; }

    virtual void setFont(CFontDesc* font) { fontID = font; }
    virtual CFontDesc* getFont() const { return fontID; }
    virtual void setFontSize(float points) { fontSize = points; }
    virtual void setTxtFace(int32_t face) { txtFace = face; }
    virtual void setFontColor(const CColor& colour) { fontColor = colour; }
    virtual void setBackColor(const CColor& colour) { backColor = colour; }
    virtual void setFrameColor(const CColor& colour) { frameColor = colour; }
    virtual void setShadowColor(const CColor& colour) { shadowColor = colour; }
    virtual void setHoriAlign(int32_t align) { horiTxtAlign = align; }
    virtual void setStyle(uint32_t bits) { style = bits; }
    virtual uint32_t getStyle() const { return style; }
    virtual void setTextTransparency(bool state) { textTransparent = state; }
    virtual void setValueToStringProc(CParamDisplayValueToStringProc proc, void* userData = nullptr);
    virtual void setStringConvert(CParamDisplayStringConvert convert, void* userData = nullptr);

    // The text the display shows for its value.
    virtual void getDisplayString(char* out, size_t capacity) const;

protected:
    // The fields every text record of the parameter-tied layer shares, and its parameter tie.
    template <typename Info>
    void takeTextRecord(const Info& info) {
        tag = info.tag;
        if (info.font) fontID = info.font;
        fontSize = info.fontSize;
        horiTxtAlign = info.align;
        fontColor = info.fontColor;
        transparent = info.transparent;
        mouseEnabled = info.mouseEnabled;
        setVisibilityParameter(info.visibilityParameter);
        setEnableParameter(info.enableParameter);
        if (info.parameter) {
            setParameter(info.parameter);
            listenToParameter();
        }
    }

    void drawBack(CDrawContext* context);
    void drawFrame(CDrawContext* context);
    void drawText(CDrawContext* context, const char* text, const CRect& rect);

    CParamDisplayValueToStringProc valueToString = nullptr;
    void* valueToStringUserData = nullptr;
    CParamDisplayStringConvert stringConvert = nullptr;
    void* stringConvertUserData = nullptr;
    int32_t horiTxtAlign = 1;
    uint32_t style = 0;
    CFontDesc* fontID = nullptr;  // null: the system font
    int32_t txtFace = 0;
    CColor fontColor = kWhiteCColor;
    CColor backColor = kBlackCColor;
    CColor frameColor = kBlackCColor;
    CColor shadowColor{255, 0, 0, 255};
    bool textTransparent = false;
    float fontSize = 10.0f;
};

} // namespace Vinta
