#include "lib/platform-x11/CFileSelector.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "lib/controls/ITextEditCallback.h"
#include "lib/drawing/CDrawContext.h"
#include "lib/drawing/CFontDesc.h"
#include "lib/platform-x11/ChooserProcess.h"
#include "lib/platform-x11/X11Companion.h"
#include "lib/platform-x11/X11Frame.h"
#include "lib/platform-x11/X11TextEdit.h"
#include "lib/views/CFrame.h"

namespace Vinta {

namespace {
bool underKDE() {
    const char* full = std::getenv("KDE_FULL_SESSION");
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return (full && *full) || (desktop && std::strstr(desktop, "KDE"));
}

constexpr double kFieldHeight = 20.0;

// The layer under the path field: the editor dimmed, the chooser's title above the field and how
// to answer below it.
class PathPrompt final : public CView {
public:
    PathPrompt(const CRect& area, std::string heading) : CView(area), title(std::move(heading)) {}
    void draw(CDrawContext* context) override {
        const CRect all = getViewSize();
        const double middle = all.getHeight() * 0.5;
        context->setFillColor(CColor{0, 0, 0, 170});
        context->drawRect(all, kDrawFilled);
        context->setFontColor(kWhiteCColor);
        context->setFont(kBoldFont, 13.0, 0);
        context->drawString(title.c_str(), CRect(8.0, middle - 34.0, all.right - 8.0, middle - 14.0), 0, kAlignLeft);
        context->setFont(kSystemFont, 11.0, 0);
        context->drawString("Return takes the path, Escape cancels",
                            CRect(8.0, middle + 14.0, all.right - 8.0, middle + 30.0), 0, kAlignLeft);
        setDirty(false);
    }

private:
    std::string title;
};

// The drawn field: a line across the middle of the editor holding the path, over its prompt. It
// lives until the field ends (and hands on the path) or the editor closes (and drops `done`).
class PathField final : public ITextEditCallback, public X11::X11Companion {
public:
    PathField(X11::X11Frame& owner, const std::string& start, CFileSelector::Done whenDone)
        : platform(owner), text(start), done(std::move(whenDone)) {}

    bool open(const std::string& title) {
        if (!platform.addCompanion(this)) return false;
        edit = platform.createTextEdit(this);
        if (!edit) {
            platform.removeCompanion(this);
            return false;
        }
        if (CFrame* frame = platform.getFrame()) {
            prompt = new PathPrompt(frame->getViewSize(), title);
            if (!frame->setModalView(prompt)) prompt->forget(), prompt = nullptr;
            else prompt->setDirty(true);
        }
        return true;
    }

    CColor getBackColor() const override { return CColor{250, 250, 250, 255}; }
    CColor getFontColor() const override { return CColor{10, 10, 10, 255}; }
    float getFontSize() const override { return 12.0f; }
    int32_t getTextAlign() const override { return 0; }
    const char* getText() const override { return text.c_str(); }
    CRect getVisibleRect() const override {
        const CRect all = platform.getFrame() ? platform.getFrame()->getViewSize() : CRect();
        const double middle = all.getHeight() * 0.5;
        return CRect(8.0, middle - kFieldHeight * 0.5, all.getWidth() - 8.0, middle + kFieldHeight * 0.5);
    }
    CRect getRect() const override { return getVisibleRect(); }
    CPoint getOrigin() const override { return CPoint(); }
    void textEditDidEnd(int32_t flags) override {
        char typed[1024] = {0};
        if (edit) edit->getText(typed, sizeof typed);
        std::vector<std::string> paths;
        if (flags == kTextEditTake && typed[0] != 0) paths.emplace_back(typed);
        const CFileSelector::Done whenDone = std::move(done);
        detach();  // the field holds its own reference while it ends
        if (whenDone) whenDone(paths);
    }
    bool onPlatformKey(const VstKeyCode&) override { return false; }
    CFrame* getFrame() const override { return platform.getFrame(); }
    CRect scaleRect(const CRect& rect) const override {
        const double scale = platform.getScale();
        return {rect.left * scale, rect.top * scale, rect.right * scale, rect.bottom * scale};
    }

    bool handleEvent(XEvent&) override { return false; }
    void detach() override {
        platform.removeCompanion(this);
        // The prompt goes with the field, unless the editor's close took it already.
        if (CFrame* frame = platform.getFrame(); frame && prompt && frame->getModalView() == prompt)
            frame->setModalView(nullptr);
        if (edit) edit->forget();
        delete this;
    }

private:
    X11::X11Frame& platform;
    std::string text;
    CFileSelector::Done done;
    IOSTextEdit* edit = nullptr;
    CView* prompt = nullptr;  // the frame's while it is shown
};
}  // namespace

CFileSelector::CFileSelector(CFrame* owner) : frame(owner) {}

void CFileSelector::addFileType(const char* description, const char* extensions) {
    FileType type{description ? description : "", {}};
    std::istringstream list(extensions ? extensions : "");
    std::string extension;
    while (std::getline(list, extension, ';'))
        if (!extension.empty()) type.extensions.push_back(extension);
    fileTypes.push_back(type);
}

std::string CFileSelector::startPath() const {
    std::string path = initialPath;
    if (!defaultName.empty()) path += (path.empty() || path.back() == '/' ? "" : "/") + defaultName;
    return path;
}

std::vector<std::string> CFileSelector::chooserCommand(int32_t mode) const {
    const bool kde = underKDE();
    std::string program = X11::ChooserProcess::findOnPath(kde ? std::vector<std::string>{"kdialog", "zenity"}
                                                              : std::vector<std::string>{"zenity", "kdialog"});
    if (program.empty()) return {};
    std::vector<std::string> command{program};
    const std::string shownTitle = !title.empty() ? title : mode == kChooseFolder ? "Select a folder" : "";
    if (program.ends_with("zenity")) {
        command.push_back("--file-selection");
        if (!shownTitle.empty()) command.push_back("--title=" + shownTitle);
        if (mode == kSaveFile) command.insert(command.end(), {"--save", "--confirm-overwrite"});
        if (mode == kChooseFolder) command.push_back("--directory");
        if (mode == kOpenFile && allowMultiple) command.insert(command.end(), {"--multiple", "--separator=\n"});
        if (!startPath().empty()) command.push_back("--filename=" + startPath());
        if (mode != kChooseFolder)
            for (const FileType& type : fileTypes) {
                std::string filter = "--file-filter=" + type.description + " |";
                for (const std::string& extension : type.extensions) filter += " *." + extension;
                command.push_back(filter);
            }
        return command;
    }
    std::string filter;
    for (const FileType& type : fileTypes) {
        if (!filter.empty()) filter += "\n";
        for (const std::string& extension : type.extensions) filter += "*." + extension + " ";
        filter += "|" + type.description;
    }
    const std::string start = startPath().empty() ? "." : startPath();
    if (mode == kChooseFolder) {
        command.insert(command.end(), {"--getexistingdirectory", start});
    } else {
        command.insert(command.end(), {mode == kSaveFile ? "--getsavefilename" : "--getopenfilename", start, filter});
        if (mode == kOpenFile && allowMultiple) command.insert(command.end(), {"--multiple", "--separate-output"});
    }
    if (!shownTitle.empty()) command.insert(command.end(), {"--title", shownTitle});
    return command;
}

bool CFileSelector::run(int32_t mode, Done done) {
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    if (!platform || mode < kOpenFile || mode > kChooseFolder) return false;
    const std::vector<std::string> command = chooserCommand(mode);
    if (command.empty()) return runPathField(mode, std::move(done));
    return X11::ChooserProcess::start(*platform, command, [done](bool chosen, const std::string& output) {
        std::vector<std::string> paths;
        std::istringstream lines(output);
        std::string line;
        while (chosen && std::getline(lines, line))
            if (!line.empty()) paths.push_back(line);
        if (done) done(paths);
    });
}

bool CFileSelector::runPathField(int32_t mode, Done done) {
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    if (!platform) return false;
    auto* field = new PathField(*platform, startPath(), std::move(done));
    const char* fallback = mode == kChooseFolder ? "Select a folder" : mode == kSaveFile ? "Save as" : "Open";
    if (field->open(title.empty() ? fallback : title)) return true;
    delete field;
    return false;
}

}  // namespace Vinta
