#include "lib_drawing/OffscreenGLWindow.h"

#include <GL/glew.h>
#include <GL/glx.h>
#include <X11/Xlib.h>

#include <algorithm>

namespace DrawingTest {

struct OffscreenGLWindow::Native {
    int w = 0, h = 0;
    Display* display = nullptr;
    Window window = 0;
    Colormap colourmap = 0;
    GLXContext context = nullptr;
    bool isReady = false;
    std::string reason;

    void open();
    void close();
};

void OffscreenGLWindow::Native::open() {
    display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        reason = "no X display can be opened (run under xvfb-run)";
        return;
    }
    const int frameBuffer[] = {GLX_X_RENDERABLE, True, GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT, GLX_RENDER_TYPE,
                               GLX_RGBA_BIT, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8,
                               GLX_STENCIL_SIZE, 8, GLX_DOUBLEBUFFER, True, None};
    int count = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display, DefaultScreen(display), frameBuffer, &count);
    if (configs == nullptr || count == 0) {
        reason = "no GLX frame buffer configuration with stencil";
        return;
    }
    const GLXFBConfig config = configs[0];
    XFree(configs);
    XVisualInfo* visual = glXGetVisualFromFBConfig(display, config);
    const Window root = RootWindow(display, visual->screen);
    XSetWindowAttributes attributes{};
    colourmap = XCreateColormap(display, root, visual->visual, AllocNone);
    attributes.colormap = colourmap;
    window = XCreateWindow(display, root, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h), 0,
                           visual->depth, InputOutput, visual->visual, CWBorderPixel | CWColormap, &attributes);
    XFree(visual);
    XMapWindow(display, window);
    XSync(display, False);
    using CreateContext = GLXContext (*)(Display*, GLXFBConfig, GLXContext, Bool, const int*);
    auto create = reinterpret_cast<CreateContext>(
        glXGetProcAddressARB(reinterpret_cast<const GLubyte*>("glXCreateContextAttribsARB")));
    const int version[] = {GLX_CONTEXT_MAJOR_VERSION_ARB, 3, GLX_CONTEXT_MINOR_VERSION_ARB, 3,
                           GLX_CONTEXT_PROFILE_MASK_ARB, GLX_CONTEXT_CORE_PROFILE_BIT_ARB, None};
    context = create != nullptr ? create(display, config, nullptr, True, version) : nullptr;
    if (context == nullptr || !glXMakeCurrent(display, window, context)) {
        reason = "no GLX 3.3 core context";
        return;
    }
    glewExperimental = GL_TRUE;
    if (glewInit() != GLEW_OK) {
        reason = "glewInit failed";
        return;
    }
    glGetError();  // GLEW's extension query leaves an error behind on core contexts
    isReady = true;
}

void OffscreenGLWindow::Native::close() {
    if (display == nullptr)
        return;
    if (context != nullptr) {
        glXMakeCurrent(display, None, nullptr);
        glXDestroyContext(display, context);
    }
    if (window != 0)
        XDestroyWindow(display, window);
    if (colourmap != 0)
        XFreeColormap(display, colourmap);
    XCloseDisplay(display);
}

OffscreenGLWindow::OffscreenGLWindow(int width, int height) : native(std::make_unique<Native>()) {
    native->w = width;
    native->h = height;
    native->open();
}

OffscreenGLWindow::~OffscreenGLWindow() { native->close(); }

bool OffscreenGLWindow::ready() const { return native->isReady; }
const std::string& OffscreenGLWindow::whyNot() const { return native->reason; }

void OffscreenGLWindow::beginPaint() const {
    glViewport(0, 0, native->w, native->h);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

std::vector<uint8_t> OffscreenGLWindow::readPixels() const {
    const int w = native->w, h = native->h;
    std::vector<uint8_t> bottomUp(static_cast<size_t>(w) * h * 4), topDown(bottomUp.size());
    glFinish();
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, bottomUp.data());
    const size_t row = static_cast<size_t>(w) * 4;
    for (int y = 0; y < h; ++y)
        std::copy_n(bottomUp.data() + (h - 1 - y) * row, row, topDown.data() + y * row);
    return topDown;
}

}  // namespace DrawingTest
