#pragma once
// The small close cross of attached windows: a click on it shuts every window in its list.
#include <vector>

#include "lib/views/CControl.h"
#include "lib/views/VintaObjectInfo.h"

namespace Vinta {

// A window that can be opened and shut (the editors' slide-out panels).
class IAttachedWindow {
public:
    virtual ~IAttachedWindow() = default;
    virtual void setOpen(bool open) = 0;
};

class CXButton : public CControl {
public:
    class CInfo : public Vinta_ObjectConstructorInfoBase {
    public:
        CView* CreateObject() override;
        std::vector<IAttachedWindow*> windows;
    };

    explicit CXButton(const CInfo& info);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CXButton"; }

    void addWindow(IAttachedWindow* window) { windows.push_back(window); }

private:
    std::vector<IAttachedWindow*> windows;
    bool pressed = false;
};

} // namespace Vinta
