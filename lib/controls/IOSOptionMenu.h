#pragma once
// The native pop-up behind COptionMenu; made by the frame for one popup.
#include <cstdint>
#include <functional>

#include "lib/views/CBaseObject.h"

namespace Vinta {

class COptionMenu;

struct COptionMenuResult {
    COptionMenu* menu = nullptr;  // the menu or sub-menu that holds the chosen entry; null: none
    int32_t index = -1;
};

class IOSOptionMenu : public CBaseObject {
public:
    using Chosen = std::function<void(const COptionMenuResult& result)>;

    // Shows the menu and returns, so the host's loop goes on while it is up; `chosen` gets the
    // choice (an empty result when there is none) on the editor's thread, and never runs when the
    // editor closes first. The menu keeps itself alive while it is up. False when nothing shows.
    virtual bool popup(COptionMenu* menu, Chosen chosen) = 0;

protected:
    ~IOSOptionMenu() override = default;
};

} // namespace Vinta
