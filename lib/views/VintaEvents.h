#pragma once
// The words that mouse, wheel and key events carry through the tree.
#include <cstdint>

namespace Vinta {

// Button and modifier word of mouse events, one bit each.
using CButtonState = uint32_t;
enum : CButtonState {
    kLButton = 2,
    kMButton = 4,
    kRButton = 8,
    kShift = 16,
    kControl = 32,
    kAlt = 64,
    kButton4 = 256,
    kButton5 = 512,
    kDoubleClick = 1024,
};
// Buttons that drag a value; shift or the right button make the drag fine.
inline constexpr CButtonState kDragButtons = kLButton | kRButton;
inline constexpr CButtonState kFineModifiers = kShift | kRButton;
// A button word a control takes as "reset to default": the middle button (which is also left with
// control held, as the frame folds it) or left and control as a plain word.
inline constexpr CButtonState kResetWordMiddle = kMButton;
inline constexpr CButtonState kResetWordLeftControl = kLButton | kControl;

// Results of the mouse handlers.
enum CMouseEventResult : int32_t {
    kMouseEventHandled = 1,         // and the view wants the moves and the up that follow
    kMouseEventNotHandled = 2,
    kMouseEventHandledNoCapture = 3,
};

// Modifiers of a key event.
enum : uint8_t { kKeyShift = 1, kKeyAlternate = 2, kKeyControl = 8 };

enum VirtualKey : uint8_t {
    VKEY_NONE = 0,
    VKEY_BACK = 1,
    VKEY_TAB = 2,
    VKEY_CLEAR = 3,
    VKEY_RETURN = 4,
    VKEY_PAUSE = 5,
    VKEY_ESCAPE = 6,
    VKEY_SPACE = 7,
    VKEY_END = 9,
    VKEY_HOME = 10,
    VKEY_LEFT = 11,
    VKEY_UP = 12,
    VKEY_RIGHT = 13,
    VKEY_DOWN = 14,
    VKEY_PAGEUP = 15,
    VKEY_PAGEDOWN = 16,
    VKEY_SELECT = 17,
    VKEY_PRINT = 18,
    VKEY_SNAPSHOT = 20,
    VKEY_INSERT = 21,
    VKEY_DELETE = 22,
    VKEY_HELP = 23,
    VKEY_NUMPAD0 = 24,  // to VKEY_NUMPAD0 + 9
    VKEY_MULTIPLY = 34,
    VKEY_ADD = 35,
    VKEY_SEPARATOR = 36,
    VKEY_SUBTRACT = 37,
    VKEY_DECIMAL = 38,
    VKEY_DIVIDE = 39,
    VKEY_F1 = 40,  // to VKEY_F1 + 11
    VKEY_NUMLOCK = 52,
    VKEY_SCROLL = 53,
    VKEY_SHIFT = 54,
    VKEY_CONTROL = 55,
    VKEY_ALT = 56,
    VKEY_EQUALS = 57,
};

struct VstKeyCode {
    int32_t character = 0;
    uint8_t virt = VKEY_NONE;
    uint8_t modifier = 0;
};

// A key handler answers at least 0 when it used the key.
inline constexpr int32_t kKeyNotHandled = -1;

} // namespace Vinta
