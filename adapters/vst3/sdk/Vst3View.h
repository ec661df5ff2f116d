#pragma once
#include <cstddef>

#include "adapters/vst3/sdk/Vst3Base.h"

namespace Steinberg {

struct ViewRect {
    int32 left;
    int32 top;
    int32 right;
    int32 bottom;
};
static_assert(sizeof(ViewRect) == 16);

// The platform type of a parent window on Linux.
constexpr FIDString kPlatformTypeX11EmbedWindowID = "X11EmbedWindowID";

class IPlugFrame;

class IPlugView : public FUnknown {
public:
    virtual tresult isPlatformTypeSupported(FIDString type) = 0;
    virtual tresult attached(void* parent, FIDString type) = 0;
    virtual tresult removed() = 0;
    virtual tresult onWheel(float distance) = 0;
    virtual tresult onKeyDown(char16 key, int16 keyCode, int16 modifiers) = 0;
    virtual tresult onKeyUp(char16 key, int16 keyCode, int16 modifiers) = 0;
    virtual tresult getSize(ViewRect* size) = 0;
    virtual tresult onSize(ViewRect* newSize) = 0;
    virtual tresult onFocus(TBool state) = 0;
    virtual tresult setFrame(IPlugFrame* frame) = 0;
    virtual tresult canResize() = 0;
    virtual tresult checkSizeConstraint(ViewRect* rect) = 0;
    static constexpr Uid iid = makeUid(0x5BC32507, 0xD06049EA, 0xA6151B52, 0x2B755B29);

protected:
    ~IPlugView() = default;
};

class IPlugFrame : public FUnknown {
public:
    virtual tresult resizeView(IPlugView* view, ViewRect* newSize) = 0;
    static constexpr Uid iid = makeUid(0x367FAF01, 0xAFA94693, 0x8D4DA2A0, 0xED0882A3);

protected:
    ~IPlugFrame() = default;
};

// Lets a host tell the view the content scale of its screen (HiDPI); the view then sizes itself
// by it and asks the host for the new size through IPlugFrame::resizeView.
class IPlugViewContentScaleSupport : public FUnknown {
public:
    using ScaleFactor = float;
    virtual tresult setContentScaleFactor(ScaleFactor factor) = 0;
    static constexpr Uid iid = makeUid(0x65ED9690, 0x8AC44525, 0x8AADEF7A, 0x72EA703F);

protected:
    ~IPlugViewContentScaleSupport() = default;
};

namespace Linux {

using FileDescriptor = int;
using TimerInterval = uint64;

class IEventHandler : public FUnknown {
public:
    virtual void onFDIsSet(FileDescriptor fd) = 0;
    static constexpr Uid iid = makeUid(0x561E65C9, 0x13A0496F, 0x813A2C35, 0x654D7983);

protected:
    ~IEventHandler() = default;
};

class ITimerHandler : public FUnknown {
public:
    virtual void onTimer() = 0;
    static constexpr Uid iid = makeUid(0x10BDD94F, 0x41424774, 0x821FAD8F, 0xECA72CA9);

protected:
    ~ITimerHandler() = default;
};

class IRunLoop : public FUnknown {
public:
    virtual tresult registerEventHandler(IEventHandler* handler, FileDescriptor fd) = 0;
    virtual tresult unregisterEventHandler(IEventHandler* handler) = 0;
    virtual tresult registerTimer(ITimerHandler* handler, TimerInterval milliseconds) = 0;
    virtual tresult unregisterTimer(ITimerHandler* handler) = 0;
    static constexpr Uid iid = makeUid(0x18C35366, 0x97764F1A, 0x9C5B8385, 0x7A871389);

protected:
    ~IRunLoop() = default;
};

}  // namespace Linux

// Interfaces are a table pointer and nothing else.
static_assert(sizeof(IPlugView) == sizeof(void*) && sizeof(IPlugFrame) == sizeof(void*));
static_assert(sizeof(IPlugViewContentScaleSupport) == sizeof(void*));
static_assert(sizeof(Linux::IRunLoop) == sizeof(void*) && sizeof(Linux::IEventHandler) == sizeof(void*) &&
              sizeof(Linux::ITimerHandler) == sizeof(void*));
}  // namespace Steinberg
