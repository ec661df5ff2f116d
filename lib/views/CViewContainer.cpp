#include "lib/views/CViewContainer.h"

#include <cstring>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/CControl.h"
#include "lib/views/CControlListener.h"
#include "lib/views/CFrame.h"

namespace Vinta {

CViewContainer::CViewContainer(const CRect& rect) : CView(rect) {
    sentinel.prev = sentinel.next = &sentinel;
}

CViewContainer::CViewContainer(const CViewContainer& other)
    : CView(other),
      backgroundColor(other.backgroundColor),
      backgroundOffset(other.backgroundOffset),
      mode(other.mode) {
    sentinel.prev = sentinel.next = &sentinel;
    other.findChild([this](CView* child) {
        CView* copy = child->newCopy();
        if (copy && !copy->isAttached() && !addView(copy)) copy->forget();
        return false;
    });
}

CViewContainer::~CViewContainer() { removeAll(true); }

int32_t CViewContainer::notify(CBaseObject* sender, CMessageID message) {
    if (message == kMsgCheckIfViewContainer) return 1;
    return CView::notify(sender, message);
}

bool CViewContainer::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CViewContainer") == 0) || CView::isTypeOf(name);
}

CViewContainer::Node* CViewContainer::findNode(const CView* view) const {
    for (Node* node = sentinel.next; node != &sentinel; node = node->next)
        if (node->view == view) return node;
    return nullptr;
}

bool CViewContainer::insertBefore(CView* view, Node* position) {
    if (!view || view->isAttached() || view->getParentView() || view == this) return false;
    Node* node = new Node{view, position->prev, position};
    position->prev->next = node;
    position->prev = node;
    ++childCount;
    view->setParentView(this);
    if (isAttached()) {
        view->attached(this);
        view->setDirty(true);
        view->invalidateInFrame();
    }
    return true;
}

bool CViewContainer::addView(CView* view) { return insertBefore(view, &sentinel); }

bool CViewContainer::addViewBefore(CView* view, CView* before) {
    Node* position = before ? findNode(before) : &sentinel;
    return insertBefore(view, position ? position : &sentinel);
}

bool CViewContainer::addViewAt(CView* view, const CRect& mouseArea, bool mouseOn) {
    if (!addView(view)) return false;
    view->setMouseableArea(mouseArea);
    view->setMouseEnabled(mouseOn);
    return true;
}

bool CViewContainer::removeView(CView* view, bool forget) {
    Node* node = findNode(view);
    if (!node) return false;
    if (mouseOverView == view) mouseOverView = nullptr;
    if (mouseDownView == view) mouseDownView = nullptr;
    if (dragView == view) dragView = nullptr;
    node->prev->next = node->next;
    node->next->prev = node->prev;
    delete node;
    --childCount;
    if (view->isAttached()) {
        view->invalidateInFrame();
        view->removed(this);
    }
    view->setParentView(nullptr);
    if (forget) view->forget();
    return true;
}

bool CViewContainer::removeAll(bool forget) {
    while (sentinel.prev != &sentinel) removeView(sentinel.prev->view, forget);
    return true;
}

void CViewContainer::bringToFront(CView* view) {
    Node* node = findNode(view);
    if (!node || node == sentinel.prev) return;
    node->prev->next = node->next;
    node->next->prev = node->prev;
    node->prev = sentinel.prev;
    node->next = &sentinel;
    sentinel.prev->next = node;
    sentinel.prev = node;
}

bool CViewContainer::isChild(const CView* view) const { return view && findNode(view); }

CView* CViewContainer::getView(int32_t index) const {
    if (index < 0) return nullptr;
    return findChild([&index](CView*) { return index-- == 0; });
}

CView* CViewContainer::getViewAt(const CPoint& where, bool deep) const {
    const CPoint local = toLocal(where);
    CView* found = findChild(
        [&local](CView* child) { return child->isVisible() && child->getMouseableArea().pointInside(local); },
        true);
    if (found && deep && found->notify(nullptr, kMsgCheckIfViewContainer) == 1)
        return static_cast<CViewContainer*>(found)->getViewAt(local, true);
    return found;
}

CViewContainer* CViewContainer::getContainerAt(const CPoint& where, bool deep) const {
    const CPoint local = toLocal(where);
    CView* found = findChild(
        [&local](CView* child) {
            return child->isVisible() && child->notify(nullptr, kMsgCheckIfViewContainer) == 1 &&
                   child->getViewSize().pointInside(local);
        },
        true);
    if (!found) return const_cast<CViewContainer*>(this);
    auto* container = static_cast<CViewContainer*>(found);
    return deep ? container->getContainerAt(local, true) : container;
}

void CViewContainer::setBackgroundColor(const CColor& colour) {
    backgroundColor = colour;
    setDirty(true);
}

bool CViewContainer::attached(CView* parentView) {
    CView::attached(parentView);
    findChild([this](CView* child) {
        child->attached(this);
        return false;
    });
    return true;
}

bool CViewContainer::removed(CView* parentView) {
    findChild([this](CView* child) {
        child->removed(this);
        child->setParentView(this);  // still in this list, detached from the frame only
        return false;
    });
    mouseOverView = mouseDownView = dragView = nullptr;
    return CView::removed(parentView);
}

void CViewContainer::setViewSize(const CRect& rect, bool invalidate) {
    CView::setViewSize(rect, invalidate);
    findChild([](CView* child) {
        child->parentSizeChanged();
        return false;
    });
}

// ---- drawing

void CViewContainer::draw(CDrawContext* context) { drawRect(context, size); }

void CViewContainer::drawBackgroundRect(CDrawContext* context, const CRect& rect) {
    if (background) {
        const CPoint source(rect.left + backgroundOffset.x, rect.top + backgroundOffset.y);
        if (transparent)
            background->drawTransparent(context, rect, source);
        else
            background->draw(context, rect, source);
    } else if (!transparent) {
        context->setFillColor(backgroundColor);
        context->drawRect(rect, kDrawFilled);
    }
}

void CViewContainer::drawRect(CDrawContext* context, const CRect& updateRect) {
    if (!context) return;
    const CPoint savedOffset = context->getOffset();
    CRect savedClip;
    context->getClipRect(savedClip);

    context->setOffset(savedOffset + size.getTopLeft());
    CRect update = updateRect;
    update.offset(-size.left, -size.top);
    CRect clip = savedClip;
    clip.offset(-size.left, -size.top);
    clip.bound(update);
    context->setClipRect(clip);

    drawBackgroundRect(context, clip);
    findChild([&](CView* child) {
        if (!child->isVisible() || !checkUpdateOfChild(child, clip)) return false;
        CRect childClip = child->getViewSize();
        childClip.bound(clip);
        if (childClip.getWidth() > 0.0 && childClip.getHeight() > 0.0) {
            context->setClipRect(childClip);
            child->drawRect(context, childClip);
        }
        return false;
    });

    context->setOffset(savedOffset);
    context->setClipRect(savedClip);
    dirty = false;
}

bool CViewContainer::isDirty() const {
    if (dirty) return true;
    const CRect local(0.0, 0.0, size.getWidth(), size.getHeight());
    return findChild([&local](CView* child) {
               return child->isVisible() && child->isDirty() && child->getViewSize().rectOverlap(local);
           }) != nullptr;
}

void CViewContainer::invalid() { invalidateInFrame(); }

void CViewContainer::redrawDirty() {
    if (!visible) return;
    if (dirty) {
        invalid();
        return;
    }
    findChild([](CView* child) {
        if (!child->isVisible() || !child->isDirty()) return false;
        if (child->notify(nullptr, kMsgCheckIfViewContainer) == 1) {
            static_cast<CViewContainer*>(child)->redrawDirty();
        } else {
            child->setDirty(true);
            // Controls mark themselves without touching the frame (they may be told on any
            // thread); their rectangle enters the list here, on the window's thread.
            child->invalidateInFrame();
        }
        return false;
    });
}

void CViewContainer::setChildrenVisible(bool state) {
    findChild([state](CView* child) {
        child->setVisible(state);
        return false;
    });
}

CRect& CViewContainer::getVisibleSizeOf(CRect& out, const CRect& rect) const {
    CRect visibleLocal;
    getVisibleSize(visibleLocal);
    visibleLocal.offset(-size.left, -size.top);
    out = rect;
    out.bound(visibleLocal);
    return out;
}

bool CViewContainer::checkUpdateOfChild(const CView* view, const CRect& rect) const {
    return view && view->checkUpdate(rect);
}

// ---- mouse, wheel and keys

bool CViewContainer::isEligible(CView* child, const CPoint& where, CButtonState buttons) {
    return child->isVisible() && child->getMouseEnabled() && child->hitTest(where, buttons) && child->getEnabled();
}

bool CViewContainer::hitTestChildren(const CPoint& where, CButtonState buttons) {
    const CPoint local = toLocal(where);
    return findChild([&](CView* child) { return isEligible(child, local, buttons); }, true) != nullptr;
}

int32_t CViewContainer::onMouseDown(const CPoint& where, CButtonState buttons) {
    const CPoint local = toLocal(where);
    int32_t result = kMouseEventNotHandled;
    findChild(
        [&](CView* child) {
            if (!isEligible(child, local, buttons)) return false;
            if (buttons > 15) {
                auto* control = dynamic_cast<CControl*>(child);
                if (control && control->getListener() &&
                    control->getListener()->controlModifierClicked(control, buttons)) {
                    result = kMouseEventHandled;
                    return true;
                }
            }
            const int32_t answer = child->onMouseDown(local, buttons);
            if (answer == kMouseEventHandled) {
                mouseDownView = child;
                result = answer;
                return true;
            }
            if (answer == kMouseEventHandledNoCapture) {
                result = answer;
                return true;
            }
            return false;
        },
        true);
    return result;
}

int32_t CViewContainer::onMouseUp(const CPoint& where, CButtonState buttons) {
    CView* target = mouseDownView;
    if (!target) return kMouseEventNotHandled;
    target->remember();
    target->onMouseUp(toLocal(where), buttons);
    mouseDownView = nullptr;
    target->forget();
    return kMouseEventHandled;
}

int32_t CViewContainer::onMouseMoved(const CPoint& where, CButtonState buttons) {
    const CPoint local = toLocal(where);
    int32_t result = kMouseEventNotHandled;
    CView* captured = mouseDownView;
    if (captured) result = captured->onMouseMoved(local, buttons);
    if (result != kMouseEventHandled) {
        findChild(
            [&](CView* child) {
                if (child == captured || !isEligible(child, local, buttons)) return false;
                if (child->onMouseMoved(local, buttons) != kMouseEventHandled) return false;
                result = kMouseEventHandled;
                return true;
            },
            true);
    }
    CView* over = findChild(
        [&](CView* child) {
            return child->isVisible() && child->getMouseEnabled() && child->hitTest(local, buttons);
        },
        true);
    if (over != mouseOverView) {
        if (mouseOverView) mouseOverView->onMouseExited(local, buttons);
        mouseOverView = over;
        if (over) over->onMouseEntered(local, buttons);
    }
    return result;
}

int32_t CViewContainer::onMouseExited(const CPoint& where, CButtonState buttons) {
    if (mouseOverView) {
        CView* old = mouseOverView;
        mouseOverView = nullptr;
        old->onMouseExited(toLocal(where), buttons);
    }
    return kMouseEventHandled;
}

bool CViewContainer::onWheel(const CPoint& where, float delta, CButtonState buttons) {
    return onWheelAxis(where, 1, delta, buttons);
}

bool CViewContainer::onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons) {
    const CPoint local = toLocal(where);
    CView* taker = findChild(
        [&](CView* child) {
            return isEligible(child, local, buttons) && child->getWantsWheel() &&
                   child->onWheelAxis(local, axis, delta, buttons);
        },
        true);
    if (taker) mouseDownView = taker;
    return taker != nullptr;
}

int32_t CViewContainer::onKeyDown(const VstKeyCode& key) {
    int32_t result = kKeyNotHandled;
    findChild(
        [&](CView* child) {
            result = child->onKeyDown(key);
            return result >= 0;
        },
        true);
    return result;
}

int32_t CViewContainer::onKeyUp(const VstKeyCode& key) {
    int32_t result = kKeyNotHandled;
    findChild(
        [&](CView* child) {
            result = child->onKeyUp(key);
            return result >= 0;
        },
        true);
    return result;
}

// ---- drag and drop

void CViewContainer::onDragEnter(CDragContainer* drag, const CPoint& where) { onDragMove(drag, where); }

void CViewContainer::onDragMove(CDragContainer* drag, const CPoint& where) {
    const CPoint local = toLocal(where);
    CView* under = getViewAt(where, false);
    if (under != dragView) {
        if (dragView) dragView->onDragLeave(drag, local);
        dragView = under;
        if (under) under->onDragEnter(drag, local);
    } else if (under) {
        under->onDragMove(drag, local);
    }
}

void CViewContainer::onDragLeave(CDragContainer* drag, const CPoint& where) {
    if (dragView) dragView->onDragLeave(drag, toLocal(where));
    dragView = nullptr;
}

bool CViewContainer::onDrop(CDragContainer* drag, const CPoint& where) {
    CView* under = getViewAt(where, false);
    dragView = nullptr;
    return under && under->onDrop(drag, toLocal(where));
}

// ---- focus

bool CViewContainer::focusWalk(CView*& from, bool reverse) {
    return findChild(
               [&](CView* child) {
                   if (from == child) {
                       from = nullptr;
                       return false;
                   }
                   if (!child->isVisible()) return false;
                   if (child->notify(nullptr, kMsgCheckIfViewContainer) == 1)
                       return static_cast<CViewContainer*>(child)->focusWalk(from, reverse);
                   if (from || !child->getWantsFocus() || !child->getEnabled()) return false;
                   if (CFrame* owner = getFrame()) owner->setFocusView(child);
                   return true;
               },
               reverse) != nullptr;
}

bool CViewContainer::advanceNextFocusView(CView* from, bool reverse) { return focusWalk(from, reverse); }

} // namespace Vinta
