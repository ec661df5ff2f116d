#include "lib/platform-x11/X11Frame.h"

#include <GL/glew.h>
#include <GL/glx.h>
#include <X11/Xcursor/Xcursor.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/cursorfont.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "lib/drawing/CBitmap.h"
#include "lib/drawing/CDrawContext_AGG.h"
#include "lib/drawing/CDrawContext_GL.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/platform-x11/X11Companion.h"
#include "lib/platform-x11/X11DropTarget.h"
#include "lib/platform-x11/X11ErrorTrap.h"
#include "lib/platform-x11/X11KeyMap.h"
#include "lib/platform-x11/X11OptionMenu.h"
#include "lib/platform-x11/X11SoftwareSurface.h"
#include "lib/platform-x11/X11SystemTimer.h"
#include "lib/platform-x11/X11TextEdit.h"
#include "lib/views/CFrame.h"
#include "lib/views/IVintaEditor.h"
#include "lib/views/VintaClock.h"

namespace Vinta::X11 {

namespace {
constexpr Time kDoubleClickTime = 400;
constexpr int kDoubleClickDistance = 4;
// Without a wake-up from anywhere else, a parameter moved by the host shows within this time.
constexpr int kIdlePollMilliseconds = 40;

bool softwareForced() {
    const char* value = std::getenv("ZONFRA_NO_GL");
    return value && std::strcmp(value, "1") == 0;
}

// Pointer shapes by the toolkit's numbers, as the desktop's cursor theme names them.
const char* cursorName(int32_t type) {
    switch (type) {
        case 1: return "watch";
        case 2: return "sb_h_double_arrow";
        case 3: return "sb_v_double_arrow";
        case 4: return "fleur";
        case 5: return "bottom_left_corner";
        case 6: return "bottom_right_corner";
        case 8: return "crossed_circle";
        case 9: return "hand2";
        default: return "left_ptr";
    }
}

unsigned int cursorFontShape(int32_t type) {
    switch (type) {
        case 1: return XC_watch;
        case 2: return XC_sb_h_double_arrow;
        case 3: return XC_sb_v_double_arrow;
        case 4: return XC_fleur;
        case 5: return XC_bottom_left_corner;
        case 6: return XC_bottom_right_corner;
        case 8: return XC_X_cursor;
        case 9: return XC_hand2;
        default: return XC_left_ptr;
    }
}

unsigned int buttonMask(unsigned int button) {
    switch (button) {
        case 1: return Button1Mask;
        case 2: return Button2Mask;
        case 3: return Button3Mask;
        default: return 0;
    }
}
}  // namespace

struct X11Frame::Native {
    explicit Native(X11Frame& owner, const FrameOptions& frameOptions) : self(owner), options(frameOptions) {}

    X11Frame& self;
    FrameOptions options;
    Display* display = nullptr;
    Window parent = 0;
    Window window = 0;
    Colormap colormap = 0;
    Visual* visual = nullptr;
    int depth = 0;
    GC gc = nullptr;
    uint32_t pixelWidth = 1, pixelHeight = 1;

    GLXContext context = nullptr;
    NVGcontext* nvg = nullptr;
    CDrawContext_GL* glDraw = nullptr;
    std::string glError;
    std::unique_ptr<X11SoftwareSurface> surface;
    CDrawContext_AGG* softDraw = nullptr;
    std::vector<uint8_t> softPixels;
    uint32_t softWidth = 0, softHeight = 0;

    std::atomic<bool> needsPaint{true};
    bool painting = false;
    uint32_t lastPaint = 0;
    X11SystemTimer::Schedule timerSchedule;  // this frame's timer periods
    std::atomic<int32_t> frameRate{25};
    std::atomic<bool> started{false};
    std::atomic<bool> closing{false};
    bool timerUser = false;

    Time lastClickTime = 0;
    unsigned int lastClickButton = 0;
    int lastClickX = 0, lastClickY = 0;
    bool captured = false;
    XIM inputMethod = nullptr;
    XIC inputContext = nullptr;
    std::map<int32_t, Cursor> shapeCursors;
    std::vector<Cursor> madeCursors;
    std::unique_ptr<X11DropTarget> dropTarget;
    std::vector<X11Companion*> companions;

    std::thread thread;
    int wakeFd = -1;
    std::atomic<bool> quit{false};
    std::mutex callLock;
    std::condition_variable callDone;
    std::deque<std::function<void()>*> calls;
    bool opened = false;
    bool openDone = false;
    bool orphaned = false;  // the frame went while its own thread was inside a handler

    // Runs `work` on the frame's thread and waits for it; at once when already there.
    void call(const std::function<void()>& work) {
        const bool ownThread = options.driver == EventDriver::OwnThread && thread.joinable();
        if (!ownThread || std::this_thread::get_id() == thread.get_id()) return work();
        bool done = false;
        std::function<void()> job = [&] {
            work();
            std::lock_guard<std::mutex> guard(callLock);
            done = true;
            callDone.notify_all();
        };
        std::unique_lock<std::mutex> lock(callLock);
        if (quit.load()) return;
        calls.push_back(&job);
        wake();
        callDone.wait(lock, [&] { return done; });
    }

    void runCalls() {
        std::unique_lock<std::mutex> lock(callLock);
        while (!calls.empty()) {
            std::function<void()>* job = calls.front();
            calls.pop_front();
            lock.unlock();
            (*job)();
            lock.lock();
        }
    }

    void wake() const {
        if (wakeFd < 0) return;
        const uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(wakeFd, &one, sizeof one);
    }

    double units(int pixels) const { return pixels / self.scale.load(); }
    CPoint toUnits(int x, int y) const { return {units(x), units(y)}; }

    bool open(Window parentWindow, const CRect& rect);
    bool createGL(Window parentWindow);
    void createWindow(Window parentWindow, Visual* windowVisual, int windowDepth);
    void close();
    void threadMain(Window parentWindow, CRect rect);

    void processEvents();
    void serviceCompanions();
    void dispatch(XEvent& event);
    void onButtonPress(XButtonEvent& event);
    void onButtonRelease(XButtonEvent& event);
    void onKey(XKeyEvent& event, bool down);
    void pumpOnce();
    int waitMilliseconds();
    void paintNow();
    void paintGL();
    void paintSoftware();
    void drawGLError(CDrawContext& context);
};

// ---- opening and closing

void X11Frame::Native::createWindow(Window parentWindow, Visual* windowVisual, int windowDepth) {
    const Window root = DefaultRootWindow(display);
    visual = windowVisual;
    depth = windowDepth;
    colormap = XCreateColormap(display, parentWindow ? parentWindow : root, visual, AllocNone);
    XSetWindowAttributes attributes{};
    attributes.colormap = colormap;
    attributes.border_pixel = 0;
    attributes.background_pixmap = None;  // no erase to grey before each paint
    attributes.event_mask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask | KeyPressMask |
                            KeyReleaseMask | EnterWindowMask | LeaveWindowMask | StructureNotifyMask |
                            FocusChangeMask;
    window = XCreateWindow(display, parentWindow ? parentWindow : root, 0, 0, pixelWidth, pixelHeight, 0, depth,
                           InputOutput, visual, CWColormap | CWBorderPixel | CWBackPixmap | CWEventMask, &attributes);
    gc = XCreateGC(display, window, 0, nullptr);
}

bool X11Frame::Native::createGL(Window parentWindow) {
    int errorBase = 0, eventBase = 0;
    if (!glXQueryExtension(display, &errorBase, &eventBase)) {
        glError = "Error ChoosePixelFormat ErrorCode: 0 (no GLX)";
        return false;
    }
    const int attributes[] = {GLX_X_RENDERABLE, True, GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT, GLX_RENDER_TYPE, GLX_RGBA_BIT,
                              GLX_X_VISUAL_TYPE, GLX_TRUE_COLOR, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8,
                              GLX_DEPTH_SIZE, 24, GLX_STENCIL_SIZE, 8, GLX_DOUBLEBUFFER, True, None};
    int count = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display, DefaultScreen(display), attributes, &count);
    if (!configs || count == 0) {
        if (configs) XFree(configs);
        glError = "Error ChoosePixelFormat ErrorCode: " + std::to_string(count);
        return false;
    }
    const GLXFBConfig config = configs[0];
    XFree(configs);
    XVisualInfo* info = glXGetVisualFromFBConfig(display, config);
    if (!info) {
        glError = "Error SetPixelFormat ErrorCode: 0";
        return false;
    }
    createWindow(parentWindow, info->visual, info->depth);
    XFree(info);

    using CreateContext = GLXContext (*)(Display*, GLXFBConfig, GLXContext, Bool, const int*);
    auto createContext = reinterpret_cast<CreateContext>(
        glXGetProcAddressARB(reinterpret_cast<const GLubyte*>("glXCreateContextAttribsARB")));
    const int version[] = {GLX_CONTEXT_MAJOR_VERSION_ARB, 3, GLX_CONTEXT_MINOR_VERSION_ARB, 3,
                           GLX_CONTEXT_PROFILE_MASK_ARB, GLX_CONTEXT_CORE_PROFILE_BIT_ARB, None};
    context = createContext ? createContext(display, config, nullptr, True, version) : nullptr;
    XSync(display, False);
    if (!context || !glXMakeCurrent(display, window, context)) {
        glError = "Error: Cannot create GL context";
        return false;
    }
    glewExperimental = GL_TRUE;
    GLenum status = glewInit();
    // An EGL build of GLEW cannot see the GLX display, after it has loaded the GL functions.
    if (status == GLEW_ERROR_NO_GLX_DISPLAY) status = GLEW_OK;
    glGetError();  // GLEW's extension query leaves an error behind on core contexts
    if (status != GLEW_OK) {
        glError = "Error during GL init. Errorcode: " + std::to_string(status) + " " +
                  reinterpret_cast<const char*>(glewGetErrorString(status));
        glXMakeCurrent(display, None, nullptr);
        return false;
    }
    nvg = CDrawContext_GL::createNanoVG(false);
    if (!nvg) {
        GLint major = 0, minor = 0;
        glGetIntegerv(GL_MAJOR_VERSION, &major);
        glGetIntegerv(GL_MINOR_VERSION, &minor);
        glError = "Error creating nvg context(GL3)found GL Version: " + std::to_string(major) + "." +
                  std::to_string(minor);
    }
    glXMakeCurrent(display, None, nullptr);
    return nvg != nullptr;
}

bool X11Frame::Native::open(Window parentWindow, const CRect& rect) {
    display = XOpenDisplay(nullptr);
    if (!display) return false;
    trapErrorsOf(display);
    parent = parentWindow;
    pixelWidth = std::max(1u, static_cast<uint32_t>(rect.getWidth() * self.scale.load() + 0.5));
    pixelHeight = std::max(1u, static_cast<uint32_t>(rect.getHeight() * self.scale.load() + 0.5));

    const bool wantGL = options.allowGL && !softwareForced();
    if (!wantGL || !createGL(parentWindow)) {
        if (context) {
            glXDestroyContext(display, context);
            context = nullptr;
        }
        if (!window) {
            const int screen = DefaultScreen(display);
            createWindow(parentWindow, DefaultVisual(display, screen), DefaultDepth(display, screen));
        }
        surface = std::make_unique<X11SoftwareSurface>(display, visual, depth);
        softDraw = new CDrawContext_AGG(nullptr);
    }
    self.window = window;
    self.glContext = context;
    self.nvg = nvg;

    // Keys arrive as text through the input method where there is one.
    inputMethod = XOpenIM(display, nullptr, nullptr, nullptr);
    if (inputMethod)
        inputContext = XCreateIC(inputMethod, XNInputStyle, XIMPreeditNothing | XIMStatusNothing, XNClientWindow,
                                 window, XNFocusWindow, window, nullptr);
    dropTarget = std::make_unique<X11DropTarget>(self);
    XMapWindow(display, window);
    XSync(display, False);
    X11SystemTimer::addUser();
    timerUser = true;
    opened = true;
    return true;
}

void X11Frame::Native::close() {
    if (!display) return;
    if (isConnectionLost(display)) {
        // Nothing can be released on the server any more; the companions drop their handles.
        const std::vector<X11Companion*> leaving = std::exchange(companions, {});
        for (X11Companion* companion : leaving) companion->detach();
        glDraw = nullptr;  // its GL objects went with the server
        XCloseDisplay(display);
        releaseErrorsOf(display);
        display = nullptr;
        window = 0;
        self.window = 0;
        if (timerUser) X11SystemTimer::removeUser();
        timerUser = false;
        return;
    }
    // Companions let go first: their windows are children of ours.
    while (!companions.empty()) {
        X11Companion* companion = companions.back();
        companions.pop_back();
        companion->detach();
    }
    dropTarget.reset();
    if (captured) XUngrabPointer(display, CurrentTime);
    if (context) {
        glXMakeCurrent(display, window, context);
        if (glDraw) glDraw->forget();
        if (nvg) CDrawContext_GL::deleteNanoVG(nvg);
        glXMakeCurrent(display, None, nullptr);
        glXDestroyContext(display, context);
    }
    glDraw = nullptr;
    nvg = nullptr;
    context = nullptr;
    if (softDraw) softDraw->forget();
    softDraw = nullptr;
    surface.reset();
    if (inputContext) XDestroyIC(inputContext);
    if (inputMethod) XCloseIM(inputMethod);
    inputContext = nullptr;
    inputMethod = nullptr;
    for (auto& entry : shapeCursors) XFreeCursor(display, entry.second);
    for (Cursor cursor : madeCursors) XFreeCursor(display, cursor);
    shapeCursors.clear();
    madeCursors.clear();
    if (gc) XFreeGC(display, gc);
    if (window) XDestroyWindow(display, window);
    if (colormap) XFreeColormap(display, colormap);
    XSync(display, False);
    XCloseDisplay(display);
    releaseErrorsOf(display);
    display = nullptr;
    window = 0;
    self.window = 0;
    self.glContext = nullptr;
    self.nvg = nullptr;
    if (timerUser) X11SystemTimer::removeUser();
    timerUser = false;
}

void X11Frame::Native::threadMain(Window parentWindow, CRect rect) {
    {
        std::lock_guard<std::mutex> guard(callLock);
        open(parentWindow, rect);
        openDone = true;
        callDone.notify_all();
    }
    while (!quit.load() && display && !isConnectionLost(display)) {
        runCalls();
        if (started.load()) pumpOnce();
        if (!display) break;  // closed from one of its own handlers
        XFlush(display);
        if (XPending(display)) continue;
        pollfd watched[2] = {{ConnectionNumber(display), POLLIN, 0}, {wakeFd, POLLIN, 0}};
        ::poll(watched, 2, started.load() ? waitMilliseconds() : kIdlePollMilliseconds);
        if (watched[1].revents & POLLIN) {
            uint64_t count = 0;
            [[maybe_unused]] const ssize_t got = ::read(wakeFd, &count, sizeof count);
        }
    }
    {
        std::lock_guard<std::mutex> guard(callLock);
        quit = true;  // a lost connection ends the loop too: no call may wait for it from now on
    }
    runCalls();
    close();
    if (orphaned) {
        if (wakeFd >= 0) ::close(wakeFd);
        delete this;
    }
}

// ---- the loop

int X11Frame::Native::waitMilliseconds() {
    const uint32_t now = getVintaTicks();
    int wait = static_cast<int>(X11SystemTimer::instance().service(now, timerSchedule, self.frame));
    if (needsPaint.load()) {
        const int interval = 1000 / std::max(1, frameRate.load());
        wait = std::min(wait, std::max(0, interval - static_cast<int>(now - lastPaint)));
    }
    return std::clamp(wait, 0, kIdlePollMilliseconds);
}

void X11Frame::Native::pumpOnce() {
    if (!display || isConnectionLost(display)) return;
    processEvents();
    if (!display) return;  // a handler closed the editor
    serviceCompanions();
    if (!display) return;  // so did a dialog's answer
    const uint32_t now = getVintaTicks();
    X11SystemTimer::instance().service(now, timerSchedule, self.frame);
    if (!display) return;  // so did a timer
    if (self.frame) self.frame->idle();
    const uint32_t interval = 1000u / static_cast<uint32_t>(std::max(1, frameRate.load()));
    if (needsPaint.load() && now - lastPaint >= interval) {
        paintNow();
        // What the paint left dirty (an animation going on) asks for the next frame now, so that
        // the wait before it is measured from this one.
        if (self.frame) self.frame->idle();
    }
    XFlush(display);
}

void X11Frame::Native::processEvents() {
    while (display && XPending(display)) {
        XEvent event;
        XNextEvent(display, &event);
        if (XFilterEvent(&event, None)) continue;
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);  // a new keyboard layout
            continue;
        }
        dispatch(event);
    }
}

void X11Frame::Native::serviceCompanions() {
    // A companion may leave (or close the editor) during its turn, and answers may open new ones.
    const std::vector<X11Companion*> present = companions;
    for (X11Companion* companion : present)
        if (display && std::find(companions.begin(), companions.end(), companion) != companions.end())
            companion->service();
}

void X11Frame::Native::dispatch(XEvent& event) {
    // Companions may close themselves (and leave the list) while handling.
    const std::vector<X11Companion*> present = companions;
    for (X11Companion* companion : present)
        if (std::find(companions.begin(), companions.end(), companion) != companions.end() &&
            companion->handleEvent(event))
            return;
    if (dropTarget && dropTarget->handleEvent(event)) return;
    if (event.xany.window != window) return;
    const bool modal = std::any_of(companions.begin(), companions.end(), [](X11Companion* c) { return c->isModal(); });
    CFrame* tree = self.frame;
    switch (event.type) {
        case Expose:
            if (event.xexpose.count == 0) needsPaint = true;
            break;
        case ConfigureNotify:
            pixelWidth = static_cast<uint32_t>(std::max(1, event.xconfigure.width));
            pixelHeight = static_cast<uint32_t>(std::max(1, event.xconfigure.height));
            needsPaint = true;
            break;
        case ButtonPress:
            if (!modal && tree) onButtonPress(event.xbutton);
            break;
        case ButtonRelease:
            if (!modal && tree) onButtonRelease(event.xbutton);
            break;
        case MotionNotify: {
            if (modal || !tree) break;
            // Only moves queued right behind this one fold into it: a press or release between
            // them must keep its place.
            XEvent next;
            while (XEventsQueued(display, QueuedAlready) > 0) {
                XPeekEvent(display, &next);
                if (next.type != MotionNotify || next.xmotion.window != window) break;
                XNextEvent(display, &event);
            }
            tree->onMouseMoved(toUnits(event.xmotion.x, event.xmotion.y), toButtonState(event.xmotion.state, 0));
            break;
        }
        case LeaveNotify:
            if (!modal && tree && event.xcrossing.mode == NotifyNormal)
                tree->onMouseExited(toUnits(event.xcrossing.x, event.xcrossing.y),
                                    toButtonState(event.xcrossing.state, 0));
            break;
        case KeyPress:
        case KeyRelease:
            if (!modal && tree) onKey(event.xkey, event.type == KeyPress);
            break;
        default: break;
    }
}

void X11Frame::Native::onButtonPress(XButtonEvent& event) {
    CFrame* tree = self.frame;
    const CPoint where = toUnits(event.x, event.y);
    if (event.button >= 4 && event.button <= 7) {
        const int32_t axis = event.button <= 5 ? 1 : 0;
        const float delta = (event.button == 4 || event.button == 7) ? 1.0f : -1.0f;
        tree->onWheelAxis(where, axis, delta, toButtonState(event.state, 0));
        return;
    }
    XSetInputFocus(display, window, RevertToParent, event.time);
    CButtonState buttons = toButtonState(event.state, event.button);
    if (event.button == lastClickButton && event.time - lastClickTime <= kDoubleClickTime &&
        std::abs(event.x - lastClickX) <= kDoubleClickDistance && std::abs(event.y - lastClickY) <= kDoubleClickDistance) {
        buttons |= kDoubleClick;
        lastClickTime = 0;
        lastClickButton = 0;
    } else {
        lastClickTime = event.time;
        lastClickButton = event.button;
        lastClickX = event.x;
        lastClickY = event.y;
    }
    self.remember();  // a view may close the editor from its handler
    if (tree->onMouseDown(where, buttons) == kMouseEventHandled && !captured && display)
        captured = XGrabPointer(display, window, False, ButtonPressMask | ButtonReleaseMask | PointerMotionMask,
                                GrabModeAsync, GrabModeAsync, None, None, event.time) == GrabSuccess;
    self.forget();
}

void X11Frame::Native::onButtonRelease(XButtonEvent& event) {
    if (event.button >= 4 && event.button <= 7) return;
    const unsigned int stillHeld = event.state & ~buttonMask(event.button);
    self.frame->onMouseUp(toUnits(event.x, event.y), toButtonState(stillHeld, 0));
    if (display && captured && !(stillHeld & (Button1Mask | Button2Mask | Button3Mask))) {
        XUngrabPointer(display, event.time);
        captured = false;
    }
}

void X11Frame::Native::onKey(XKeyEvent& event, bool down) {
    char text[32] = {0};
    KeySym symbol = NoSymbol;
    Status status = 0;
    int length = 0;
    if (down && inputContext)
        length = Xutf8LookupString(inputContext, &event, text, sizeof text - 1, &symbol, &status);
    else
        length = XLookupString(&event, text, sizeof text - 1, &symbol, nullptr);
    text[std::clamp(length, 0, static_cast<int>(sizeof text) - 1)] = 0;
    const VstKeyCode key = toVstKeyCode(symbol, event.state, text);
    int32_t result = kKeyNotHandled;
    if (key.virt != VKEY_NONE) result = down ? self.frame->onKeyDown(key) : self.frame->onKeyUp(key);
    if (result >= 0 || !parent || !display) return;
    // Nobody here wants it: the host's window gets the key.
    XEvent forwarded{};
    forwarded.xkey = event;
    forwarded.xkey.window = parent;
    XSendEvent(display, parent, True, down ? KeyPressMask : KeyReleaseMask, &forwarded);
}

// ---- painting

void X11Frame::Native::paintNow() {
    if (!self.frame || !window || painting) return;
    painting = true;
    needsPaint = false;
    if (context && nvg)
        paintGL();
    else
        paintSoftware();
    painting = false;
    lastPaint = getVintaTicks();
    self.paintCount.fetch_add(1);
}

void X11Frame::Native::paintGL() {
    if (!glXMakeCurrent(display, window, context)) return;
    const auto width = static_cast<int32_t>(pixelWidth), height = static_cast<int32_t>(pixelHeight);
    if (!glDraw) glDraw = new CDrawContext_GL(self.frame, nvg, width, height);
    glViewport(0, 0, width, height);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDraw->beginFrame(width, height, 1.0f);
    const auto factor = static_cast<float>(self.scale.load());
    nvgScale(nvg, factor, factor);
    self.frame->draw(glDraw);
    glDraw->endFrame();
    glXSwapBuffers(display, window);
    glXMakeCurrent(display, None, nullptr);
}

void X11Frame::Native::drawGLError(CDrawContext& target) {
    if (glError.empty()) return;
    const CRect box(4.0, 4.0, std::max(8.0, softWidth - 4.0), 22.0);
    target.setFillColor(CColor{0, 0, 0, 200});
    target.drawRect(box, kDrawFilled);
    target.setFont(kSystemFont, 11.0, 0);
    target.setFontColor(CColor{255, 96, 96, 255});
    target.drawString(glError.c_str(), box, 0, kAlignLeft);
}

void X11Frame::Native::paintSoftware() {
    CRect units = self.frame->getViewSize();
    const auto width = static_cast<uint32_t>(std::max(1.0, std::ceil(units.getWidth())));
    const auto height = static_cast<uint32_t>(std::max(1.0, std::ceil(units.getHeight())));
    if (width != softWidth || height != softHeight) {
        softWidth = width;
        softHeight = height;
        softPixels.assign(static_cast<size_t>(width) * height * 4, 0);
        softDraw->attach(softPixels.data(), width, height, static_cast<int32_t>(width * 4));
    } else {
        std::fill(softPixels.begin(), softPixels.end(), 0);
        softDraw->resetClipRect();
    }
    self.frame->draw(softDraw);
    drawGLError(*softDraw);
    surface->present(window, gc, softPixels.data(), width, height, static_cast<int32_t>(width * 4), pixelWidth,
                     pixelHeight);
}

// ---- X11Frame

X11Frame::X11Frame(CFrame* owner, const FrameOptions& options)
    : frame(owner), native(std::make_unique<Native>(*this, options)) {
    scale = options.scale > 0.0 ? options.scale : 1.0;
}

X11Frame::~X11Frame() {
    destroy();
    if (native->thread.joinable()) {
        // Still inside a handler on the frame's own thread, which cannot join itself: the thread
        // finishes on its own and takes its state along.
        native->orphaned = true;
        native->thread.detach();
        static_cast<void>(native.release());
    }
}

CFrame* X11Frame::openFrame(unsigned long parentWindow, const CRect& units, IVintaEditor* editor,
                            const FrameOptions& options) {
    FrameOptions chosen = options;
    if (editor && editor->getGuiScale() > 0.0) chosen.scale = editor->getGuiScale();
    if (chosen.driver == EventDriver::OwnThread) XInitThreads();
    auto* platform = new X11Frame(nullptr, chosen);
    auto* tree = new CFrame(units, reinterpret_cast<void*>(parentWindow), editor, platform);
    platform->frame = tree;
    if (!platform->native->opened) {
        closeFrame(tree);
        return nullptr;
    }
    return tree;
}

X11Frame* X11Frame::of(CFrame* tree) {
    return tree ? dynamic_cast<X11Frame*>(tree->getPlatformFrame()) : nullptr;
}

void X11Frame::closeFrame(CFrame* tree) {
    if (!tree) return;
    if (X11Frame* platform = of(tree)) platform->destroy();
    tree->close();
}

bool X11Frame::create(void* parent, const CRect& rect) {
    Native& n = *native;
    const auto parentWindow = static_cast<Window>(reinterpret_cast<uintptr_t>(parent));
    if (n.options.driver != EventDriver::OwnThread) return n.open(parentWindow, rect);
    n.wakeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::unique_lock<std::mutex> lock(n.callLock);
    n.thread = std::thread([&n, parentWindow, rect] { n.threadMain(parentWindow, rect); });
    n.callDone.wait_for(lock, std::chrono::seconds(10), [&] { return n.openDone; });
    return n.opened;
}

void X11Frame::destroy() {
    Native& n = *native;
    n.closing = true;
    if (n.thread.joinable() && std::this_thread::get_id() == n.thread.get_id()) {
        // Closed from a handler on the frame's own thread: the window goes now, and the thread
        // leaves its loop when the handler returns.
        n.close();
        n.quit = true;
        frame = nullptr;
        return;
    }
    if (n.thread.joinable()) {
        n.quit = true;
        n.wake();
        n.thread.join();
    } else {
        n.close();
    }
    if (n.wakeFd >= 0) ::close(n.wakeFd);
    n.wakeFd = -1;
    frame = nullptr;  // the tree goes next; a pump still on the stack must not reach it
}

bool X11Frame::isClosing() const { return native->closing.load(); }
Display* X11Frame::getDisplay() const { return native->display; }
const char* X11Frame::getGLError() const { return native->glError.c_str(); }

void X11Frame::start() {
    native->started = true;
    native->needsPaint = true;
    native->wake();
}

int X11Frame::getConnectionFd() const {
    if (native->options.driver == EventDriver::OwnThread || !native->display) return -1;
    return ConnectionNumber(native->display);
}

uint32_t X11Frame::getTimerInterval() const {
    return std::min<uint32_t>(15u, 1000u / static_cast<uint32_t>(std::max(1, native->frameRate.load())));
}

void X11Frame::pump() {
    if (native->options.driver == EventDriver::OwnThread || !native->started.load()) return;
    remember();
    native->pumpOnce();
    forget();
}

bool X11Frame::addCompanion(X11Companion* companion) {
    bool added = false;
    native->call([&] {
        if (!native->display) return;
        native->companions.push_back(companion);
        added = true;
    });
    return added;
}

void X11Frame::removeCompanion(X11Companion* companion) { std::erase(native->companions, companion); }

void X11Frame::setScale(double value) {
    if (!(value > 0.0)) return;
    scale = value;
    if (!frame) return;
    const CRect units = frame->getViewSize();
    setSize(std::round(units.getWidth() * value), std::round(units.getHeight() * value));
}

bool X11Frame::getScreenPosition(double& x, double& y) {
    bool ok = false;
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        int screenX = 0, screenY = 0;
        Window child = 0;
        ok = XTranslateCoordinates(n.display, n.window, DefaultRootWindow(n.display), 0, 0, &screenX, &screenY, &child);
        x = screenX;
        y = screenY;
    });
    return ok;
}

bool X11Frame::setSize(double width, double height) {
    if (width < 1.0 || height < 1.0) return false;
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        n.pixelWidth = static_cast<uint32_t>(width);
        n.pixelHeight = static_cast<uint32_t>(height);
        XResizeWindow(n.display, n.window, n.pixelWidth, n.pixelHeight);
        XSync(n.display, False);
        n.needsPaint = true;
    });
    return true;
}

bool X11Frame::getRect(CRect& out) {
    out = CRect(0.0, 0.0, native->pixelWidth, native->pixelHeight);
    return true;
}

bool X11Frame::getMouseLocation(CPoint& out) {
    bool ok = false;
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        Window rootWindow = 0, child = 0;
        int rootX = 0, rootY = 0, x = 0, y = 0;
        unsigned int mask = 0;
        ok = XQueryPointer(n.display, n.window, &rootWindow, &child, &rootX, &rootY, &x, &y, &mask);
        out = CPoint(x, y);
    });
    return ok;
}

CButtonState X11Frame::getMouseButtons() {
    CButtonState buttons = 0;
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        Window rootWindow = 0, child = 0;
        int rootX = 0, rootY = 0, x = 0, y = 0;
        unsigned int mask = 0;
        if (XQueryPointer(n.display, n.window, &rootWindow, &child, &rootX, &rootY, &x, &y, &mask))
            buttons = toButtonState(mask, 0);
    });
    return buttons;
}

void X11Frame::setCursor(int32_t type) {
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        auto found = n.shapeCursors.find(type);
        if (found == n.shapeCursors.end()) {
            Cursor cursor = XcursorLibraryLoadCursor(n.display, cursorName(type));
            if (!cursor) cursor = XCreateFontCursor(n.display, cursorFontShape(type));
            found = n.shapeCursors.emplace(type, cursor).first;
        }
        XDefineCursor(n.display, n.window, found->second);
        XFlush(n.display);
    });
}

void* X11Frame::makeCursor(CBitmap* bitmap) {
    if (!bitmap || !bitmap->isValid() || bitmap->getPixelWidth() == 0) return nullptr;
    Cursor made = 0;
    native->call([&] {
        Native& n = *native;
        if (!n.display) return;
        const uint32_t width = bitmap->getPixelWidth(), height = bitmap->getPixelHeight();
        XcursorImage* image = XcursorImageCreate(static_cast<int>(width), static_cast<int>(height));
        if (!image) return;
        image->xhot = width / 2;
        image->yhot = height / 2;
        for (uint32_t y = 0; y < height; ++y) {
            const uint8_t* row = bitmap->getPixels() + static_cast<ptrdiff_t>(y) * bitmap->getStride();
            for (uint32_t x = 0; x < width; ++x) {
                const uint8_t* p = row + x * 4;  // premultiplied RGBA to premultiplied ARGB
                image->pixels[y * width + x] = (static_cast<XcursorPixel>(p[3]) << 24) |
                                               (static_cast<XcursorPixel>(p[0]) << 16) |
                                               (static_cast<XcursorPixel>(p[1]) << 8) | p[2];
            }
        }
        made = XcursorImageLoadCursor(n.display, image);
        XcursorImageDestroy(image);
        if (!made) return;
        n.madeCursors.push_back(made);
        XDefineCursor(n.display, n.window, made);
        XFlush(n.display);
    });
    return reinterpret_cast<void*>(made);
}

void X11Frame::invalidRect(const CRect&) {
    // The paint that is running asks for the next one at its end; only a change outside it counts,
    // so an editor with nothing changing stays idle.
    if (native->painting) return;
    native->needsPaint = true;
}

IOSTextEdit* X11Frame::createTextEdit(ITextEditCallback* callback) {
    if (!callback || !native->display) return nullptr;
    IOSTextEdit* edit = nullptr;
    native->call([&] { edit = X11TextEdit::open(*this, callback); });
    return edit;
}

IOSOptionMenu* X11Frame::createOptionMenu(COptionMenu* menu) {
    if (!menu || !native->display) return nullptr;
    return new X11OptionMenu(*this);
}

void X11Frame::idle() { pump(); }

void X11Frame::resize() {
    double wanted = scale.load();
    if (frame && frame->getEditor()) wanted = frame->getEditor()->getGuiScale();
    setScale(wanted);
}

void X11Frame::paint() {
    native->call([&] { native->paintNow(); });
}

void X11Frame::update() {
    native->call([&] {
        if (frame) frame->idle();
        if (native->needsPaint.load()) native->paintNow();
    });
}

void X11Frame::setFrameRate(int32_t framesPerSecond) {
    if (framesPerSecond > 0) native->frameRate = framesPerSecond;
}

void X11Frame::postUpdate() { native->wake(); }

CBitmap* X11Frame::screenshot() {
    CBitmap* shot = nullptr;
    native->call([&] {
        Native& n = *native;
        if (!n.display || !frame) return;
        n.paintNow();
        XSync(n.display, False);
        XImage* image = XGetImage(n.display, n.window, 0, 0, n.pixelWidth, n.pixelHeight, AllPlanes, ZPixmap);
        if (!image) return;
        shot = new CBitmap(static_cast<double>(n.pixelWidth), static_cast<double>(n.pixelHeight));
        for (uint32_t y = 0; y < n.pixelHeight && y < shot->getPixelHeight(); ++y) {
            uint8_t* row = shot->getPixels() + static_cast<ptrdiff_t>(y) * shot->getStride();
            for (uint32_t x = 0; x < n.pixelWidth && x < shot->getPixelWidth(); ++x) {
                const unsigned long pixel = XGetPixel(image, static_cast<int>(x), static_cast<int>(y));
                row[x * 4 + 0] = static_cast<uint8_t>((pixel & image->red_mask) >> 16);
                row[x * 4 + 1] = static_cast<uint8_t>((pixel & image->green_mask) >> 8);
                row[x * 4 + 2] = static_cast<uint8_t>(pixel & image->blue_mask);
                row[x * 4 + 3] = 255;
            }
        }
        XDestroyImage(image);
    });
    return shot;
}

bool X11Frame::saveScreenshot(const char* pngPath) {
    CBitmap* shot = screenshot();
    const bool saved = shot && pngPath && shot->savePNG(pngPath);
    if (shot) shot->forget();
    return saved;
}

}  // namespace Vinta::X11
