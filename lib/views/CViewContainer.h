#pragma once
// A view holding child views. The child list keeps one reference to each child; the children's
// rectangles are in the container's coordinates (offset by its left and top).
#include "lib/views/CView.h"

namespace Vinta {

class CViewContainer : public CView {
public:
    explicit CViewContainer(const CRect& size);
    CViewContainer(const CViewContainer& other);

    int32_t notify(CBaseObject* sender, CMessageID message) override;

    void draw(CDrawContext* context) override;
    void drawRect(CDrawContext* context, const CRect& updateRect) override;
    bool isDirty() const override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseUp(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseMoved(const CPoint& where, CButtonState buttons) override;
    int32_t onMouseExited(const CPoint& where, CButtonState buttons) override;
    bool onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons) override;
    bool onWheel(const CPoint& where, float delta, CButtonState buttons) override;
    int32_t onKeyDown(const VstKeyCode& key) override;
    int32_t onKeyUp(const VstKeyCode& key) override;
    // A drag goes to the child under the pointer, which hears enter and leave as the pointer moves.
    bool onDrop(CDragContainer* drag, const CPoint& where) override;
    void onDragEnter(CDragContainer* drag, const CPoint& where) override;
    void onDragLeave(CDragContainer* drag, const CPoint& where) override;
    void onDragMove(CDragContainer* drag, const CPoint& where) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    bool removed(CView* parentView) override;
    bool attached(CView* parentView) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CViewContainer(*this); }
    const char* getClassName() const override { return "CViewContainer"; }

    virtual bool addViewBefore(CView* view, CView* before);
    virtual bool addViewAt(CView* view, const CRect& mouseArea, bool mouseOn = true);
    virtual bool addView(CView* view);
    // With `forget` the list's reference is dropped; without it the caller takes it over.
    virtual bool removeView(CView* view, bool forget = true);
    virtual bool removeAll(bool forget = true);
    virtual bool isChild(const CView* view) const;
    virtual int32_t getNbViews() const { return childCount; }
    virtual CView* getView(int32_t index) const;
    // The topmost visible child under `where` (container coordinates of the parent); `deep`
    // descends into child containers.
    virtual CView* getViewAt(const CPoint& where, bool deep = false) const;
    virtual CViewContainer* getContainerAt(const CPoint& where, bool deep = true) const;
    virtual void setBackgroundColor(const CColor& colour);
    virtual void copyBackgroundColor(CColor& out) const { out = backgroundColor; }
    virtual void setBackgroundOffset(const CPoint& offset) { backgroundOffset = offset; }
    virtual const CPoint& getBackgroundOffset() const { return backgroundOffset; }
    // `rect` in local coordinates.
    virtual void drawBackgroundRect(CDrawContext* context, const CRect& rect);
    virtual void setMode(bool state) { mode = state; }
    // Moves the focus to the next (or previous) view that wants it, starting after `from`.
    virtual bool advanceNextFocusView(CView* from, bool reverse = false);
    virtual void invalid();
    virtual void redrawDirty();
    virtual void setChildrenVisible(bool state);
    virtual CRect& getVisibleSizeOf(CRect& out, const CRect& rect) const;
    virtual bool checkUpdateOfChild(const CView* view, const CRect& rect) const;
    virtual bool hitTestChildren(const CPoint& where, CButtonState buttons);

    bool getMode() const { return mode; }
    CView* getMouseOverView() const { return mouseOverView; }
    CView* getMouseDownView() const { return mouseDownView; }
    CView* getDragView() const { return dragView; }

    // Visits the children first to last (or last to first); stops when `visit` answers true.
    template <typename Visitor>
    CView* findChild(Visitor visit, bool lastFirst = false) const {
        for (Node* node = lastFirst ? sentinel.prev : sentinel.next; node != &sentinel;
             node = lastFirst ? node->prev : node->next)
            if (visit(node->view)) return node->view;
        return nullptr;
    }

protected:
    ~CViewContainer() override;

    // A child that takes mouse input at `where` (container coordinates).
    bool isEligible(CView* child, const CPoint& where, CButtonState buttons);
    CPoint toLocal(const CPoint& where) const { return where - size.getTopLeft(); }
    // Moves a child to the end of the list (drawn last, hit first) without touching references.
    void bringToFront(CView* view);

    CView* mouseDownView = nullptr;
    CView* mouseOverView = nullptr;
    CView* dragView = nullptr;

private:
    struct Node {
        CView* view = nullptr;
        Node* prev = nullptr;
        Node* next = nullptr;
    };
    Node* findNode(const CView* view) const;
    bool insertBefore(CView* view, Node* position);
    bool focusWalk(CView*& from, bool reverse);

    Node sentinel;
    int32_t childCount = 0;
    CColor backgroundColor = kBlackCColor;
    CPoint backgroundOffset;
    bool mode = false;
};

} // namespace Vinta
