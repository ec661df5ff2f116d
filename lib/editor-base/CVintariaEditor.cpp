#include "lib/editor-base/CVintariaEditor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <mutex>
#include <vector>

#include "framework/plugin/OndraOS.h"
#include "lib/controls/ViewBuilder.h"
#include "lib/views/CFrame.h"
#include "lib/views/VintaClock.h"

namespace Vinta {

namespace {

struct OpenEditors {
    std::mutex lock;
    std::vector<CVintariaEditor*> editors;
};

OpenEditors& openEditors() {
    static OpenEditors list;
    return list;
}

void enterList(CVintariaEditor* editor) {
    OpenEditors& list = openEditors();
    std::lock_guard<std::mutex> guard(list.lock);
    if (std::find(list.editors.begin(), list.editors.end(), editor) == list.editors.end())
        list.editors.push_back(editor);
}

void leaveList(CVintariaEditor* editor) {
    OpenEditors& list = openEditors();
    std::lock_guard<std::mutex> guard(list.lock);
    list.editors.erase(std::remove(list.editors.begin(), list.editors.end(), editor), list.editors.end());
}

}  // namespace

int32_t CVintariaEditor::getOpenEditorCount() {
    OpenEditors& list = openEditors();
    std::lock_guard<std::mutex> guard(list.lock);
    return static_cast<int32_t>(list.editors.size());
}

CVintariaEditor::CVintariaEditor(Ondra::OndraOS* owner) : plugin(owner), openTick(getVintaTicks()) {
    updateScaledRect();
}

CVintariaEditor::~CVintariaEditor() {
    close();
    leaveList(this);
}

void CVintariaEditor::updateScaledRect() {
    rect = CRect(0.0, 0.0, std::trunc(rectUnscaled.getWidth() * guiScale),
                 std::trunc(rectUnscaled.getHeight() * guiScale));
}

bool CVintariaEditor::getRect(int32_t& width, int32_t& height) {
    updateScaledRect();
    width = static_cast<int32_t>(rect.getWidth());
    height = static_cast<int32_t>(rect.getHeight());
    return true;
}

const CRect& CVintariaEditor::getRectPointer() {
    updateScaledRect();
    return rect;
}

void CVintariaEditor::setHostSize(double width, double height) {
    if (frame) frame->setSize(width / guiScale, height / guiScale);
}

bool CVintariaEditor::open(void* window) {
    if (!window || systemWindow) return false;
    lock.enter();
    systemWindow = window;
    updateScaledRect();
    frame = makeFrame(rectUnscaled, window);
    if (!frame) {
        systemWindow = nullptr;
        lock.leave();
        return false;
    }
    openHook(frame);
    if (X11::X11Frame* platform = X11::X11Frame::of(frame)) platform->start();
    openTick = getVintaTicks();
    lock.leave();
    enterList(this);
    return true;
}

void CVintariaEditor::close() {
    lock.enter();
    leaveList(this);
    CFrame* closing = frame;
    frame = nullptr;
    systemWindow = nullptr;
    // Events and paints stop before the views go.
    if (closing) X11::X11Frame::closeFrame(closing);
    lock.leave();
}

void CVintariaEditor::idle() {
    if (!lock.tryEnter()) return;
    if (frame) {
        frame->idle();
        if (eventDriver != X11::EventDriver::OwnThread)
            if (X11::X11Frame* platform = X11::X11Frame::of(frame)) platform->pump();
        onIdleHook();
    }
    lock.leave();
}

X11::X11Frame* CVintariaEditor::getPlatformFrame() const { return frame ? X11::X11Frame::of(frame) : nullptr; }

int CVintariaEditor::getEventFd() {
    lock.enter();
    X11::X11Frame* platform = getPlatformFrame();
    const int fd = platform ? platform->getConnectionFd() : -1;
    lock.leave();
    return fd;
}

uint32_t CVintariaEditor::getTimerInterval() {
    lock.enter();
    X11::X11Frame* platform = getPlatformFrame();
    const uint32_t interval = platform ? platform->getTimerInterval() : 0;
    lock.leave();
    return interval;
}

void CVintariaEditor::pumpEvents() {
    if (!lock.tryEnter()) return;
    if (X11::X11Frame* platform = getPlatformFrame()) {
        frame->idle();
        platform->pump();
    }
    lock.leave();
}

// Keys and wheel come on the host's thread: the editor's lock keeps a close out, the frame's
// lock a paint or the frame's own thread.
template <typename Handler>
auto CVintariaEditor::withFrame(Handler handler, decltype(handler(nullptr)) fallback) {
    lock.enter();
    if (frame) {
        frame->getLock().enter();
        fallback = handler(frame);
        frame->getLock().leave();
    }
    lock.leave();
    return fallback;
}

int32_t CVintariaEditor::onKeyDown(const VstKeyCode& key) {
    return withFrame([&](CFrame* target) { return target->onKeyDown(key); }, kKeyNotHandled);
}

int32_t CVintariaEditor::onKeyUp(const VstKeyCode& key) {
    return withFrame([&](CFrame* target) { return target->onKeyUp(key); }, kKeyNotHandled);
}

bool CVintariaEditor::onWheel(float delta) {
    // The pointer is asked of the window's thread before the frame's lock is taken: that thread may
    // be waiting for the same lock to paint, and the question would wait for it in turn.
    lock.enter();
    CPoint where;
    CButtonState buttons = 0;
    if (frame) {
        where = frame->getCurrentLocation();
        buttons = frame->getCurrentMouseButtons();
    }
    const bool handled = withFrame([&](CFrame* target) { return target->onWheel(where, delta, buttons); }, false);
    lock.leave();
    return handled;
}

void CVintariaEditor::beginEdit(Ondra::IPluginParameter* parameter) {
    if (plugin) plugin->beginEdit(parameter);
}

void CVintariaEditor::endEdit(Ondra::IPluginParameter* parameter) {
    if (plugin) plugin->endEdit(parameter);
}

void CVintariaEditor::performEdit(Ondra::IPluginParameter* parameter) {
    if (plugin) plugin->automate(parameter);
}

void CVintariaEditor::setEditorSize(double width, double height) {
    rectUnscaled.right = rectUnscaled.left + width;
    rectUnscaled.bottom = rectUnscaled.top + height;
    updateScaledRect();
    if (X11::X11Frame* platform = getPlatformFrame()) platform->setScale(guiScale);
}

void CVintariaEditor::setBackground(CBitmap* bitmap) {
    if (frame) frame->setBackground(bitmap);
}

CFrame* CVintariaEditor::makeFrame(const CRect& size, void* window) {
    X11::FrameOptions options;
    options.driver = eventDriver;
    options.scale = guiScale;
    return X11::X11Frame::openFrame(static_cast<unsigned long>(reinterpret_cast<uintptr_t>(window)), size, this,
                                    options);
}

double CVintariaEditor::getSampleRate() { return plugin ? plugin->getSampleRate() : 44100.0; }

void CVintariaEditor::setGuiScale(double scale) {
    if (!std::isfinite(scale)) return;
    const double clamped = std::clamp(scale, kMinGuiScale, kMaxGuiScale);
    if (clamped == guiScale) return;
    guiScale = clamped;
    updateScaledRect();
    X11::X11Frame* platform = getPlatformFrame();
    if (!platform) return;
    platform->setScale(guiScale);
    if (plugin && plugin->getCallback())
        plugin->getCallback()->sizeWindow(static_cast<int>(rect.getWidth()), static_cast<int>(rect.getHeight()));
}

CRect CVintariaEditor::toFrame(const CRect& in) const {
    return {in.left / guiScale, in.top / guiScale, in.right / guiScale, in.bottom / guiScale};
}

CRect CVintariaEditor::toWindow(const CRect& in) const {
    return {in.left * guiScale, in.top * guiScale, in.right * guiScale, in.bottom * guiScale};
}

bool CVintariaEditor::addView(Vinta_ObjectConstructorInfoBase& record, CViewContainer* container) {
    return frame && addViewFromRecord(&record, container, frame) != nullptr;
}

}  // namespace Vinta
