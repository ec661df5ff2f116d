#pragma once
// What a native edit field asks of the control that opened it, and the field itself.
#include <cstddef>
#include <cstdint>

#include "lib/views/CBaseObject.h"
#include "lib/views/VintaEvents.h"
#include "lib/views/VintaTypes.h"

namespace Vinta {

class CFrame;

class ITextEditCallback {
public:
    virtual ~ITextEditCallback() = default;
    virtual CColor getBackColor() const = 0;
    virtual CColor getFontColor() const = 0;
    virtual float getFontSize() const = 0;
    virtual int32_t getTextAlign() const = 0;
    virtual const char* getText() const = 0;
    // In frame coordinates.
    virtual CRect getVisibleRect() const = 0;
    virtual CRect getRect() const = 0;
    virtual CPoint getOrigin() const = 0;
    // Flags: 1 take the text (return, tab), 2 escape, 4 focus lost.
    virtual void textEditDidEnd(int32_t flags) = 0;
    virtual bool onPlatformKey(const VstKeyCode& key) = 0;
    virtual CFrame* getFrame() const = 0;
    virtual CRect scaleRect(const CRect& rect) const = 0;
};

enum TextEditEnd : int32_t { kTextEditTake = 1, kTextEditEscape = 2, kTextEditFocusLost = 4 };

// The open native field; lives from takeFocus to looseFocus.
class IOSTextEdit : public CBaseObject {
public:
    virtual void getText(char* out, size_t capacity) = 0;

protected:
    ~IOSTextEdit() override = default;
};

} // namespace Vinta
