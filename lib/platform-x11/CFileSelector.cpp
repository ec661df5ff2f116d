#include "lib/platform-x11/CFileSelector.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "lib/controls/ITextEditCallback.h"
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

// The drawn field: a line across the middle of the editor holding the path. It lives until the
// field ends (and hands on the path) or the editor closes (and drops `done`).
class PathField final : public ITextEditCallback, public X11::X11Companion {
public:
    PathField(X11::X11Frame& owner, const std::string& start, CFileSelector::Done whenDone)
        : platform(owner), text(start), done(std::move(whenDone)) {}

    bool open() {
        if (!platform.addCompanion(this)) return false;
        edit = platform.createTextEdit(this);
        if (edit) return true;
        platform.removeCompanion(this);
        return false;
    }

    CColor getBackColor() const override { return CColor{250, 250, 250, 255}; }
    CColor getFontColor() const override { return CColor{10, 10, 10, 255}; }
    float getFontSize() const override { return 12.0f; }
    int32_t getTextAlign() const override { return 0; }
    const char* getText() const override { return text.c_str(); }
    CRect getVisibleRect() const override {
        const CRect all = platform.getFrame() ? platform.getFrame()->getViewSize() : CRect();
        const double middle = all.getHeight() * 0.5;
        return CRect(8.0, middle - 10.0, all.getWidth() - 8.0, middle + 10.0);
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
        if (edit) edit->forget();
        delete this;
    }

private:
    X11::X11Frame& platform;
    std::string text;
    CFileSelector::Done done;
    IOSTextEdit* edit = nullptr;
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
    if (command.empty()) return runPathField(std::move(done));
    return X11::ChooserProcess::start(*platform, command, [done](bool chosen, const std::string& output) {
        std::vector<std::string> paths;
        std::istringstream lines(output);
        std::string line;
        while (chosen && std::getline(lines, line))
            if (!line.empty()) paths.push_back(line);
        if (done) done(paths);
    });
}

bool CFileSelector::runPathField(Done done) {
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    if (!platform) return false;
    auto* field = new PathField(*platform, startPath(), std::move(done));
    if (field->open()) return true;
    delete field;
    return false;
}

}  // namespace Vinta
