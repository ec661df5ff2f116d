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
    std::string reason = "no X display can be opened (run under xvfb-run)";

    // Empty when the context is current, else why not.
    std::string open();
};

std::string OffscreenGLWindow::Native::open() {
    if ((display = XOpenDisplay(nullptr)) == nullptr) return reason;
    const int frameBuffer[] = {GLX_X_RENDERABLE, True, GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT, GLX_RENDER_TYPE,
                               GLX_RGBA_BIT, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8,
                               GLX_STENCIL_SIZE, 8, GLX_DOUBLEBUFFER, True, None};
    int count = 0;
    GLXFBConfig* configs = glXChooseFBConfig(display, DefaultScreen(display), frameBuffer, &count);
    if (configs == nullptr || count == 0) return "no GLX frame buffer configuration with stencil";
    const GLXFBConfig config = configs[0];
    XFree(configs);
    XVisualInfo* visual = glXGetVisualFromFBConfig(display, config);
    const Window root = RootWindow(display, visual->screen);
    XSetWindowAttributes attributes{};
    attributes.colormap = colourmap = XCreateColormap(display, root, visual->visual, AllocNone);
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
    if (context == nullptr || !glXMakeCurrent(display, window, context)) return "no GLX 3.3 core context";
    glewExperimental = GL_TRUE;
    if (glewInit() != GLEW_OK) return "glewInit failed";
    glGetError();  // GLEW's extension query leaves an error behind on core contexts
    return {};
}

OffscreenGLWindow::OffscreenGLWindow(int width, int height) : native(std::make_unique<Native>()) {
    native->w = width;
    native->h = height;
    native->reason = native->open();
}

OffscreenGLWindow::~OffscreenGLWindow() {
    Native& n = *native;
    if (n.display == nullptr) return;
    if (n.context != nullptr) {
        glXMakeCurrent(n.display, None, nullptr);
        glXDestroyContext(n.display, n.context);
    }
    if (n.window != 0) XDestroyWindow(n.display, n.window);
    if (n.colourmap != 0) XFreeColormap(n.display, n.colourmap);
    XCloseDisplay(n.display);
}

bool OffscreenGLWindow::ready() const { return native->reason.empty(); }
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
