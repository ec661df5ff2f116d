#pragma once
// One entry of an option menu; a sub-menu, if any, is held by reference.
#include <cstdint>

#include "lib/views/CBaseObject.h"

namespace Vinta {

class CBitmap;
class COptionMenu;

class CMenuItem : public CBaseObject {
public:
    enum Flags : uint32_t { kDisabled = 1, kNoCheckMarkPlace = 0, kCheckMarkPlace = 2, kChecked = 4, kSeparator = 8 };

    explicit CMenuItem(const char* title, int32_t tag = -1, uint32_t flags = 0, const char* key = nullptr,
                       COptionMenu* submenu = nullptr);
    CMenuItem(const CMenuItem&) = delete;
    CMenuItem& operator=(const CMenuItem&) = delete;

    void setTitle(const char* text);
    const char* getTitle() const { return title; }
    const char* getKey() const { return key; }
    void setSubmenu(COptionMenu* menu);
    COptionMenu* getSubmenu() const { return submenu; }
    void setIcon(CBitmap* bitmap);
    CBitmap* getIcon() const { return icon; }
    void setTag(int32_t value) { tag = value; }
    int32_t getTag() const { return tag; }
    void setFlags(uint32_t bits) { flags = bits; }
    uint32_t getFlags() const { return flags; }
    void setChecked(bool state) { flags = state ? (flags | kChecked) : (flags & ~kChecked); }
    bool isChecked() const { return flags & kChecked; }
    bool isEnabled() const { return !(flags & kDisabled); }
    bool isSeparator() const { return flags & kSeparator; }

protected:
    ~CMenuItem() override;

private:
    char title[256] = {0};
    char key[16] = {0};
    COptionMenu* submenu = nullptr;
    CBitmap* icon = nullptr;
    int32_t tag = -1;
    uint32_t flags = 0;
};

} // namespace Vinta
