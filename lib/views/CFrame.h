#pragma once
// The root of a view tree: owns the platform window (through IFrame), the dirty list, focus and
// modal view, and hands parameter gestures to the editor. Tree and dirty list are guarded by
// `lock`, which every paint takes.
#include <functional>

#include "CORE/threads/CCriticalSection.h"
#include "lib/views/CDirtyRectHelper.h"
#include "lib/views/CViewContainer.h"

namespace Ondra {
class IPluginParameter;
}

namespace Vinta {

class IFrame;
class IOSOptionMenu;
class IOSTextEdit;
class ITextEditCallback;
class COptionMenu;
class IVintaEditor;

class CFrame : public CViewContainer {
public:
    // The frame takes over the reference of `platform`; without one it asks the frame factory.
    CFrame(const CRect& size, void* systemWindow, IVintaEditor* editor, IFrame* platform = nullptr);

    // The owner's way to let the frame go: the tree is taken down, then the owner's reference dropped.
    void close();

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseExited(const CPoint& where, CButtonState buttons) override;
    bool onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons) override;
    int32_t onKeyDown(const VstKeyCode& key) override;
    int32_t onKeyUp(const VstKeyCode& key) override;
    bool addView(CView* view) override;
    bool addViewBefore(CView* view, CView* before) override;
    bool advanceNextFocusView(CView* from, bool reverse = false) override;
    IVintaEditor* getEditor() const override { return editor; }
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CFrame"; }

    virtual bool frameReservedA() { return false; }
    // Turns dirty views into dirty rectangles and asks the window to repaint them.
    virtual bool idle();
    virtual void frameReservedB() {}
    virtual uint32_t getTicks() const;
    virtual bool frameReservedC() { return false; }
    virtual bool getSize(double& width, double& height) const;
    virtual bool setSize(double width, double height);
    virtual bool getFrameRect(CRect& out) const;
    virtual bool getPlatformRect(CRect& out) const;
    // Puts a view over everything, which then alone takes mouse and wheel; the tree takes over
    // the caller's reference. Null takes the present one down. False while another is up.
    virtual bool setModalView(CView* view);
    virtual CView* getModalView() const { return modalView; }
    virtual void beginEdit(Ondra::IPluginParameter* parameter);
    virtual void endEdit(Ondra::IPluginParameter* parameter);
    virtual void performEdit(Ondra::IPluginParameter* parameter);
    virtual const CPoint& getCurrentLocation() const { return mouseLocation; }
    virtual void copyMouseLocation(CPoint& out) const { out = mouseLocation; }
    virtual CButtonState getCurrentMouseButtons() const;
    virtual void setCursor(int32_t type);
    virtual void setFocusView(CView* view);
    virtual CView* getFocusView() const { return focusView; }
    virtual void onViewRemoved(CView* view);
    virtual void frameReservedD() {}
    virtual IOSTextEdit* createTextEdit(ITextEditCallback* callback);
    virtual IOSOptionMenu* createOptionMenu(COptionMenu* menu);
    virtual void setHoverText(const char*) {}

    // Drops no view under the pointer takes go to `handler` (files dropped anywhere on the editor);
    // it answers whether it took them. Cleared when the tree closes.
    using DropHandler = std::function<bool(CDragContainer* drag)>;
    void setUnclaimedDropHandler(DropHandler handler) { unclaimedDrop = std::move(handler); }
    bool offerUnclaimedDrop(CDragContainer* drag) { return unclaimedDrop && drag && unclaimedDrop(drag); }
    virtual double getHostValue() const { return 0.0; }

    // Thread-safe: only the list is touched.
    void addDirtyRect(const CRect& rect);
    // Copies the waiting rectangles out; answers their count (0 with `wholeFrame` set when the list overflowed).
    int32_t copyDirtyRects(CRect* out, int32_t capacity, bool& wholeFrame);
    IFrame* getPlatformFrame() const { return platformFrame; }
    void* getSystemWindow() const { return systemWindow; }
    void setDrawContext(CDrawContext* context);
    Core::Threads::CCriticalSection& getLock() { return lock; }

protected:
    ~CFrame() override;

private:
    CPoint toChild(const CPoint& where) const { return where - size.getTopLeft(); }
    void keepModalOnTop();

    void* systemWindow = nullptr;
    IVintaEditor* editor = nullptr;
    CView* modalView = nullptr;
    CView* focusView = nullptr;
    CDrawContext* drawContext = nullptr;
    CDirtyRectHelper dirtyRects;
    bool wholeFrameDirty = false;
    IFrame* platformFrame = nullptr;
    CPoint mouseLocation{-1.0, -1.0};
    CButtonState mouseButtons = 0;
    Core::Threads::CCriticalSection lock;
    DropHandler unclaimedDrop;
};

} // namespace Vinta
