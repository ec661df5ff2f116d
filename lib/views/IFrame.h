#pragma once
// The native window behind a CFrame. Coordinates here are window pixels; the frame converts
// through the editor's scale.
#include <cstdint>

#include "lib/views/CBaseObject.h"
#include "lib/views/VintaEvents.h"
#include "lib/views/VintaTypes.h"

namespace Vinta {

class CBitmap;
class COptionMenu;
class IOSOptionMenu;
class IOSTextEdit;
class ITextEditCallback;

class IFrame : public CBaseObject {
public:
    virtual bool create(void* parent, const CRect& rect) = 0;
    virtual void destroy() = 0;
    virtual bool getScreenPosition(double& x, double& y) = 0;
    virtual bool setSize(double width, double height) = 0;
    virtual bool getRect(CRect& out) = 0;
    virtual bool getMouseLocation(CPoint& out) = 0;
    virtual CButtonState getMouseButtons() = 0;
    virtual void setCursor(int32_t type) = 0;
    virtual void invalidRect(const CRect& rect) = 0;
    // Null when the platform has no such field or menu.
    virtual IOSTextEdit* createTextEdit(ITextEditCallback* callback) = 0;
    virtual IOSOptionMenu* createOptionMenu(COptionMenu* menu) = 0;
    virtual void* getSystemWindow() = 0;
    virtual void idle() = 0;
    virtual void* getNvg() = 0;
    virtual void resize() = 0;
    virtual void* makeCursor(CBitmap* bitmap) = 0;
    virtual void paint() = 0;
    virtual void update() = 0;
    virtual void setFrameRate(int32_t framesPerSecond) = 0;
    virtual void postUpdate() = 0;

protected:
    ~IFrame() override = default;
};

// Makes the platform window of a frame; set once by the platform layer. Without one the frame
// has no window (tests may give their own).
class CFrame;
using IFrameFactory = IFrame* (*)(CFrame* owner);
void setFrameFactory(IFrameFactory factory);
IFrameFactory getFrameFactory();

} // namespace Vinta
