#pragma once
// The native pop-up behind COptionMenu; made by the frame for one popup.
#include <cstdint>

#include "lib/views/CBaseObject.h"

namespace Vinta {

class COptionMenu;

struct COptionMenuResult {
    COptionMenu* menu = nullptr;  // the menu or sub-menu that holds the chosen entry; null: none
    int32_t index = -1;
};

class IOSOptionMenu : public CBaseObject {
public:
    virtual COptionMenuResult popup(COptionMenu* menu) = 0;

protected:
    ~IOSOptionMenu() override = default;
};

} // namespace Vinta
