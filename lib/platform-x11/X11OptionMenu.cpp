#include "lib/platform-x11/X11OptionMenu.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "lib/controls/CMenuItem.h"
#include "lib/controls/COptionMenu.h"
#include "lib/drawing/CDrawContext_AGG.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/platform-x11/X11SoftwareSurface.h"

namespace Vinta::X11 {

namespace {
constexpr CColor kMenuBack{38, 38, 42, 255};
constexpr CColor kMenuHover{70, 110, 170, 255};
constexpr CColor kMenuText{235, 235, 235, 255};
constexpr CColor kMenuDisabled{120, 120, 120, 255};
constexpr CColor kMenuLine{90, 90, 95, 255};
}  // namespace

struct X11OptionMenu::Level {
    COptionMenu* menu = nullptr;
    Window window = 0;
    GC gc = nullptr;
    int x = 0, y = 0, width = 1, height = 1;
    int contentHeight = 0;
    int scroll = 0;
    int hover = -1;
    std::vector<int> rowTop;  // one more than rows: the last is the content's bottom
    std::vector<uint8_t> pixels;
    std::unique_ptr<X11SoftwareSurface> surface;
    CDrawContext_AGG* context = nullptr;

    int rowCount() const { return static_cast<int>(rowTop.size()) - 1; }
    bool selectable(int row) const {
        const CMenuItem* item = menu->getEntry(row);
        return item && item->isEnabled() && !item->isSeparator();
    }
};

X11OptionMenu::X11OptionMenu(X11Frame& owner) : frame(owner), display(owner.getDisplay()) {}

X11OptionMenu::~X11OptionMenu() { detach(); }

void X11OptionMenu::detach() {
    if (!display) return;
    closeLevelsAfter(0);
    frame.removeCompanion(this);
    done = true;
    display = nullptr;
    if (!running) return;
    // The editor closes under the menu: no choice goes out, and the menu lets go of itself.
    running = false;
    chosen = nullptr;
    forget();
}

void X11OptionMenu::finish() {
    XUngrabKeyboard(display, CurrentTime);
    XUngrabPointer(display, CurrentTime);
    closeLevelsAfter(0);
    XFlush(display);
    frame.removeCompanion(this);
    running = false;
    const Chosen whenChosen = std::move(chosen);
    const COptionMenuResult choice = result;
    forget();  // may be the last reference
    if (whenChosen) whenChosen(choice);
}

void X11OptionMenu::closeLevelsAfter(size_t keep) {
    while (levels.size() > keep) {
        Level& level = *levels.back();
        if (level.context) level.context->forget();
        level.surface.reset();
        if (display) {
            XFreeGC(display, level.gc);
            XDestroyWindow(display, level.window);
        }
        levels.pop_back();
    }
}

void X11OptionMenu::openLevel(COptionMenu* menu, int x, int y, int alignBottom) {
    auto level = std::make_unique<Level>();
    level->menu = menu;
    const int rowHeight = static_cast<int>(std::lround(18.0 * scale));
    const int separatorHeight = static_cast<int>(std::lround(7.0 * scale));
    const double fontSize = 12.0 * scale;
    CDrawContext_AGG measure(nullptr);
    std::vector<uint8_t> scratch(4, 0);
    measure.attach(scratch.data(), 1, 1, 4);
    measure.setFont(kSystemFont, fontSize, 0);
    double widest = 60.0 * scale;
    int top = 0;
    for (int32_t index = 0; index < menu->getNbEntries(); ++index) {
        level->rowTop.push_back(top);
        const CMenuItem* item = menu->getEntry(index);
        top += item->isSeparator() ? separatorHeight : rowHeight;
        char title[300];
        menu->getEntryTitle(index, title, sizeof title);
        widest = std::max(widest, measure.getStringWidth(title));
    }
    level->rowTop.push_back(top);
    level->contentHeight = std::max(top, rowHeight);

    const int screen = DefaultScreen(display);
    const int screenWidth = DisplayWidth(display, screen), screenHeight = DisplayHeight(display, screen);
    level->width = static_cast<int>(std::ceil(widest + 48.0 * scale));
    level->height = std::min(level->contentHeight, screenHeight);
    // Below the anchor when it fits, else above it, else as far down as the screen allows.
    if (y + level->height > screenHeight && alignBottom - level->height >= 0) y = alignBottom - level->height;
    level->y = std::clamp(y, 0, std::max(0, screenHeight - level->height));
    level->x = std::clamp(x, 0, std::max(0, screenWidth - level->width));

    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.event_mask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask | KeyPressMask;
    attributes.background_pixmap = None;
    const int depth = DefaultDepth(display, screen);
    Visual* visual = DefaultVisual(display, screen);
    level->window = XCreateWindow(display, DefaultRootWindow(display), level->x, level->y,
                                  static_cast<unsigned>(level->width), static_cast<unsigned>(level->height), 0, depth,
                                  InputOutput, visual, CWOverrideRedirect | CWEventMask | CWBackPixmap, &attributes);
    level->gc = XCreateGC(display, level->window, 0, nullptr);
    level->surface = std::make_unique<X11SoftwareSurface>(display, visual, depth);
    level->pixels.assign(static_cast<size_t>(level->width) * level->height * 4, 0);
    level->context = new CDrawContext_AGG(nullptr, level->pixels.data(), static_cast<uint32_t>(level->width),
                                          static_cast<uint32_t>(level->height), level->width * 4);
    XMapRaised(display, level->window);
    levels.push_back(std::move(level));
    drawLevel(*levels.back());
}

void X11OptionMenu::drawLevel(Level& level) {
    CDrawContext_AGG& context = *level.context;
    const double w = level.width;
    context.resetClipRect();
    context.setFillColor(kMenuBack);
    context.drawRect(CRect(0.0, 0.0, w, level.height), kDrawFilled);
    context.setFont(kSystemFont, 12.0 * scale, 0);
    for (int row = 0; row < level.rowCount(); ++row) {
        const double top = level.rowTop[static_cast<size_t>(row)] - level.scroll;
        const double bottom = level.rowTop[static_cast<size_t>(row) + 1] - level.scroll;
        if (bottom < 0.0 || top > level.height) continue;
        const CMenuItem* item = level.menu->getEntry(row);
        if (item->isSeparator()) {
            context.setFrameColor(kMenuLine);
            const double middle = std::floor((top + bottom) * 0.5) + 0.5;
            context.drawLine(4.0, middle, w - 4.0, middle);
            continue;
        }
        if (row == level.hover) {
            context.setFillColor(kMenuHover);
            context.drawRect(CRect(1.0, top, w - 1.0, bottom), kDrawFilled);
        }
        const CColor ink = item->isEnabled() ? kMenuText : kMenuDisabled;
        context.setFrameColor(ink);
        context.setFontColor(ink);
        const double unit = scale;
        if (item->isChecked()) {
            const CPoint tick[] = {{6.0 * unit, (top + bottom) * 0.5},
                                   {9.0 * unit, bottom - 5.0 * unit},
                                   {15.0 * unit, top + 5.0 * unit}};
            context.setLineWidth(static_cast<float>(1.5 * unit));
            context.drawPolyline(tick, 3);
            context.setLineWidth(1.0f);
        }
        char title[300];
        level.menu->getEntryTitle(row, title, sizeof title);
        context.drawString(title, CRect(22.0 * unit, top, w - 20.0 * unit, bottom), 0, kAlignLeft);
        if (item->getSubmenu()) {
            context.setFillColor(ink);
            const CPoint arrow[] = {{w - 14.0 * unit, top + 5.0 * unit},
                                    {w - 8.0 * unit, (top + bottom) * 0.5},
                                    {w - 14.0 * unit, bottom - 5.0 * unit}};
            context.drawPolygon(arrow, 3, kDrawFilled, true);
        }
    }
    level.surface->present(level.window, level.gc, level.pixels.data(), static_cast<uint32_t>(level.width),
                           static_cast<uint32_t>(level.height), level.width * 4, static_cast<uint32_t>(level.width),
                           static_cast<uint32_t>(level.height));
}

int X11OptionMenu::levelAt(int rootX, int rootY) const {
    for (int index = static_cast<int>(levels.size()) - 1; index >= 0; --index) {
        const Level& level = *levels[static_cast<size_t>(index)];
        if (rootX >= level.x && rootX < level.x + level.width && rootY >= level.y && rootY < level.y + level.height)
            return index;
    }
    return -1;
}

int X11OptionMenu::rowAt(const Level& level, int rootY) const {
    const int inContent = rootY - level.y + level.scroll;
    for (int row = 0; row < level.rowCount(); ++row)
        if (inContent >= level.rowTop[static_cast<size_t>(row)] && inContent < level.rowTop[static_cast<size_t>(row) + 1])
            return row;
    return -1;
}

void X11OptionMenu::setHover(size_t levelIndex, int row) {
    Level& level = *levels[levelIndex];
    if (row >= 0 && !level.selectable(row)) row = -1;
    if (row >= 0) {
        // Keep the row in sight in a scrolled menu.
        const int top = level.rowTop[static_cast<size_t>(row)], bottom = level.rowTop[static_cast<size_t>(row) + 1];
        if (top < level.scroll) level.scroll = top;
        if (bottom > level.scroll + level.height) level.scroll = bottom - level.height;
    }
    if (row == level.hover) return;
    level.hover = row;
    drawLevel(level);
}

void X11OptionMenu::moveHover(int step) {
    const size_t deepest = levels.size() - 1;
    Level& level = *levels[deepest];
    const int count = level.rowCount();
    if (count == 0) return;
    int row = level.hover;
    for (int tries = 0; tries < count; ++tries) {
        row = row < 0 ? (step > 0 ? 0 : count - 1) : (row + step + count) % count;
        if (level.selectable(row)) return setHover(deepest, row);
    }
}

void X11OptionMenu::enterRow(size_t levelIndex, bool fromKeyboard) {
    Level& level = *levels[levelIndex];
    if (level.hover < 0) return;
    const CMenuItem* item = level.menu->getEntry(level.hover);
    if (COptionMenu* sub = item->getSubmenu()) {
        closeLevelsAfter(levelIndex + 1);
        const int rowTop = level.y + level.rowTop[static_cast<size_t>(level.hover)] - level.scroll;
        openLevel(sub, level.x + level.width - 2, rowTop, rowTop);
        if (fromKeyboard) moveHover(1);
        return;
    }
    result = COptionMenuResult{level.menu, level.hover};
    done = true;
}

void X11OptionMenu::onKey(XKeyEvent& event) {
    const KeySym symbol = XLookupKeysym(&event, 0);
    switch (symbol) {
        case XK_Up: moveHover(-1); break;
        case XK_Down: moveHover(1); break;
        case XK_Right: {
            Level& level = *levels.back();
            if (level.hover >= 0 && level.menu->getEntry(level.hover)->getSubmenu()) enterRow(levels.size() - 1, true);
            break;
        }
        case XK_Left:
            if (levels.size() > 1) closeLevelsAfter(levels.size() - 1);
            break;
        case XK_Return:
        case XK_KP_Enter:
        case XK_space: enterRow(levels.size() - 1, true); break;
        case XK_Escape:
            if (levels.size() > 1)
                closeLevelsAfter(levels.size() - 1);
            else
                done = true;
            break;
        default: break;
    }
}

bool X11OptionMenu::handleEvent(XEvent& event) {
    if (!running || !display) return false;
    const bool taken = handleMenuEvent(event);
    if (done && running && display) finish();
    return taken;
}

bool X11OptionMenu::handleMenuEvent(XEvent& event) {
    switch (event.type) {
        case Expose:
            for (auto& level : levels)
                if (level->window == event.xexpose.window) {
                    drawLevel(*level);
                    return true;
                }
            return false;
        case MotionNotify: {
            const int index = levelAt(event.xmotion.x_root, event.xmotion.y_root);
            if (index < 0) return true;
            armed = true;
            const auto levelIndex = static_cast<size_t>(index);
            const int row = rowAt(*levels[levelIndex], event.xmotion.y_root);
            setHover(levelIndex, row);
            const CMenuItem* item = row >= 0 ? levels[levelIndex]->menu->getEntry(row) : nullptr;
            if (item && item->getSubmenu() && item->isEnabled()) {
                if (levels.size() <= levelIndex + 1 || levels[levelIndex + 1]->menu != item->getSubmenu())
                    enterRow(levelIndex, false);
            } else if (row >= 0) {
                closeLevelsAfter(levelIndex + 1);
            }
            return true;
        }
        case ButtonPress: {
            const int index = levelAt(event.xbutton.x_root, event.xbutton.y_root);
            if (index < 0) {
                done = true;  // a click outside closes the menu without a choice
                return true;
            }
            armed = true;
            Level& level = *levels[static_cast<size_t>(index)];
            if (event.xbutton.button == 4 || event.xbutton.button == 5) {
                const int step = static_cast<int>(std::lround(54.0 * scale)) * (event.xbutton.button == 4 ? -1 : 1);
                level.scroll = std::clamp(level.scroll + step, 0, std::max(0, level.contentHeight - level.height));
                drawLevel(level);
            }
            return true;
        }
        case ButtonRelease: {
            // The release of the click that opened the menu chooses nothing, even over a row.
            const int index = levelAt(event.xbutton.x_root, event.xbutton.y_root);
            if (index < 0 || event.xbutton.button > 3 || !armed) return true;
            const auto levelIndex = static_cast<size_t>(index);
            const int row = rowAt(*levels[levelIndex], event.xbutton.y_root);
            if (row >= 0 && levels[levelIndex]->selectable(row) &&
                !levels[levelIndex]->menu->getEntry(row)->getSubmenu()) {
                levels[levelIndex]->hover = row;
                enterRow(levelIndex, false);
            }
            return true;
        }
        case KeyPress:
        case KeyRelease:
            if (event.type == KeyPress) onKey(event.xkey);
            return true;
        default: return false;
    }
}

bool X11OptionMenu::popup(COptionMenu* menu, Chosen whenChosen) {
    if (!menu || !display || running || menu->getNbEntries() == 0) return false;
    scale = frame.getScale();
    double screenX = 0.0, screenY = 0.0;
    frame.getScreenPosition(screenX, screenY);
    CPoint origin;
    menu->localToFrame(origin);
    CRect control = menu->getViewSize();
    control.offset(origin.x, origin.y);
    const int left = static_cast<int>(screenX + control.left * scale);
    const int below = static_cast<int>(screenY + control.bottom * scale);
    const int above = static_cast<int>(screenY + control.top * scale);

    if (!frame.addCompanion(this)) return false;
    remember();  // until the choice has gone out or the editor closes
    chosen = std::move(whenChosen);
    running = true;
    done = false;
    armed = false;
    result = {};
    openLevel(menu, left, below, above);
    Window grabWindow = levels.front()->window;
    XSync(display, False);
    XGrabPointer(display, grabWindow, True, ButtonPressMask | ButtonReleaseMask | PointerMotionMask, GrabModeAsync,
                 GrabModeAsync, None, None, CurrentTime);
    XGrabKeyboard(display, grabWindow, True, GrabModeAsync, GrabModeAsync, CurrentTime);
    XFlush(display);
    return true;
}

}  // namespace Vinta::X11
