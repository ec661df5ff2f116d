#pragma once
// The base of every plug-in editor: what a host adapter talks to. It owns the CFrame while open and
// knows the GUI scale; the view tree works in unscaled editor units and the scale is applied at the
// edges, here and in the platform frame.
#include <cstdint>

#include "CORE/threads/CCriticalSection.h"
#include "framework/plugin/IdleClient.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/views/IVintaEditor.h"
#include "lib/views/VintaEvents.h"
#include "lib/views/VintaTypes.h"

namespace Ondra {
class OndraOS;
}

namespace Vinta {

class CBitmap;
class CFrame;
class Vinta_ObjectConstructorInfoBase;
class CViewContainer;

class CVintariaEditor : public Ondra::PluginEditor, public IVintaEditor {
public:
    static constexpr double kMinGuiScale = 1.0;
    static constexpr double kMaxGuiScale = 2.0;

    explicit CVintariaEditor(Ondra::OndraOS* plugin);
    ~CVintariaEditor() override;
    CVintariaEditor(const CVintariaEditor&) = delete;
    CVintariaEditor& operator=(const CVintariaEditor&) = delete;

    // The scaled size in window pixels, truncated.
    virtual bool getRect(int32_t& width, int32_t& height);
    // A resize the host started, in window pixels.
    virtual void setHostSize(double width, double height);
    virtual const CRect& getRectPointer();
    // Opens the editor in the platform window `window` (an X11 Window id); false when it cannot.
    virtual bool open(void* window);
    virtual void close();
    // Host idle: never waits for a close that runs on another thread.
    void idle() override;
    virtual int32_t onKeyDown(const VstKeyCode& key);
    virtual int32_t onKeyUp(const VstKeyCode& key);
    virtual bool onWheel(float delta);
    virtual void onIdleHook() {}
    void beginEdit(Ondra::IPluginParameter* parameter) override;
    void endEdit(Ondra::IPluginParameter* parameter) override;
    void performEdit(Ondra::IPluginParameter* parameter) override;
    virtual void setEditorSize(double width, double height);
    // Builds the views into the new frame.
    virtual void openHook(CFrame*) {}
    virtual void setBackground(CBitmap* bitmap);
    virtual CFrame* makeFrame(const CRect& size, void* window);
    bool isOpen() override { return systemWindow != nullptr; }
    void saveGuiScale() override {}
    virtual void loadGuiScale() {}

    double getSampleRate() override;
    // Clamped to 100-200 %; an open editor resizes its window and asks the host to follow.
    void setGuiScale(double scale) override;
    double getGuiScale() const override { return guiScale; }

    CPoint toFrame(const CPoint& point) const { return {point.x / guiScale, point.y / guiScale}; }
    CPoint toWindow(const CPoint& point) const { return {point.x * guiScale, point.y * guiScale}; }
    CRect toFrame(const CRect& rect) const;
    CRect toWindow(const CRect& rect) const;
    bool addView(Vinta_ObjectConstructorInfoBase& record, CViewContainer* container);

    // Who drives the window's events: the host's run loop (VST3), its idle calls (VST2), or a
    // thread of the frame's own (embedding programs). Set before `open`; the adapter knows its host.
    void setEventDriver(X11::EventDriver driver) { eventDriver = driver; }
    X11::EventDriver getEventDriver() const { return eventDriver; }
    // The window system connection a host run loop watches, and how often its timer should call
    // pumpEvents; -1 and 0 while shut or on the frame's own thread.
    int getEventFd();
    uint32_t getTimerInterval();
    // Handles what waits on that connection and paints what changed; never waits for a close.
    void pumpEvents();
    // The platform window while open, else null.
    X11::X11Frame* getPlatformFrame() const;

    CFrame* getFrame() const { return frame; }
    Ondra::OndraOS* getPlugin() const { return plugin; }
    uint32_t getOpenTick() const { return openTick; }

    // Editors open in this process.
    static int32_t getOpenEditorCount();

protected:
    CRect rect;
    CRect rectUnscaled{0.0, 0.0, 534.0, 488.0};
    CFrame* frame = nullptr;
    void* systemWindow = nullptr;
    Ondra::OndraOS* plugin = nullptr;
    uint32_t openTick = 0;
    Core::Threads::CCriticalSection lock;
    double guiScale = 1.0;

private:
    void updateScaledRect();
    // Runs `handler` on the open frame under both locks; `fallback` while shut.
    template <typename Handler>
    auto withFrame(Handler handler, decltype(handler(nullptr)) fallback);
    X11::EventDriver eventDriver = X11::EventDriver::OwnThread;
};

}  // namespace Vinta
