#pragma once
// A rectangle of the retained view tree. The rectangle lives in the parent's coordinates; a view
// knows its parent (not counted) and, while attached, its frame (counted).
#include <atomic>
#include <cstdint>

#include "lib/views/CBaseObject.h"
#include "lib/views/VintaEvents.h"
#include "lib/views/VintaTypes.h"

namespace Vinta {

class CBitmap;
class CDrawContext;
class CDragContainer;
class CFrame;
class IVintaEditor;

// Answered 1 by every container and 0 by any other view.
extern const CMessageID kMsgCheckIfViewContainer;

class CView : public CBaseObject {
public:
    explicit CView(const CRect& size);
    CView(const CView& other);
    CView& operator=(const CView&) = delete;

    int32_t notify(CBaseObject* sender, CMessageID message) override;

    virtual void draw(CDrawContext* context);
    virtual void drawRect(CDrawContext* context, const CRect& updateRect);
    virtual bool checkUpdate(const CRect& rect) const { return size.rectOverlap(rect); }
    virtual bool isDirty() const { return dirty; }
    virtual void setDirty(bool state = true);
    virtual void invalidRect(const CRect& rect);
    virtual void setVisible(bool state);
    virtual void setEnabled(bool state);

    virtual int32_t onMouseDown(const CPoint& where, CButtonState buttons);
    virtual int32_t onMouseUp(const CPoint& where, CButtonState buttons);
    virtual int32_t onMouseMoved(const CPoint& where, CButtonState buttons);
    virtual int32_t onMouseEntered(const CPoint& where, CButtonState buttons);
    virtual int32_t onMouseExited(const CPoint& where, CButtonState buttons);
    virtual bool hitTest(const CPoint& where, CButtonState buttons = ~0u);
    virtual bool onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons);
    virtual bool onWheel(const CPoint& where, float delta, CButtonState buttons);
    virtual void setWantsWheel(bool state) { wantsWheel = state; }
    virtual bool getWantsWheel() const { return wantsWheel; }
    virtual void setMouseEnabled(bool state) { mouseEnabled = state; }
    virtual bool getMouseEnabled() const { return mouseEnabled; }
    virtual void setMouseableArea(const CRect& rect) { mouseableArea = rect; }
    virtual const CRect& getMouseableArea() const { return mouseableArea; }
    virtual void copyMouseableArea(CRect& out) const { out = mouseableArea; }

    virtual bool onDrop(CDragContainer* drag, const CPoint& where);
    virtual void onDragEnter(CDragContainer* drag, const CPoint& where);
    virtual void onDragLeave(CDragContainer* drag, const CPoint& where);
    virtual void onDragMove(CDragContainer* drag, const CPoint& where);
    virtual int32_t onKeyDown(const VstKeyCode& key);
    virtual int32_t onKeyUp(const VstKeyCode& key);

    virtual void setViewSize(const CRect& rect, bool invalidate = true);
    virtual const CRect& getViewSize() const { return size; }
    virtual void copyViewSize(CRect& out) const { out = size; }
    // The part of the view not cut off by its ancestors, in the parent's coordinates.
    virtual CRect& getVisibleSize(CRect& out) const;
    virtual void parentSizeChanged() {}
    // Between frame coordinates and the coordinates this view's rectangle is given in.
    virtual CPoint& frameToLocal(CPoint& point) const;
    virtual CPoint& localToFrame(CPoint& point) const;

    virtual void looseFocus() {}
    virtual void takeFocus() {}
    virtual bool getWantsFocus() const { return wantsFocus; }
    virtual void setWantsFocus(bool state) { wantsFocus = state; }

    virtual void setBackground(CBitmap* bitmap);
    virtual CBitmap* getBackground() const { return background; }
    virtual void setTransparency(bool state) { transparent = state; }
    virtual bool getTransparency() const { return transparent; }

    virtual bool removed(CView* parentView);
    virtual bool attached(CView* parentView);
    virtual void setParentView(CView* parentView) { parent = parentView; }
    virtual void setFrame(CFrame* newFrame);
    virtual IVintaEditor* getEditor() const;
    virtual bool isTypeOf(const char* name) const;
    virtual CView* newCopy() const { return new CView(*this); }
    virtual const char* getClassName() const { return "CView"; }
    virtual double getSampleRate() const;

    // Not overridable.
    bool isVisible() const { return visible; }
    bool isVisibleInTree() const;
    bool getEnabled() const { return enabled; }
    bool isAttached() const { return attached_; }
    CView* getParentView() const { return parent; }
    CFrame* getFrame() const { return frame; }
    double getWidth() const { return size.getWidth(); }
    double getHeight() const { return size.getHeight(); }
    // The view's rectangle in frame coordinates.
    CRect getRectInFrame() const;
    // Enters the view's rectangle into the frame's dirty list (also for controls, whose
    // setDirty only marks them).
    void invalidateInFrame();

    // Attributes: small blobs kept by id, copied in and out.
    bool setAttribute(int32_t id, int32_t byteSize, const void* data);
    bool getAttributeSize(int32_t id, int32_t& byteSize) const;
    bool getAttribute(int32_t id, int32_t capacity, void* data, int32_t& byteSize) const;
    bool removeAttribute(int32_t id);

protected:
    ~CView() override;

    // Background bitmap under the given rectangle of the view.
    void drawBackground(CDrawContext* context, const CRect& rect);

    CRect size;
    CRect mouseableArea;
    std::atomic<bool> dirty{false};  // set from parameter listeners on any thread
    bool mouseEnabled = true;
    bool transparent = false;
    bool wantsFocus = false;
    bool attached_ = false;
    bool visible = true;
    bool enabled = true;
    bool wantsWheel = true;
    CBitmap* background = nullptr;

private:
    struct Attribute {
        Attribute* next;
        void* data;
        int32_t byteSize;
        int32_t id;
    };
    Attribute* findAttribute(int32_t id) const;
    void copyAttributesFrom(const CView& other);
    void freeAttributes();

    Attribute* attributes = nullptr;
    CFrame* frame = nullptr;
    CView* parent = nullptr;
};

} // namespace Vinta
