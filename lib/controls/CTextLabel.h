#pragma once
// Fixed text. The text lives on the heap and its buffer doubles when a longer one comes.
#include "lib/controls/CParamDisplay.h"

namespace Vinta {

class CTextLabel : public CParamDisplay {
public:
    CTextLabel(const CRect& size, const char* text = nullptr, CBitmap* background = nullptr, uint32_t style = 0);
    CTextLabel(const CTextLabel& other);

    void draw(CDrawContext* context) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CTextLabel(*this); }
    const char* getClassName() const override { return "CTextLabel"; }

    virtual void setText(const char* text);
    virtual const char* getText() const { return text ? text : ""; }

protected:
    ~CTextLabel() override;

private:
    char* text = nullptr;
    size_t capacity = 0;
};

} // namespace Vinta
