#include "lib/platform-x11/CMessageBox.h"

#include <algorithm>
#include <string>

#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/views/CFrame.h"

namespace Vinta {

namespace {
constexpr double kBoxWidth = 320.0, kBoxHeight = 130.0;
constexpr double kButtonWidth = 80.0, kButtonHeight = 22.0, kGap = 10.0;
}  // namespace

std::string CMessageBox::wrapText(CDrawContext* context, const std::string& text, double width) {
    std::string out, line;
    auto fits = [&](const std::string& candidate) { return context->getStringWidth(candidate.c_str()) <= width; };
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find_first_of(" /\n", at);
        end = end == std::string::npos ? text.size() : end + (text[end] == '\n' ? 0 : 1);
        const std::string piece = text.substr(at, end - at);
        if (!line.empty() && !fits(line + piece)) out += line + "\n", line.clear();
        for (char c : piece) {
            // Never inside a character of several bytes.
            if (!line.empty() && (c & 0xC0) != 0x80 && !fits(line + c)) out += line + "\n", line.clear();
            line += c;
        }
        if (end < text.size() && text[end] == '\n') out += line + "\n", line.clear(), ++end;
        at = end;
    }
    return out + line;
}

CMessageBox::CMessageBox(const CRect& rect, const char* boxTitle, const char* boxText,
                         std::vector<std::string> boxButtons, Done whenDone)
    : CView(rect), title(boxTitle ? boxTitle : ""), text(boxText ? boxText : ""), buttons(std::move(boxButtons)),
      done(std::move(whenDone)) {
    if (buttons.empty()) buttons.push_back("OK");
    wantsFocus = true;
}

bool CMessageBox::show(CFrame* frame, const char* title, const char* text, std::vector<std::string> buttons,
                       Done done) {
    if (!frame) return false;
    auto* box = new CMessageBox(frame->getViewSize(), title, text, std::move(buttons), std::move(done));
    if (!frame->setModalView(box)) {
        box->forget();
        return false;
    }
    box->setDirty(true);
    return true;
}

CRect CMessageBox::boxRect() const {
    const double width = std::min(kBoxWidth, size.getWidth() - 8.0);
    const double height = std::min(kBoxHeight, size.getHeight() - 8.0);
    const CPoint centre = size.getCenter();
    return CRect(centre.x - width * 0.5, centre.y - height * 0.5, centre.x + width * 0.5, centre.y + height * 0.5);
}

CRect CMessageBox::getButtonRect(int32_t index) const {
    const CRect box = boxRect();
    const auto count = static_cast<double>(buttons.size());
    const double rowWidth = count * kButtonWidth + (count - 1.0) * kGap;
    const double left = box.getCenter().x - rowWidth * 0.5 + index * (kButtonWidth + kGap);
    return CRect(left, box.bottom - kGap - kButtonHeight, left + kButtonWidth, box.bottom - kGap);
}

void CMessageBox::draw(CDrawContext* context) {
    context->setFillColor(CColor{0, 0, 0, 150});
    context->drawRect(size, kDrawFilled);
    const CRect box = boxRect();
    context->setFillColor(CColor{48, 50, 56, 255});
    context->setFrameColor(CColor{120, 124, 132, 255});
    context->drawRoundRect(box, 6.0, kDrawFilledAndStroked);
    context->setFontColor(kWhiteCColor);
    context->setFont(kBoldFont, 13.0, 0);
    context->drawString(title.c_str(), CRect(box.left, box.top + 8.0, box.right, box.top + 28.0), 0, kAlignCenter);
    context->setFont(kSystemFont, 12.0, 0);
    const CRect textRect(box.left + 12.0, box.top + 34.0, box.right - 12.0, box.bottom - kButtonHeight - 2.0 * kGap);
    context->drawStringMultiline(wrapText(context, text, textRect.getWidth()).c_str(), textRect, 0, kAlignCenter);
    for (size_t index = 0; index < buttons.size(); ++index) {
        const CRect button = getButtonRect(static_cast<int32_t>(index));
        context->setFillColor(index == 0 ? CColor{70, 110, 170, 255} : CColor{80, 84, 92, 255});
        context->drawRoundRect(button, 4.0, kDrawFilled);
        context->drawString(buttons[index].c_str(), button, 0, kAlignCenter);
    }
    setDirty(false);
}

void CMessageBox::finish(int32_t button) {
    if (finished) return;
    finished = true;
    remember();  // taking the layer down drops the tree's reference
    const Done whenDone = done;
    if (CFrame* owner = getFrame()) owner->setModalView(nullptr);
    if (whenDone) whenDone(button);
    forget();
}

int32_t CMessageBox::onMouseDown(const CPoint& where, CButtonState) {
    for (size_t index = 0; index < buttons.size(); ++index)
        if (getButtonRect(static_cast<int32_t>(index)).pointInside(where)) {
            finish(static_cast<int32_t>(index));
            return kMouseEventHandledNoCapture;
        }
    return kMouseEventHandledNoCapture;
}

int32_t CMessageBox::onKeyDown(const VstKeyCode& key) {
    if (key.virt == VKEY_RETURN) finish(0);
    if (key.virt == VKEY_ESCAPE) finish(static_cast<int32_t>(buttons.size()) - 1);
    return key.virt == VKEY_RETURN || key.virt == VKEY_ESCAPE ? 1 : kKeyNotHandled;
}

}  // namespace Vinta
