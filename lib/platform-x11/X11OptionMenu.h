#pragma once
// An option menu as pop-up windows of our own (override-redirect, so no window manager moves
// them), drawn by the software context: sub-menus open beside their row, separators, disabled and
// checked rows, the keyboard moves through the rows, and a menu taller than the screen scrolls.
// popup() returns at once; the frame hands the menu its events, and the choice goes out from there.
#include <X11/Xlib.h>

#include <memory>
#include <vector>

#include "lib/controls/IOSOptionMenu.h"
#include "lib/platform-x11/X11Companion.h"

namespace Vinta::X11 {

class X11Frame;

class X11OptionMenu final : public IOSOptionMenu, public X11Companion {
public:
    explicit X11OptionMenu(X11Frame& frame);

    bool popup(COptionMenu* menu, Chosen chosen) override;
    bool handleEvent(XEvent& event) override;
    void detach() override;
    bool isModal() const override { return running; }

private:
    struct Level;
    ~X11OptionMenu() override;

    void openLevel(COptionMenu* menu, int x, int y, int alignBottom);
    void closeLevelsAfter(size_t keep);
    void drawLevel(Level& level);
    int levelAt(int rootX, int rootY) const;
    int rowAt(const Level& level, int rootY) const;
    void setHover(size_t levelIndex, int row);
    void moveHover(int step);
    void enterRow(size_t levelIndex, bool fromKeyboard);
    void onKey(XKeyEvent& event);
    bool handleMenuEvent(XEvent& event);
    // Takes the menu down and hands on the choice.
    void finish();

    X11Frame& frame;
    Display* display;
    std::vector<std::unique_ptr<Level>> levels;
    COptionMenuResult result;
    Chosen chosen;
    bool running = false;
    bool done = false;
    bool armed = false;  // the pointer has moved in the menu or pressed in it
    double scale = 1.0;
};

}  // namespace Vinta::X11
