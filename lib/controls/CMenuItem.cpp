#include "lib/controls/CMenuItem.h"

#include <cstdio>

#include "lib/controls/COptionMenu.h"
#include "lib/drawing/CBitmap.h"

namespace Vinta {

CMenuItem::CMenuItem(const char* text, int32_t itemTag, uint32_t itemFlags, const char* shortcut, COptionMenu* menu)
    : tag(itemTag), flags(itemFlags) {
    setTitle(text);
    std::snprintf(key, sizeof key, "%s", shortcut ? shortcut : "");
    setSubmenu(menu);
}

CMenuItem::~CMenuItem() {
    setSubmenu(nullptr);
    setIcon(nullptr);
}

void CMenuItem::setTitle(const char* text) { std::snprintf(title, sizeof title, "%s", text ? text : ""); }

void CMenuItem::setSubmenu(COptionMenu* menu) {
    if (menu == submenu) return;
    if (menu) menu->remember();
    if (submenu) submenu->forget();
    submenu = menu;
}

void CMenuItem::setIcon(CBitmap* bitmap) {
    if (bitmap == icon) return;
    if (bitmap) bitmap->remember();
    if (icon) icon->forget();
    icon = bitmap;
}

} // namespace Vinta
