#include "lib/platform-x11/X11KeyMap.h"

#include <X11/keysym.h>

#include <iterator>

namespace Vinta::X11 {

namespace {
struct KeyEntry {
    KeySym symbol;
    uint8_t virt;
};
constexpr KeyEntry keyTable[] = {
    {XK_BackSpace, VKEY_BACK},     {XK_Tab, VKEY_TAB},           {XK_ISO_Left_Tab, VKEY_TAB},
    {XK_Clear, VKEY_CLEAR},        {XK_Return, VKEY_RETURN},     {XK_KP_Enter, VKEY_RETURN},
    {XK_Pause, VKEY_PAUSE},        {XK_Escape, VKEY_ESCAPE},     {XK_space, VKEY_SPACE},
    {XK_End, VKEY_END},            {XK_Home, VKEY_HOME},         {XK_Left, VKEY_LEFT},
    {XK_Up, VKEY_UP},              {XK_Right, VKEY_RIGHT},       {XK_Down, VKEY_DOWN},
    {XK_Prior, VKEY_PAGEUP},       {XK_Next, VKEY_PAGEDOWN},     {XK_Select, VKEY_SELECT},
    {XK_Print, VKEY_PRINT},        {XK_Sys_Req, VKEY_SNAPSHOT},  {XK_Insert, VKEY_INSERT},
    {XK_Delete, VKEY_DELETE},      {XK_Help, VKEY_HELP},         {XK_KP_Multiply, VKEY_MULTIPLY},
    {XK_KP_Add, VKEY_ADD},         {XK_KP_Separator, VKEY_SEPARATOR}, {XK_KP_Subtract, VKEY_SUBTRACT},
    {XK_KP_Decimal, VKEY_DECIMAL}, {XK_KP_Divide, VKEY_DIVIDE},  {XK_Num_Lock, VKEY_NUMLOCK},
    {XK_Scroll_Lock, VKEY_SCROLL}, {XK_Shift_L, VKEY_SHIFT},     {XK_Shift_R, VKEY_SHIFT},
    {XK_Control_L, VKEY_CONTROL},  {XK_Control_R, VKEY_CONTROL}, {XK_Alt_L, VKEY_ALT},
    {XK_Alt_R, VKEY_ALT},          {XK_equal, VKEY_EQUALS},
};

uint8_t virtualKeyOf(KeySym symbol) {
    if (symbol >= XK_KP_0 && symbol <= XK_KP_9) return static_cast<uint8_t>(VKEY_NUMPAD0 + (symbol - XK_KP_0));
    if (symbol >= XK_F1 && symbol <= XK_F12) return static_cast<uint8_t>(VKEY_F1 + (symbol - XK_F1));
    for (const KeyEntry& entry : keyTable)
        if (entry.symbol == symbol) return entry.virt;
    return VKEY_NONE;
}
}  // namespace

VstKeyCode toVstKeyCode(KeySym symbol, unsigned int state, const char* text) {
    VstKeyCode key;
    key.virt = virtualKeyOf(symbol);
    if (state & ShiftMask) key.modifier |= kKeyShift;
    if (state & ControlMask) key.modifier |= kKeyControl;
    if (state & Mod1Mask) key.modifier |= kKeyAlternate;
    if (text && text[0] > 0x20 && text[0] < 0x7f && text[1] == 0) key.character = text[0];
    return key;
}

CButtonState toButtonState(unsigned int state, unsigned int pressedButton) {
    CButtonState buttons = 0;
    const auto held = [&](unsigned int mask, unsigned int button) { return (state & mask) || pressedButton == button; };
    if (held(Button1Mask, 1)) buttons |= kLButton;
    if (held(Button2Mask, 2)) buttons |= kMButton;
    if (held(Button3Mask, 3)) buttons |= kRButton;
    if (pressedButton == 8) buttons |= kButton4;
    if (pressedButton == 9) buttons |= kButton5;
    if (state & ShiftMask) buttons |= kShift;
    if (state & ControlMask) buttons |= kControl;
    if (state & Mod1Mask) buttons |= kAlt;
    return buttons;
}

}  // namespace Vinta::X11
