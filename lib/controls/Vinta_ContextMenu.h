#pragma once
// A pop-up menu that draws only its background bitmap. Each sub-menu may edit a parameter of its
// own: the choice travels down from the top menu to the sub-menu it was made in.
#include "lib/controls/COptionMenu.h"
#include "lib/views/CControlListener.h"

namespace Vinta {

class Vinta_ContextMenu : public COptionMenu, public CControlListener {
public:
    explicit Vinta_ContextMenu(const CRect& size, CControlListener* listener = nullptr, int32_t tag = 0,
                               CBitmap* background = nullptr, Ondra::IPluginParameter* parameter = nullptr);

    void draw(CDrawContext* context) override;
    CMenuItem* addEntry(CMenuItem* item, int32_t index = -1) override;
    using COptionMenu::addEntry;
    bool isTypeOf(const char* name) const override;
    const char* getClassName() const override { return "Vinta_ContextMenu"; }

    void valueChanged(CControl* control) override;

    // The menu of the last choice, and in it the chosen index (getCurrent).
    COptionMenu* getLastMenu() const { return lastMenu; }

protected:
    ~Vinta_ContextMenu() override;
    void takeChoice(const COptionMenuResult& chosen) override;
    // Hands a choice made in `chosen` to the sub-menu that holds it; answers whether it was ours.
    bool deliver(COptionMenu* chosen, int32_t index);

private:
    COptionMenu* lastMenu = nullptr;
};

} // namespace Vinta
