#pragma once
// The text field opened over a text box: a small child window of the editor's, drawn by the
// software context, with the keyboard focus and UTF-8 input through the input method. Return
// (or tab, or a click elsewhere) takes the text, escape gives the old one back.
#include <X11/Xlib.h>

#include <memory>
#include <string>
#include <vector>

#include "lib/controls/ITextEditCallback.h"
#include "lib/platform-x11/X11Companion.h"

namespace Vinta {
class CDrawContext_AGG;
}

namespace Vinta::X11 {

class X11Frame;
class X11SoftwareSurface;

class X11TextEdit final : public IOSTextEdit, public X11Companion {
public:
    static X11TextEdit* open(X11Frame& frame, ITextEditCallback* callback);

    void getText(char* out, size_t capacity) override;
    bool handleEvent(XEvent& event) override;
    void detach() override;

private:
    X11TextEdit(X11Frame& frame, ITextEditCallback* callback);
    ~X11TextEdit() override;
    void onKey(XKeyEvent& event);
    void insert(const char* typed);
    void erase(bool before);
    void draw();
    void end(int32_t flags);

    X11Frame& frame;
    ITextEditCallback* callback;
    Display* display;
    Window window = 0;
    GC gc = nullptr;
    XIC inputContext = nullptr;
    XIM inputMethod = nullptr;
    std::unique_ptr<X11SoftwareSurface> surface;
    CDrawContext_AGG* context = nullptr;
    std::vector<uint8_t> pixels;
    unsigned int width = 1, height = 1;
    double fontSize = 10.0;
    std::string text, original;
    size_t caret = 0;
    bool allSelected = true;
    bool ended = false;
    bool tabbed = false;
    bool hadFocus = false;
    bool tabbedBack = false;
};

}  // namespace Vinta::X11
