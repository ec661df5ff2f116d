#pragma once
// A row or column of exclusive choices, each an LED bitmap with a label; the chosen one fades in,
// the others fade out.
#include <vector>

#include "lib/views/CControl.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

class CFontDesc;

class Vinta_RadioGroup : public CControl {
public:
    struct Item {
        int32_t index = 0;
        char label[28] = {0};
        CRect labelRect;
        CRect bitmapRect;
        CRect hitRect;  // both of the above
        float level = 0.0f;
    };

    Vinta_RadioGroup(const class Vinta_RadioGroupControlInfo& info);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    void setValue(float newValue) override;
    void parameterChanged(Ondra::IPluginParameter* changed) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "Vinta_RadioGroup"; }

    // Appends a choice; its label stands `labelWidth` wide after the bitmap.
    void addItem(const char* label, double labelWidth = 0.0);
    int32_t getSelected() const { return selected; }
    int32_t getCount() const { return static_cast<int32_t>(items.size()); }
    const Item& getItem(int32_t index) const { return items[static_cast<size_t>(index)]; }
    void setFont(CFontDesc* newFont, float points) { font = newFont, fontSize = points; }
    void setFontColor(const CColor& colour) { fontColor = colour; }

protected:
    ~Vinta_RadioGroup() override;

private:
    CBitmap* onBitmap = nullptr;
    CBitmap* offBitmap = nullptr;
    bool vertical = false;
    double stepX = 0.0;
    double stepY = 0.0;
    bool drawOffBitmap = false;
    std::vector<Item> items;
    int32_t selected = 0;
    uint32_t tick = 0;
    CFontDesc* font = nullptr;
    float fontSize = 10.0f;
    CColor fontColor = kWhiteCColor;
};

class Vinta_RadioGroupControlInfo : public Vinta_ObjectConstructorInfoBase {
public:
    CView* CreateObject() override;

    int32_t count = 0;
    bool noItems = false;  // the caller adds the items
    int32_t vertical = 0;  // nonzero stacks the items in a column
    CBitmap* onBitmap = nullptr;
    CBitmap* offBitmap = nullptr;
    double stepX = 0.0;
    double stepY = 0.0;
    bool drawOffBitmap = false;
};

} // namespace Vinta
