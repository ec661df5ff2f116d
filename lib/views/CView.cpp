#include "lib/views/CView.h"

#include <cstdlib>
#include <cstring>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/views/CFrame.h"
#include "lib/views/IVintaEditor.h"

namespace Vinta {

const CMessageID kMsgCheckIfViewContainer = "kMsgCheckIfViewContainer";

CView::CView(const CRect& rect) : size(rect), mouseableArea(rect) {}

CView::CView(const CView& other)
    : CBaseObject(),
      size(other.size),
      mouseableArea(other.mouseableArea),
      mouseEnabled(other.mouseEnabled),
      transparent(other.transparent),
      wantsFocus(other.wantsFocus),
      visible(other.visible),
      enabled(other.enabled),
      wantsWheel(other.wantsWheel) {
    setBackground(other.background);
    copyAttributesFrom(other);
}

CView::~CView() {
    if (background) background->forget();
    freeAttributes();
    setFrame(nullptr);
}

int32_t CView::notify(CBaseObject*, CMessageID) { return 0; }

void CView::draw(CDrawContext* context) {
    if (background) drawBackground(context, size);
    setDirty(false);
}

void CView::drawRect(CDrawContext* context, const CRect&) { draw(context); }

void CView::drawBackground(CDrawContext* context, const CRect& rect) {
    if (!background || !context) return;
    const CPoint source(rect.left - size.left, rect.top - size.top);
    if (transparent)
        background->drawTransparent(context, rect, source);
    else
        background->draw(context, rect, source);
}

void CView::setDirty(bool state) {
    dirty = state;
    if (state) invalidateInFrame();
}

void CView::invalidateInFrame() {
    if (attached_ && frame) frame->addDirtyRect(getRectInFrame());
}

void CView::invalidRect(const CRect& rect) {
    if (!attached_ || !frame) return;
    CRect inFrame = rect;
    CPoint origin(0.0, 0.0);
    localToFrame(origin);
    inFrame.offset(origin.x, origin.y);
    frame->addDirtyRect(inFrame);
}

void CView::setVisible(bool state) {
    if (visible == state) return;
    visible = state;
    dirty = true;
    setDirty(true);
    invalidateInFrame();
}

void CView::setEnabled(bool state) {
    if (enabled == state) return;
    enabled = state;
    dirty = true;  // the look changes even where the value does not
    setDirty(true);
    invalidateInFrame();
}

int32_t CView::onMouseDown(const CPoint&, CButtonState) { return kMouseEventNotHandled; }
int32_t CView::onMouseUp(const CPoint&, CButtonState) { return kMouseEventNotHandled; }
int32_t CView::onMouseMoved(const CPoint&, CButtonState) { return kMouseEventNotHandled; }
int32_t CView::onMouseEntered(const CPoint&, CButtonState) { return kMouseEventNotHandled; }
int32_t CView::onMouseExited(const CPoint&, CButtonState) { return kMouseEventNotHandled; }

bool CView::hitTest(const CPoint& where, CButtonState) { return mouseableArea.pointInside(where); }

bool CView::onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons) {
    return onWheel(where, axis == 0 ? -delta : delta, buttons);
}

bool CView::onWheel(const CPoint&, float, CButtonState) { return false; }

bool CView::onDrop(CDragContainer*, const CPoint&) { return false; }
void CView::onDragEnter(CDragContainer*, const CPoint&) {}
void CView::onDragLeave(CDragContainer*, const CPoint&) {}
void CView::onDragMove(CDragContainer*, const CPoint&) {}
int32_t CView::onKeyDown(const VstKeyCode&) { return kKeyNotHandled; }
int32_t CView::onKeyUp(const VstKeyCode&) { return kKeyNotHandled; }

void CView::setViewSize(const CRect& rect, bool invalidate) {
    if (invalidate) invalidateInFrame();
    // The mouseable area follows the view when it was the whole view.
    if (mouseableArea == size) mouseableArea = rect;
    size = rect;
    if (invalidate) {
        setDirty(true);
        invalidateInFrame();
    }
}

CRect CView::getRectInFrame() const {
    CRect rect = size;
    CPoint origin(0.0, 0.0);
    localToFrame(origin);
    return rect.offset(origin.x, origin.y);
}

CRect& CView::getVisibleSize(CRect& out) const {
    CRect visibleInFrame = getRectInFrame();
    for (const CView* ancestor = parent; ancestor; ancestor = ancestor->parent)
        visibleInFrame.bound(ancestor->getRectInFrame());
    CPoint origin(0.0, 0.0);
    localToFrame(origin);
    out = visibleInFrame.offset(-origin.x, -origin.y);
    return out;
}

bool CView::isVisibleInTree() const {
    if (!visible) return false;
    if (!parent) return true;
    CRect rect;
    getVisibleSize(rect);
    return !rect.isEmpty() && parent->isVisibleInTree();
}

CPoint& CView::frameToLocal(CPoint& point) const {
    for (const CView* ancestor = parent; ancestor; ancestor = ancestor->parent)
        point.offset(-ancestor->size.left, -ancestor->size.top);
    return point;
}

CPoint& CView::localToFrame(CPoint& point) const {
    for (const CView* ancestor = parent; ancestor; ancestor = ancestor->parent)
        point.offset(ancestor->size.left, ancestor->size.top);
    return point;
}

void CView::setBackground(CBitmap* bitmap) {
    if (bitmap == background) return;
    if (bitmap) bitmap->remember();
    if (background) background->forget();
    background = bitmap;
    setDirty(true);
}

bool CView::attached(CView* parentView) {
    parent = parentView;
    setFrame(parentView ? parentView->getFrame() : nullptr);
    attached_ = true;
    return true;
}

bool CView::removed(CView*) {
    if (frame) frame->onViewRemoved(this);
    setFrame(nullptr);
    parent = nullptr;
    attached_ = false;
    return true;
}

void CView::setFrame(CFrame* newFrame) {
    if (newFrame == frame) return;
    CView* self = this;
    if (newFrame && static_cast<CView*>(newFrame) != self) newFrame->remember();
    CFrame* old = frame;
    frame = newFrame;
    if (old && static_cast<CView*>(old) != self) old->forget();
}

IVintaEditor* CView::getEditor() const { return frame ? frame->getEditor() : nullptr; }

bool CView::isTypeOf(const char* name) const { return name && std::strcmp(name, "CView") == 0; }

double CView::getSampleRate() const {
    IVintaEditor* editor = getEditor();
    return editor ? editor->getSampleRate() : 44100.0;
}

CView::Attribute* CView::findAttribute(int32_t id) const {
    for (Attribute* entry = attributes; entry; entry = entry->next)
        if (entry->id == id) return entry;
    return nullptr;
}

bool CView::setAttribute(int32_t id, int32_t byteSize, const void* data) {
    if (byteSize < 0 || (byteSize > 0 && !data)) return false;
    void* copy = byteSize > 0 ? std::malloc(static_cast<size_t>(byteSize)) : nullptr;
    if (byteSize > 0 && !copy) return false;
    if (copy) std::memcpy(copy, data, static_cast<size_t>(byteSize));
    if (Attribute* entry = findAttribute(id)) {
        std::free(entry->data);
        entry->data = copy;
        entry->byteSize = byteSize;
        return true;
    }
    auto* entry = static_cast<Attribute*>(std::malloc(sizeof(Attribute)));
    if (!entry) {
        std::free(copy);
        return false;
    }
    *entry = Attribute{attributes, copy, byteSize, id};
    attributes = entry;
    return true;
}

bool CView::getAttributeSize(int32_t id, int32_t& byteSize) const {
    const Attribute* entry = findAttribute(id);
    if (!entry) return false;
    byteSize = entry->byteSize;
    return true;
}

bool CView::getAttribute(int32_t id, int32_t capacity, void* data, int32_t& byteSize) const {
    const Attribute* entry = findAttribute(id);
    if (!entry || capacity < entry->byteSize || (entry->byteSize > 0 && !data)) return false;
    if (entry->byteSize > 0) std::memcpy(data, entry->data, static_cast<size_t>(entry->byteSize));
    byteSize = entry->byteSize;
    return true;
}

bool CView::removeAttribute(int32_t id) {
    for (Attribute** link = &attributes; *link; link = &(*link)->next) {
        if ((*link)->id != id) continue;
        Attribute* entry = *link;
        *link = entry->next;
        std::free(entry->data);
        std::free(entry);
        return true;
    }
    return false;
}

void CView::copyAttributesFrom(const CView& other) {
    // Oldest first, so that the copy keeps the same order.
    int32_t count = 0;
    for (const Attribute* entry = other.attributes; entry; entry = entry->next) ++count;
    for (int32_t index = count - 1; index >= 0; --index) {
        const Attribute* entry = other.attributes;
        for (int32_t step = 0; step < index; ++step) entry = entry->next;
        setAttribute(entry->id, entry->byteSize, entry->data);
    }
}

void CView::freeAttributes() {
    while (attributes) removeAttribute(attributes->id);
}

} // namespace Vinta
