#include "lib/platform-x11/X11TextEdit.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>

#include "lib/drawing/CDrawContext_AGG.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/platform-x11/X11SoftwareSurface.h"
#include "lib/views/CFrame.h"

namespace Vinta::X11 {

namespace {
constexpr size_t kMaxBytes = 255;
constexpr double kSlack = 3.0;

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }
}  // namespace

X11TextEdit* X11TextEdit::open(X11Frame& frame, ITextEditCallback* callback) {
    if (!frame.getDisplay() || !frame.getWindow()) return nullptr;
    return new X11TextEdit(frame, callback);
}

X11TextEdit::X11TextEdit(X11Frame& owner, ITextEditCallback* editCallback)
    : frame(owner), callback(editCallback), display(owner.getDisplay()) {
    const double scale = owner.getScale();
    CRect box = callback->scaleRect(callback->getVisibleRect());
    fontSize = std::max(6.0, callback->getFontSize() * scale);
    const double fitted = fontSize + kSlack * scale;
    if (fitted < box.getHeight()) {
        const double middle = box.top + box.getHeight() * 0.5;
        box.top = middle - fitted * 0.5;
        box.bottom = middle + fitted * 0.5;
    }
    width = static_cast<unsigned int>(std::max(1.0, box.getWidth()));
    height = static_cast<unsigned int>(std::max(1.0, box.getHeight()));
    text = original = callback->getText() ? callback->getText() : "";
    if (text.size() > kMaxBytes) text.resize(kMaxBytes);
    caret = text.size();

    XWindowAttributes parent{};
    XGetWindowAttributes(display, owner.getWindow(), &parent);
    XSetWindowAttributes attributes{};
    attributes.event_mask = ExposureMask | KeyPressMask | ButtonPressMask | FocusChangeMask;
    attributes.background_pixmap = None;
    window = XCreateWindow(display, owner.getWindow(), static_cast<int>(box.left), static_cast<int>(box.top), width,
                           height, 0, CopyFromParent, InputOutput, CopyFromParent, CWEventMask | CWBackPixmap,
                           &attributes);
    gc = XCreateGC(display, window, 0, nullptr);
    surface = std::make_unique<X11SoftwareSurface>(display, parent.visual, parent.depth);
    pixels.assign(static_cast<size_t>(width) * height * 4, 0);
    context = new CDrawContext_AGG(nullptr, pixels.data(), width, height, static_cast<int32_t>(width * 4));
    inputMethod = XOpenIM(display, nullptr, nullptr, nullptr);
    if (inputMethod)
        inputContext = XCreateIC(inputMethod, XNInputStyle, XIMPreeditNothing | XIMStatusNothing, XNClientWindow,
                                 window, XNFocusWindow, window, nullptr);
    XMapRaised(display, window);
    XSync(display, False);
    XSetInputFocus(display, window, RevertToParent, CurrentTime);
    owner.addCompanion(this);
    draw();
}

X11TextEdit::~X11TextEdit() { detach(); }

void X11TextEdit::detach() {
    if (!display) return;
    frame.removeCompanion(this);
    if (context) context->forget();
    context = nullptr;
    surface.reset();
    if (inputContext) XDestroyIC(inputContext);
    if (inputMethod) XCloseIM(inputMethod);
    if (gc) XFreeGC(display, gc);
    if (window) XDestroyWindow(display, window);
    XFlush(display);
    display = nullptr;
}

void X11TextEdit::getText(char* out, size_t capacity) {
    if (!out || capacity == 0) return;
    std::snprintf(out, capacity, "%s", text.c_str());
}

void X11TextEdit::end(int32_t flags) {
    if (ended) return;
    ended = true;
    if (flags == kTextEditEscape) text = original;
    remember();  // the control lets go of the field from textEditDidEnd
    CView* control = dynamic_cast<CView*>(callback);
    CFrame* tree = callback->getFrame();
    if (control) control->remember();
    callback->textEditDidEnd(flags);
    detach();
    // Tab goes on to the next field in the editor.
    if (flags == kTextEditTake && tabbed && tree && control) {
        if (tree->advanceNextFocusView(control, tabbedBack))
            if (CView* next = tree->getFocusView()) next->takeFocus();
    }
    if (control) control->forget();
    forget();
}

bool X11TextEdit::handleEvent(XEvent& event) {
    if (!display || ended) return false;
    const bool ours = event.xany.window == window;
    switch (event.type) {
        case Expose:
            if (!ours) return false;
            draw();
            return true;
        case KeyPress:
            // Keys that reach the editor's own window while the field is open are the field's too.
            if (!ours && event.xany.window != frame.getWindow()) return false;
            onKey(event.xkey);
            return true;
        case ButtonPress:
            if (ours) return true;
            end(kTextEditTake);  // a click elsewhere takes the text, and goes on to its target
            return false;
        case FocusIn:
            hadFocus = hadFocus || ours;
            return ours;
        case FocusOut:
            // Only a focus we had and lost to another window counts, not the pointer's passing focus.
            if (!ours || !hadFocus || event.xfocus.mode != NotifyNormal || event.xfocus.detail == NotifyInferior ||
                event.xfocus.detail == NotifyPointer)
                return ours;
            end(kTextEditTake);
            return true;
        default: return false;
    }
}

void X11TextEdit::onKey(XKeyEvent& event) {
    char typed[64] = {0};
    KeySym symbol = NoSymbol;
    Status status = 0;
    const int length = inputContext ? Xutf8LookupString(inputContext, &event, typed, sizeof typed - 1, &symbol, &status)
                                    : XLookupString(&event, typed, sizeof typed - 1, &symbol, nullptr);
    typed[std::clamp(length, 0, static_cast<int>(sizeof typed) - 1)] = 0;
    switch (symbol) {
        case XK_Return:
        case XK_KP_Enter: return end(kTextEditTake);
        case XK_Escape: return end(kTextEditEscape);
        case XK_Tab:
        case XK_ISO_Left_Tab:
            tabbed = true;
            tabbedBack = (event.state & ShiftMask) != 0;
            return end(kTextEditTake);
        case XK_BackSpace: erase(true); break;
        case XK_Delete: erase(false); break;
        case XK_Left:
            while (caret > 0 && isContinuation(text[--caret])) {
            }
            allSelected = false;
            break;
        case XK_Right:
            while (caret < text.size() && isContinuation(text[++caret])) {
            }
            allSelected = false;
            break;
        case XK_Home: caret = 0, allSelected = false; break;
        case XK_End: caret = text.size(), allSelected = false; break;
        default:
            if (static_cast<unsigned char>(typed[0]) >= 0x20 && typed[0] != 0x7f) insert(typed);
            break;
    }
    draw();
}

void X11TextEdit::insert(const char* typed) {
    if (allSelected) {
        text.clear();
        caret = 0;
        allSelected = false;
    }
    const std::string piece(typed);
    if (text.size() + piece.size() > kMaxBytes) return;
    text.insert(caret, piece);
    caret += piece.size();
}

void X11TextEdit::erase(bool before) {
    if (allSelected) {
        text.clear();
        caret = 0;
        allSelected = false;
        return;
    }
    size_t from = caret, to = caret;
    if (before) {
        if (from == 0) return;
        while (--from > 0 && isContinuation(text[from])) {
        }
    } else {
        if (to >= text.size()) return;
        while (++to < text.size() && isContinuation(text[to])) {
        }
    }
    text.erase(from, to - from);
    caret = from;
}

void X11TextEdit::draw() {
    if (!display || !context) return;
    const CRect all(0.0, 0.0, width, height);
    context->resetClipRect();
    context->setFillColor(callback->getBackColor());
    context->drawRect(all, kDrawFilled);
    context->setFont(kBoldFont, fontSize, 0);
    const double textWidth = context->getStringWidth(text.c_str());
    const int32_t align = callback->getTextAlign();
    const double start = align == kAlignLeft    ? 3.0
                         : align == kAlignRight ? width - 3.0 - textWidth
                                                : (width - textWidth) * 0.5;
    const CRect line(start, 0.0, width, height);
    CColor ink = callback->getFontColor();
    if (allSelected && !text.empty()) {
        context->setFillColor(ink);
        context->drawRect(CRect(start - 1.0, 1.0, start + textWidth + 1.0, height - 1.0), kDrawFilled);
        ink = callback->getBackColor();
    }
    context->setFontColor(ink);
    context->drawString(text.c_str(), line, 0, kAlignLeft);
    const double caretX = start + context->getStringWidth(text.substr(0, caret).c_str());
    context->setFrameColor(callback->getFontColor());
    context->drawLine(caretX, 2.0, caretX, height - 2.0);
    surface->present(window, gc, pixels.data(), width, height, static_cast<int32_t>(width * 4), width, height);
    XFlush(display);
}

}  // namespace Vinta::X11
