#pragma once
// The editor's window on X11: a child of the host's window with its own connection to the server,
// painted through nanovg on a GLX 3.3 core context, or through the software context where GL
// cannot be had (or ZONFRA_NO_GL=1). It never owns the host's event loop: the host drives it
// through the connection's descriptor and a timer, or through its idle call, or the frame runs a
// thread of its own. Every X and GL call of one frame happens on one thread.
#include <atomic>
#include <cstdint>
#include <memory>

#include "lib/views/IFrame.h"

struct _XDisplay;

namespace Vinta {
class CFrame;
class IVintaEditor;
}  // namespace Vinta

namespace Vinta::X11 {

enum class EventDriver {
    HostRunLoop,  // the host watches getConnectionFd() and calls pump() on readable and on a timer
    HostIdle,     // the host calls pump() regularly (VST2 effEditIdle)
    OwnThread,    // the frame polls and pumps on a thread of its own
};

struct FrameOptions {
    EventDriver driver = EventDriver::HostIdle;
    double scale = 1.0;   // window pixels per editor unit; the editor's scale wins when it has one
    bool allowGL = true;  // false, or ZONFRA_NO_GL=1 in the environment, paints in software
};

class X11Frame : public IFrame {
public:
    // Makes the CFrame of `units` size with its window inside `parentWindow` (an X11 Window id).
    // Nothing is pumped or painted before start(), so the caller can build the tree first.
    // Null when no display can be opened.
    static CFrame* openFrame(unsigned long parentWindow, const CRect& units, IVintaEditor* editor,
                             const FrameOptions& options);
    // The platform frame of a CFrame made by openFrame, else null.
    static X11Frame* of(CFrame* frame);
    // Stops events and painting, releases the window (and the thread), then closes the tree. From
    // the host's side: under OwnThread never from the frame's own thread (a view's handler).
    static void closeFrame(CFrame* frame);

    // Events and painting begin; with OwnThread the thread starts pumping.
    void start();
    // The X connection's descriptor to watch (HostRunLoop); -1 under OwnThread or without display.
    int getConnectionFd() const;
    // Milliseconds between the pump calls the host's timer should make.
    uint32_t getTimerInterval() const;
    // Handles waiting events, fires due timers and paints when something changed. Host drivers
    // only, on the thread that opened the frame. Safe to call while nothing is pending.
    void pump();

    // Window pixels per editor unit: our window takes the tree's size times the scale; growing the
    // host's window around it is the caller's part.
    void setScale(double scale);
    double getScale() const { return scale.load(); }
    unsigned long getWindow() const { return window; }
    bool isGL() const { return glContext != nullptr; }
    // The GL failure shown in the editor, empty when GL runs or was not asked for.
    const char* getGLError() const;
    // Paints now and copies the window's pixels (window size); the caller forgets the bitmap.
    CBitmap* screenshot();
    bool saveScreenshot(const char* pngPath);
    // Paints done so far: lets tests and benchmarks see that an idle editor stays idle.
    uint64_t getPaintCount() const { return paintCount.load(); }

    // IFrame. Sizes and positions here are window pixels; invalidRect takes editor units.
    bool create(void* parent, const CRect& rect) override;
    void destroy() override;
    bool getScreenPosition(double& x, double& y) override;
    bool setSize(double width, double height) override;
    bool getRect(CRect& out) override;
    bool getMouseLocation(CPoint& out) override;
    CButtonState getMouseButtons() override;
    void setCursor(int32_t type) override;
    void invalidRect(const CRect& rect) override;
    IOSTextEdit* createTextEdit(ITextEditCallback* callback) override;
    IOSOptionMenu* createOptionMenu(COptionMenu* menu) override;
    void* getSystemWindow() override { return reinterpret_cast<void*>(window); }
    void idle() override;
    void* getNvg() override { return nvg; }
    void resize() override;
    void* makeCursor(CBitmap* bitmap) override;
    void paint() override;
    void update() override;
    void setFrameRate(int32_t framesPerSecond) override;
    void postUpdate() override;

    // For the companions (text field, menus, dialogs, drop target): the connection and the tree.
    // Nothing of ours waits inside a host's call: companions answer from the frame's pump.
    ::_XDisplay* getDisplay() const;
    CFrame* getFrame() const { return frame; }
    // From any thread; false when the window has gone (the companion was not taken).
    bool addCompanion(class X11Companion* companion);
    void removeCompanion(class X11Companion* companion);
    // True once destroy() has begun: nothing new is started.
    bool isClosing() const;

    struct Native;  // X, GL and thread state, in the .cpp

protected:
    X11Frame(CFrame* owner, const FrameOptions& options);
    ~X11Frame() override;

private:
    friend struct Native;
    CFrame* frame = nullptr;
    std::unique_ptr<Native> native;
    unsigned long window = 0;
    void* glContext = nullptr;
    void* nvg = nullptr;
    std::atomic<double> scale{1.0};
    std::atomic<uint64_t> paintCount{0};
};

}  // namespace Vinta::X11
