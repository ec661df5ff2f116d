#include "adapters/vst3/Ondra_VST3_EditorView.h"

#include <cmath>
#include <cstring>

#include "adapters/vst3/Ondra_VST3.h"
#include "lib/editor-base/CVintariaEditor.h"

using namespace Steinberg;

namespace {
// Timer period when the frame names none.
constexpr Linux::TimerInterval kDefaultTimerMs = 16;
}  // namespace

// What the host's run loop calls: reference counted on its own, so that a host holding on to it
// after the view is gone only reaches a cleared pointer.
class Ondra_VST3_EditorView::RunLoopLink : public Linux::IEventHandler, public Linux::ITimerHandler {
public:
    explicit RunLoopLink(Ondra_VST3_EditorView* owner) : view(owner) {}
    virtual ~RunLoopLink() = default;
    RunLoopLink(const RunLoopLink&) = delete;
    RunLoopLink& operator=(const RunLoopLink&) = delete;

    tresult queryInterface(const TUID interfaceId, void** object) override {
        if (!object) return kInvalidArgument;
        *object = nullptr;
        if (sameUid(interfaceId, FUnknown::iid) || sameUid(interfaceId, Linux::IEventHandler::iid))
            *object = static_cast<Linux::IEventHandler*>(this);
        else if (sameUid(interfaceId, Linux::ITimerHandler::iid))
            *object = static_cast<Linux::ITimerHandler*>(this);
        else
            return kNoInterface;
        addRef();
        return kResultOk;
    }
    uint32 addRef() override { return references.fetch_add(1) + 1; }
    uint32 release() override {
        const uint32 left = references.fetch_sub(1) - 1;
        if (left == 0) delete this;
        return left;
    }
    void onFDIsSet(Linux::FileDescriptor) override {
        if (Vinta::CVintariaEditor* target = view ? view->editor() : nullptr) target->pumpEvents();
    }
    void onTimer() override {
        if (Vinta::CVintariaEditor* target = view ? view->editor() : nullptr) target->idle();
    }

    Ondra_VST3_EditorView* view;

private:
    std::atomic<uint32> references{1};
};

Ondra_VST3_EditorView::Ondra_VST3_EditorView(Ondra_VST3* owner, const ViewRect& size)
    : CPluginView(&size), controller(owner) {
    controller->addRef();
    controller->addView(this);
}

Ondra_VST3_EditorView::~Ondra_VST3_EditorView() {
    if (isAttached()) removed();
    controller->removeView(this);
    controller->release();
}

tresult Ondra_VST3_EditorView::queryInterface(const TUID interfaceId, void** object) {
    if (object && sameUid(interfaceId, IPlugViewContentScaleSupport::iid)) {
        *object = static_cast<IPlugViewContentScaleSupport*>(this);
        addRef();
        return kResultOk;
    }
    return CPluginView::queryInterface(interfaceId, object);
}

Vinta::CVintariaEditor* Ondra_VST3_EditorView::editor() const { return controller->getEditor(); }

tresult Ondra_VST3_EditorView::isPlatformTypeSupported(FIDString type) {
    return type && std::strcmp(type, kPlatformTypeX11EmbedWindowID) == 0 ? kResultTrue : kResultFalse;
}

tresult Ondra_VST3_EditorView::attached(void* parent, FIDString type) {
    Vinta::CVintariaEditor* target = editor();
    if (!parent || !target || isAttached() || isPlatformTypeSupported(type) != kResultTrue) return kResultFalse;
    void* found = nullptr;
    if (plugFrame && plugFrame->queryInterface(Linux::IRunLoop::iid.bytes, &found) == kResultOk && found)
        runLoop = static_cast<Linux::IRunLoop*>(found);
    target->setEventDriver(runLoop ? Vinta::X11::EventDriver::HostRunLoop : Vinta::X11::EventDriver::OwnThread);
    if (!target->open(parent)) {
        if (runLoop) runLoop->release();
        runLoop = nullptr;
        return kResultFalse;
    }
    joinRunLoop();
    int32_t width = 0, height = 0;
    target->getRect(width, height);
    rect = {0, 0, width, height};
    return CPluginView::attached(parent, type);
}

void Ondra_VST3_EditorView::joinRunLoop() {
    Vinta::CVintariaEditor* target = editor();
    if (!runLoop || !target) return;
    link = new RunLoopLink(this);
    const int fd = target->getEventFd();
    if (fd >= 0) runLoop->registerEventHandler(link, fd);
    const uint32_t interval = target->getTimerInterval();
    runLoop->registerTimer(link, interval ? interval : kDefaultTimerMs);
}

void Ondra_VST3_EditorView::leaveRunLoop() {
    if (link) {
        link->view = nullptr;
        if (runLoop) {
            runLoop->unregisterEventHandler(link);
            runLoop->unregisterTimer(link);
        }
        link->release();
        link = nullptr;
    }
    if (runLoop) runLoop->release();
    runLoop = nullptr;
}

void Ondra_VST3_EditorView::closeEditor() {
    leaveRunLoop();
    if (Vinta::CVintariaEditor* target = editor()) target->close();
}

tresult Ondra_VST3_EditorView::removed() {
    closeEditor();
    return CPluginView::removed();
}

tresult Ondra_VST3_EditorView::onWheel(float distance) {
    Vinta::CVintariaEditor* target = editor();
    return target && target->onWheel(distance) ? kResultTrue : kResultFalse;
}

tresult Ondra_VST3_EditorView::forwardKey(bool down, char16 key, int16 keyCode, int16 modifiers) {
    Vinta::CVintariaEditor* target = editor();
    if (!target || !target->getFrame()) return kResultFalse;
    Vinta::VstKeyCode record;
    record.virt = static_cast<uint8_t>(keyCode);
    if (keyCode >= 128 && key == 0) key = static_cast<char16>(keyCode - 80);
    // Only a key that is one byte in UTF-8 is a character here.
    if (key != 0 && key < 0x80) record.character = static_cast<int32_t>(key);
    // Shift and alternate keep their bits; command (4) and control (8) trade places.
    record.modifier = static_cast<uint8_t>((modifiers & 3) | ((modifiers & 4) ? 8 : 0) | ((modifiers & 8) ? 4 : 0));
    const int32_t result = down ? target->onKeyDown(record) : target->onKeyUp(record);
    return result == 1 ? kResultTrue : kResultFalse;
}

tresult Ondra_VST3_EditorView::onKeyDown(char16 key, int16 keyCode, int16 modifiers) {
    return forwardKey(true, key, keyCode, modifiers);
}

tresult Ondra_VST3_EditorView::onKeyUp(char16 key, int16 keyCode, int16 modifiers) {
    return forwardKey(false, key, keyCode, modifiers);
}

tresult Ondra_VST3_EditorView::getSize(ViewRect* size) {
    if (!size) return kInvalidArgument;
    if (Vinta::CVintariaEditor* target = editor()) {
        int32_t width = 0, height = 0;
        target->getRect(width, height);
        rect = {0, 0, width, height};
    }
    *size = rect;
    return kResultTrue;
}

// The size follows the GUI scale alone: any other size is turned back into it.
tresult Ondra_VST3_EditorView::checkSizeConstraint(ViewRect* proposed) {
    if (!proposed) return kInvalidArgument;
    ViewRect own{};
    getSize(&own);
    proposed->right = proposed->left + own.right - own.left;
    proposed->bottom = proposed->top + own.bottom - own.top;
    return kResultTrue;
}

tresult Ondra_VST3_EditorView::setContentScaleFactor(ScaleFactor factor) {
    Vinta::CVintariaEditor* target = editor();
    if (!target || !std::isfinite(factor) || factor <= 0.0f) return kResultFalse;
    // An open editor tells the host its new size through the controller's sizeWindow.
    target->setGuiScale(static_cast<double>(factor));
    return kResultTrue;
}

void Ondra_VST3_EditorView::requestSize(int width, int height) {
    rect = {0, 0, width, height};
    if (plugFrame && isAttached()) plugFrame->resizeView(this, &rect);
}
