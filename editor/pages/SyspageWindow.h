#pragma once
// The system page: the preset folder with buttons to show it and to choose another, the filter
// inertia, the version and credits, and the support report.
#include <functional>
#include <string>

#include "editor/pages/AttachedWindow.h"

namespace ZonfraPages {

class PageHost;

class CSyspageWindow : public Vinta_AttachedWindow {
public:
    CSyspageWindow(const CInfo& info, PageHost& host);

    int32_t onMouseDown(const Vinta::CPoint& where, Vinta::CButtonState buttons) override;
    void drawContent(Vinta::CDrawContext* context) override;
    const char* getClassName() const override { return "CSyspageWindow"; }

    // The path as it fits in `width`: whole, or losing characters from the front until it fits
    // with its first four characters shown as "....".
    static std::string fitPath(const std::string& path, double width,
                               const std::function<double(const std::string&)>& measure);
    static const char* wrapperName(int index);
    const std::string& getVersionLine() const { return versionLine; }

    // Button rectangles in page units.
    Vinta::CRect openButton() const;
    Vinta::CRect changeButton() const;
    Vinta::CRect supportButton() const;

private:
    void drawButton(Vinta::CDrawContext* context, const Vinta::CRect& box, const char* text, int& flash);

    PageHost& host;
    std::string versionLine;
    int openFlash = 0;
    int changeFlash = 0;
};

}  // namespace ZonfraPages
