#pragma once
// X key symbols to the view tree's virtual keys and modifier byte.
#include <X11/Xlib.h>

#include "lib/views/VintaEvents.h"

namespace Vinta::X11 {

// virt is VKEY_NONE for keys the tree does not know; character is the key's text when it is one
// printable character.
VstKeyCode toVstKeyCode(KeySym symbol, unsigned int state, const char* text);
// The button word of mouse events from X's state mask (and the pressed button, 0 for none).
CButtonState toButtonState(unsigned int state, unsigned int pressedButton);

}  // namespace Vinta::X11
