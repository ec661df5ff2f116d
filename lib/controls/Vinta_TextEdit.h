#pragma once
// The editors' read-out and edit box: shows a parameter's text, opens a native field on a double
// click, and, when drag-editable, is dragged like a knob.
#include <atomic>

#include "lib/controls/CTextEdit.h"
#include "lib/controls/ITextEditCallback.h"
#include "lib/controls/VerticalDrag.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class Vinta_TextEdit : public CTextEdit, public ITextEditCallback {
public:
    class CInfo : public Vinta_ObjectConstructorInfoBase {
    public:
        CView* CreateObject() override;

        bool mouseEnabled = true;
        CColor fontColor = kWhiteCColor;
        CColor backColor = kBlackCColor;
        CFontDesc* font = nullptr;
        int32_t align = 1;
        float fontSize = 10.0f;
        bool hideName = false;
        bool twoLines = false;
        bool preciseText = false;
        int32_t maxChars = kMaxLength;
        int32_t editFontSize = 9;
        bool dragEditable = true;
    };

    explicit Vinta_TextEdit(const CInfo& info);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    void takeFocus() override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    const char* getClassName() const override { return "Vinta_TextEdit"; }

    // The field's side.
    CColor getBackColor() const override { return backColor; }
    CColor getFontColor() const override { return fontColor; }
    float getFontSize() const override { return static_cast<float>(editFontSize); }
    int32_t getTextAlign() const override { return horiTxtAlign; }
    const char* getText() const override { return text; }
    CRect getVisibleRect() const override;
    CRect getRect() const override { return size; }
    CPoint getOrigin() const override;
    void textEditDidEnd(int32_t flags) override;
    bool onPlatformKey(const VstKeyCode&) override { return false; }
    CFrame* getFrame() const override { return CView::getFrame(); }
    CRect scaleRect(const CRect& rect) const override;

    // Makes the text from the parameter now (the window's thread does it before drawing).
    void updateTextFromParameter();
    void setSnap(bool on, float centre, float band);
    int32_t getAcceptFlags() const { return acceptFlags; }

protected:
    ~Vinta_TextEdit() override;
    ITextEditCallback* getTextEditCallback() override { return this; }

private:
    bool dragEditable = true;
    bool hideName = false;
    bool twoLines = false;
    bool preciseText = false;
    int32_t editFontSize = 9;
    VerticalDrag drag;
    CPoint firstPoint;
    CPoint lastDragPoint{-1.0, -1.0};
    bool dragActive = false;
    std::atomic<bool> textPending{false};
};

} // namespace Vinta
