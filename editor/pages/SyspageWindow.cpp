#include "editor/pages/SyspageWindow.h"

#include "editor/pages/PageStyle.h"
#include "editor/pages/Pages.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"

namespace ZonfraPages {

using namespace Vinta;

namespace {

constexpr int kFlashStart = 30;
const char* const kAboutLines[] = {
    "Filters, envelope, LFO and modulators by MMK",
    "Drawn with AGG and nanovg; spectrum by KissFFT",
    "Thanks to everyone who tried the early versions",
    "Questions and problems: press Support for a report",
};

}  // namespace

// Parameters: the filter inertia.
CSyspageWindow::CSyspageWindow(const CInfo& info, PageHost& pageHost) : Vinta_AttachedWindow(info), host(pageHost) {
    versionLine = "Version: MMK Zonfra QT - " + host.getVersion() + " 64bit " + wrapperName(host.getWrapperIndex());
    DialColumn column{5.0, 50.0, 185.0, 110.0};  // wider than the label needs: room for "100.00 %"
    addRow(column, info.parameters[0]);
}

const char* CSyspageWindow::wrapperName(int index) {
    static const char* const names[] = {"", "VST2", "VST3", "RTAS", "AU", "AAX"};
    return index >= 0 && index < 6 ? names[index] : "";
}

std::string CSyspageWindow::fitPath(const std::string& path, double width,
                                    const std::function<double(const std::string&)>& measure) {
    if (measure(path) <= width) return path;
    std::string rest = path;
    while (!rest.empty()) {
        rest.erase(0, 1);
        std::string shown = rest.size() > 4 ? "...." + rest.substr(4) : std::string("....");
        if (measure(shown) <= width || rest.size() <= 4) return shown;
    }
    return "....";
}

CRect CSyspageWindow::openButton() const {
    const double right = localRect().right;
    return {right - 160.0, 13.0, right - 85.0, 27.0};
}

CRect CSyspageWindow::changeButton() const {
    const double right = localRect().right;
    return {right - 80.0, 13.0, right - 5.0, 27.0};
}

CRect CSyspageWindow::supportButton() const {
    const double bottom = localRect().bottom;
    return {3.0, bottom - 15.0, 43.0, bottom - 3.0};
}

int32_t CSyspageWindow::onMouseDown(const CPoint& where, CButtonState buttons) {
    if (getTabRect().pointInside(where) || !isOpen()) return Vinta_AttachedWindow::onMouseDown(where, buttons);
    const CPoint local = where - size.getTopLeft();
    if (buttons == kLButton) {
        if (openButton().pointInside(local)) {
            openFlash = kFlashStart;
            host.openPresetFolder();
            markChanged();
            return kMouseEventHandledNoCapture;
        }
        if (changeButton().pointInside(local)) {
            changeFlash = kFlashStart;
            host.changePresetFolder(getFrame());
            markChanged();
            return kMouseEventHandledNoCapture;
        }
    }
    const int32_t result = Vinta_AttachedWindow::onMouseDown(where, buttons);
    if (result == kMouseEventHandled) return result;
    if ((buttons & kLButton) && supportButton().pointInside(local)) host.writeSupportReport(getFrame());
    return kMouseEventHandled;
}

void CSyspageWindow::drawButton(CDrawContext* context, const CRect& box, const char* text, int& flash) {
    context->setLineWidth(1.0f);
    context->setFrameColor(frameColour());
    if (flash > 0) {
        context->setFillColor(withAlpha(kPanelColor120, static_cast<uint8_t>(std::min(255, flash * 6))));
        context->drawRoundRect(box, 3.0, kDrawFilledAndStroked);
        flash -= 2;
        markChanged();
    } else {
        context->drawRoundRect(box, 3.0, kDrawStroked);
    }
    context->setFontColor(kLabelColor);
    context->drawString(text, box, 0, 1);
}

void CSyspageWindow::drawContent(CDrawContext* context) {
    const CRect page = localRect();
    context->setFont(kNormalFont, 10.0, 0);
    context->setFontColor(kLabelColor);
    context->drawString("Preset Folder:", CRect(2.0, 14.0, 150.0, 27.0), 0, 0);

    const CRect box(5.0, 30.0, page.right - 5.0, 44.0);
    context->setFillColor(kBackingColor);
    context->setFrameColor(kPanelColor60);
    context->drawRect(box, kDrawFilledAndStroked);
    const std::string folder = host.getPresetFolder();
    const std::string shown = fitPath(folder, box.getWidth() - 8.0,
                                      [context](const std::string& text) { return context->getStringWidth(text.c_str()); });
    context->setFontColor(kValueColor);
    context->drawString(shown.c_str(), box, 0, 1);

    drawButton(context, openButton(), "Open", openFlash);
    drawButton(context, changeButton(), "Change", changeFlash);

    const double lineY = page.bottom - 45.0;
    context->setLineWidth(0.5f);
    context->setFrameColor(kPanelColor200);
    context->drawLine(4.0, lineY, page.right - 4.0, lineY);

    context->setFont(kNormalFont, 9.0, 0);
    context->setFontColor(kPanelColor200);
    double top = lineY + 2.0;
    context->drawString(versionLine.c_str(), CRect(0.0, top, page.right, top + 8.0), 0, 1);
    for (const char* line : kAboutLines) {
        top += 8.0;
        context->drawString(line, CRect(0.0, top, page.right, top + 8.0), 0, 1);
    }

    const CRect support = supportButton();
    context->setLineWidth(1.0f);
    context->setFrameColor(frameColour());
    context->drawRoundRect(support, 3.0, kDrawStroked);
    context->setFontColor(kLabelColor);
    context->drawString("Support", support, 0, 1);
}

}  // namespace ZonfraPages
