#pragma once
// A text box: shows a text and, when clicked, opens a native edit field over itself.
#include "lib/controls/CParamDisplay.h"

namespace Vinta {

class IOSTextEdit;
class ITextEditCallback;

// Turns the stored text into the text shown.
using CTextEditStringConvert = void (*)(const char* text, char* out, void* userData);

class CTextEdit : public CParamDisplay {
public:
    static constexpr int32_t kMaxLength = 254;

    CTextEdit(const CRect& size, CControlListener* listener = nullptr, int32_t tag = 0, const char* text = nullptr,
              CBitmap* background = nullptr, uint32_t style = 0);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    void takeFocus() override;
    void looseFocus() override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CTextEdit"; }

    // At most 255 characters are kept.
    virtual void setText(const char* text);
    virtual const char* getText() const { return text; }
    virtual void setTextEditConvert(CTextEditStringConvert convert, void* userData = nullptr);
    virtual void setTextEditConvert2(CTextEditStringConvert convert, void* userData = nullptr);
    void setMaxLength(int32_t length);
    int32_t getMaxLength() const { return maxLength; }
    bool isEditing() const { return platformControl != nullptr; }

protected:
    ~CTextEdit() override;
    // Who the native field reports to; the plain text box has none.
    virtual ITextEditCallback* getTextEditCallback() { return nullptr; }

    char text[256] = {0};
    int32_t maxLength = kMaxLength;
    CTextEditStringConvert editConvert = nullptr;
    void* editConvertUserData = nullptr;
    CTextEditStringConvert editConvert2 = nullptr;
    void* editConvert2UserData = nullptr;
    IOSTextEdit* platformControl = nullptr;
    // Bit 0: the typed text is taken (set by the field's end).
    int32_t acceptFlags = 1;
};

} // namespace Vinta
