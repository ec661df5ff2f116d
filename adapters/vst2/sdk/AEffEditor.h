#pragma once
#include "adapters/vst2/sdk/ERect.h"

namespace Vst2 {

// A key as effEditKeyDown and effEditKeyUp hand it over: index, value and opt of the call.
struct VstKeyCode {
    VstInt32 character;
    unsigned char virt;
    unsigned char modifier;
};

// The editor behind the editor opcodes. The plug-in object keeps one, or none.
class AEffEditor {
public:
    virtual ~AEffEditor() = default;
    // The size in pixels; the record stays the editor's.
    virtual bool getRect(ERect** rect) = 0;
    // `parent` is the host's window (an X11 Window id on Linux).
    virtual bool open(void* parent) = 0;
    virtual void close() = 0;
    virtual bool isOpen() = 0;
    virtual void idle() = 0;
    // Answers true when the editor used the key.
    virtual bool onKeyDown(VstKeyCode& key) = 0;
    virtual bool onKeyUp(VstKeyCode& key) = 0;
    virtual bool onWheel(float distance) = 0;
};

}  // namespace Vst2
