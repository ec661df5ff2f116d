#pragma once
// A pop-up menu of CMenuItems. Its value is the index of the current entry; the native menu is
// made by the frame for each popup.
#include <vector>

#include "lib/controls/CParamDisplay.h"
#include "lib/controls/IOSOptionMenu.h"

namespace Vinta {

class CMenuItem;

class COptionMenu : public CParamDisplay {
public:
    explicit COptionMenu(const CRect& size, CControlListener* listener = nullptr, int32_t tag = 0,
                         CBitmap* background = nullptr, uint32_t style = 0);

    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    void setValue(float newValue) override;
    void getDisplayString(char* out, size_t capacity) const override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "COptionMenu"; }

    // The menu takes over the item's reference.
    virtual CMenuItem* addEntry(CMenuItem* item, int32_t index = -1);
    virtual CMenuItem* addEntry(const char* title, int32_t index = -1, uint32_t flags = 0);
    CMenuItem* addSeparator() { return addEntry("", -1, 8); }
    virtual CMenuItem* getEntry(int32_t index) const;
    virtual int32_t getNbEntries() const { return static_cast<int32_t>(entries.size()); }
    virtual bool removeAllEntry();
    virtual bool setCurrent(int32_t index);
    virtual int32_t getCurrent() const { return currentIndex; }
    virtual bool checkEntry(int32_t index, bool state);
    // Shows the native menu; the menu and index chosen reach `chosen` later (see IOSOptionMenu).
    virtual bool popup(IOSOptionMenu::Chosen chosen);

    // The title as the menu shows it, with the number prefix chosen by `prefixNumbers`.
    void getEntryTitle(int32_t index, char* out, size_t capacity) const;
    void setPrefixNumbers(int32_t digits) { prefixNumbers = digits; }
    void setNbItemsPerColumn(int32_t count) { columns = count; }
    int32_t getNbItemsPerColumn() const { return columns; }

protected:
    ~COptionMenu() override;
    // What a click's popup does with the choice: the chosen entry becomes current, and the
    // parameter and listener hear of it.
    virtual void takeChoice(const COptionMenuResult& chosen);

    std::vector<CMenuItem*> entries;
    int32_t currentIndex = -1;
    int32_t prefixNumbers = 0;
    int32_t columns = 0;
};

} // namespace Vinta
