#pragma once
// A message box as a modal layer inside the editor: the editor dims, a box shows the title, the
// text and a row of buttons; a click on one, return (the first) or escape (the last) ends it.
// Drawn by the toolkit, so it looks the same on every back end and needs no window of its own.
#include <functional>
#include <string>
#include <vector>

#include "lib/views/CView.h"

namespace Vinta {

class CFrame;

class CMessageBox : public CView {
public:
    using Done = std::function<void(int32_t button)>;

    // Puts the box over the editor and returns at once, so the host's loop goes on; `done` gets
    // the index of the chosen button on the editor's thread, and never runs when the editor closes
    // first. False when another modal view is up.
    static bool show(CFrame* frame, const char* title, const char* text, std::vector<std::string> buttons, Done done);
    // `text` broken into lines no wider than `width` in the context's font: at spaces, after a '/'
    // (long paths), and inside a word that is wider still.
    static std::string wrapText(CDrawContext* context, const std::string& text, double width);

    void draw(CDrawContext* context) override;
    int32_t onMouseDown(const CPoint& where, CButtonState buttons) override;
    int32_t onKeyDown(const VstKeyCode& key) override;
    bool hitTest(const CPoint&, CButtonState) override { return true; }  // the layer takes every click

    // The button's rectangle in the frame.
    CRect getButtonRect(int32_t index) const;

private:
    CMessageBox(const CRect& size, const char* title, const char* text, std::vector<std::string> buttons, Done done);
    CRect boxRect() const;
    void finish(int32_t button);

    std::string title, text;
    std::vector<std::string> buttons;
    Done done;
    bool finished = false;
};

}  // namespace Vinta
