#include "lib/views/CFrame.h"

#include <atomic>
#include <cmath>
#include <cstring>

#include "lib/drawing/CDrawContext.h"
#include "lib/views/IFrame.h"
#include "lib/views/IVintaEditor.h"
#include "lib/views/VintaClock.h"

namespace Vinta {

namespace {
std::atomic<IFrameFactory> frameFactory{nullptr};
// One guard for the whole process: a focus change never starts inside another.
bool focusChangeInProgress = false;
}  // namespace

void setFrameFactory(IFrameFactory factory) { frameFactory.store(factory); }
IFrameFactory getFrameFactory() { return frameFactory.load(); }

CFrame::CFrame(const CRect& rect, void* window, IVintaEditor* owner, IFrame* platform)
    : CViewContainer(rect), systemWindow(window), editor(owner), platformFrame(platform) {
    setFrame(this);
    attached_ = true;
    if (!platformFrame) {
        if (IFrameFactory factory = getFrameFactory()) platformFrame = factory(this);
    }
    if (platformFrame) platformFrame->create(systemWindow, size);
}

CFrame::~CFrame() {
    removeAll(true);
    modalView = focusView = nullptr;
    if (platformFrame) {
        platformFrame->destroy();
        platformFrame->forget();
        platformFrame = nullptr;
    }
    setDrawContext(nullptr);
}

void CFrame::close() {
    unclaimedDrop = nullptr;
    lock.enter();
    removeAll(true);
    lock.leave();
    forget();
}

bool CFrame::isTypeOf(const char* name) const {
    return (name && std::strcmp(name, "CFrame") == 0) || CViewContainer::isTypeOf(name);
}

void CFrame::setDrawContext(CDrawContext* context) {
    if (context == drawContext) return;
    if (context) context->remember();
    if (drawContext) drawContext->forget();
    drawContext = context;
}

// ---- tree

void CFrame::keepModalOnTop() {
    if (modalView) bringToFront(modalView);
}

bool CFrame::addView(CView* view) {
    if (!CViewContainer::addView(view)) return false;
    keepModalOnTop();
    return true;
}

bool CFrame::addViewBefore(CView* view, CView* before) {
    if (!CViewContainer::addViewBefore(view, before)) return false;
    keepModalOnTop();
    return true;
}

bool CFrame::setModalView(CView* view) {
    if (view && modalView) return false;
    if (modalView) removeView(modalView, true);
    if (view) {
        if (!addView(view)) return false;
        modalView = view;
    }
    return true;
}

void CFrame::onViewRemoved(CView* view) {
    if (modalView == view) modalView = nullptr;
    if (focusView == view) focusView = nullptr;
}

// ---- drawing and dirty rectangles

void CFrame::addDirtyRect(const CRect& rect) {
    lock.enter();
    if (!dirtyRects.add(rect)) wholeFrameDirty = true;
    lock.leave();
}

int32_t CFrame::copyDirtyRects(CRect* out, int32_t capacity, bool& wholeFrame) {
    lock.enter();
    wholeFrame = wholeFrameDirty;
    int32_t count = 0;
    if (!wholeFrame)
        for (; count < dirtyRects.getCount() && count < capacity; ++count) out[count] = dirtyRects.get(count);
    lock.leave();
    return count;
}

bool CFrame::idle() {
    CRect pending[CDirtyRectHelper::kCapacity];
    bool wholeFrame = false;
    lock.enter();
    if (isDirty()) redrawDirty();
    const int32_t count = copyDirtyRects(pending, CDirtyRectHelper::kCapacity, wholeFrame);
    lock.leave();
    if (platformFrame) {
        if (wholeFrame)
            platformFrame->invalidRect(size);
        else
            for (int32_t index = 0; index < count; ++index) platformFrame->invalidRect(pending[index]);
    }
    return true;
}

void CFrame::draw(CDrawContext* context) {
    lock.enter();
    dirtyRects.clear();
    wholeFrameDirty = false;
    CDrawContext* target = context ? context : drawContext;
    if (target) {
        CRect savedClip;
        target->getClipRect(savedClip);
        CRect clip = size;
        clip.bound(savedClip);
        target->setClipRect(clip);
        if (size.getWidth() > 0.0 && size.getHeight() > 0.0) CViewContainer::drawRect(target, clip);
        target->setClipRect(savedClip);
    }
    lock.leave();
    if (platformFrame) platformFrame->invalidRect(size);
}

// ---- size, pointer, platform

uint32_t CFrame::getTicks() const { return getVintaTicks(); }

bool CFrame::getSize(double& width, double& height) const {
    width = size.getWidth();
    height = size.getHeight();
    return true;
}

bool CFrame::setSize(double width, double height) {
    // The window takes window pixels and keeps its pixels per unit (the GUI scale).
    CRect pixels;
    double perUnit = 1.0;
    if (platformFrame && platformFrame->getRect(pixels) && size.getWidth() > 0.0 && pixels.getWidth() > 0.0)
        perUnit = pixels.getWidth() / size.getWidth();
    CRect rect = size;
    rect.setWidth(width).setHeight(height);
    setViewSize(rect, true);
    if (platformFrame) platformFrame->setSize(std::round(width * perUnit), std::round(height * perUnit));
    return true;
}

bool CFrame::getFrameRect(CRect& out) const {
    out = size;
    return true;
}

bool CFrame::getPlatformRect(CRect& out) const {
    if (platformFrame) return platformFrame->getRect(out);
    out = size;
    return true;
}

CButtonState CFrame::getCurrentMouseButtons() const {
    return platformFrame ? platformFrame->getMouseButtons() : mouseButtons;
}

void CFrame::setCursor(int32_t type) {
    if (platformFrame) platformFrame->setCursor(type);
}

IOSTextEdit* CFrame::createTextEdit(ITextEditCallback* callback) {
    return platformFrame ? platformFrame->createTextEdit(callback) : nullptr;
}

IOSOptionMenu* CFrame::createOptionMenu(COptionMenu* menu) {
    return platformFrame ? platformFrame->createOptionMenu(menu) : nullptr;
}

// ---- gestures

void CFrame::beginEdit(Ondra::IPluginParameter* parameter) {
    if (parameter && editor) editor->beginEdit(parameter);
}

void CFrame::endEdit(Ondra::IPluginParameter* parameter) {
    if (parameter && editor) editor->endEdit(parameter);
}

void CFrame::performEdit(Ondra::IPluginParameter* parameter) {
    if (editor) editor->performEdit(parameter);
}

// ---- focus

void CFrame::setFocusView(CView* view) {
    if (view == focusView || focusChangeInProgress) return;
    focusChangeInProgress = true;
    CView* old = focusView;
    focusView = view;
    if (view && view->getWantsFocus()) view->setDirty(true);
    if (old) {
        if (old->getWantsFocus()) old->setDirty(true);
        old->looseFocus();
    }
    focusChangeInProgress = false;
}

bool CFrame::advanceNextFocusView(CView* from, bool reverse) {
    if (!modalView) return CViewContainer::advanceNextFocusView(from, reverse);
    if (modalView->notify(nullptr, kMsgCheckIfViewContainer) == 1)
        return static_cast<CViewContainer*>(modalView)->advanceNextFocusView(from, reverse);
    if (modalView == from || !modalView->getWantsFocus()) return false;
    setFocusView(modalView);
    return true;
}

// ---- events

int32_t CFrame::onMouseDown(const CPoint& where, CButtonState buttons) {
    if ((buttons & kLButton) && (buttons & kControl)) buttons = kMButton;
    mouseButtons = buttons;
    mouseLocation = where;
    mouseDownView = nullptr;

    if (focusView) {
        CPoint local = where;
        focusView->frameToLocal(local);
        if (!focusView->hitTest(local, buttons)) setFocusView(nullptr);
    }
    if (modalView) {
        const CPoint local = toChild(where);
        if (modalView->hitTest(local, buttons) && modalView->onMouseDown(local, buttons) == kMouseEventHandled) {
            mouseDownView = modalView;
            return kMouseEventHandled;
        }
        return kMouseEventNotHandled;
    }
    return CViewContainer::onMouseDown(where, buttons);
}

int32_t CFrame::onMouseUp(const CPoint& where, CButtonState buttons) {
    mouseButtons = buttons;
    mouseLocation = where;
    if (mouseDownView) {
        const CPoint local = toChild(where);
        if (!mouseDownView->getViewSize().pointInside(local)) mouseDownView->onMouseExited(local, buttons);
    }
    return CViewContainer::onMouseUp(where, buttons);
}

int32_t CFrame::onMouseMoved(const CPoint& where, CButtonState buttons) {
    mouseButtons = buttons;
    mouseLocation = where;
    if (modalView) return modalView->onMouseMoved(toChild(where), buttons);
    return CViewContainer::onMouseMoved(where, buttons);
}

int32_t CFrame::onMouseExited(const CPoint& where, CButtonState buttons) {
    return CViewContainer::onMouseExited(where, buttons);
}

bool CFrame::onWheelAxis(const CPoint& where, int32_t axis, float delta, CButtonState buttons) {
    mouseLocation = where;
    if (modalView) return modalView->onWheelAxis(toChild(where), axis, delta, buttons);
    return CViewContainer::onWheelAxis(where, axis, delta, buttons);
}

int32_t CFrame::onKeyDown(const VstKeyCode& key) {
    int32_t result = kKeyNotHandled;
    if (focusView) result = focusView->onKeyDown(key);
    if (result < 0 && modalView) result = modalView->onKeyDown(key);
    if (result < 0) result = CViewContainer::onKeyDown(key);
    if (result >= 0) return result;
    if (key.virt == VKEY_TAB) return advanceNextFocusView(focusView, (key.modifier & kKeyShift) != 0) ? 1 : -1;
    return kKeyNotHandled;
}

int32_t CFrame::onKeyUp(const VstKeyCode& key) {
    int32_t result = kKeyNotHandled;
    if (focusView) result = focusView->onKeyUp(key);
    if (result < 0 && modalView) result = modalView->onKeyUp(key);
    return result;
}

} // namespace Vinta
