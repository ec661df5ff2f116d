#include "lib/platform-x11/CFileSelector.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

#include "lib/controls/ITextEditCallback.h"
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

// The drawn field's side: a line across the middle of the editor holding the path.
class PathFieldCallback final : public ITextEditCallback {
public:
    PathFieldCallback(CFrame* owner, const std::string& start) : tree(owner), text(start) {}
    CColor getBackColor() const override { return CColor{250, 250, 250, 255}; }
    CColor getFontColor() const override { return CColor{10, 10, 10, 255}; }
    float getFontSize() const override { return 12.0f; }
    int32_t getTextAlign() const override { return 0; }
    const char* getText() const override { return text.c_str(); }
    CRect getVisibleRect() const override {
        const CRect all = tree->getViewSize();
        const double middle = all.getHeight() * 0.5;
        return CRect(8.0, middle - 10.0, all.getWidth() - 8.0, middle + 10.0);
    }
    CRect getRect() const override { return getVisibleRect(); }
    CPoint getOrigin() const override { return CPoint(); }
    void textEditDidEnd(int32_t flags) override {
        ended = true;
        taken = flags == kTextEditTake;
    }
    bool onPlatformKey(const VstKeyCode&) override { return false; }
    CFrame* getFrame() const override { return tree; }
    CRect scaleRect(const CRect& rect) const override {
        X11::X11Frame* platform = X11::X11Frame::of(tree);
        const double scale = platform ? platform->getScale() : 1.0;
        return {rect.left * scale, rect.top * scale, rect.right * scale, rect.bottom * scale};
    }

    CFrame* tree;
    std::string text;
    bool ended = false;
    bool taken = false;
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

const char* CFileSelector::getResult(int32_t index) const {
    return index >= 0 && index < getResultCount() ? results[static_cast<size_t>(index)].c_str() : nullptr;
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

bool CFileSelector::run(int32_t mode) {
    if (mode < kOpenFile || mode > kChooseFolder) return false;
    const std::vector<std::string> command = chooserCommand(mode);
    if (command.empty()) return runPathField(mode);
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    // The editor goes on painting and answering while the chooser is up, when we are on its thread.
    const bool pumping = platform && platform->onFrameThread();
    std::string output;
    const bool chosen = process.run(
        command,
        [&](int milliseconds) {
            if (platform && platform->isClosing()) return false;
            if (pumping) platform->pumpModal(milliseconds);
            return true;
        },
        output);
    if (!chosen) return false;
    std::vector<std::string> paths;
    std::istringstream lines(output);
    std::string line;
    while (std::getline(lines, line))
        if (!line.empty()) paths.push_back(line);
    if (paths.empty()) return false;
    results = paths;
    return true;
}

bool CFileSelector::runPathField(int32_t) {
    X11::X11Frame* platform = X11::X11Frame::of(frame);
    if (!platform || !platform->onFrameThread()) return false;
    PathFieldCallback field(frame, startPath());
    IOSTextEdit* edit = platform->createTextEdit(&field);
    if (!edit) return false;
    while (!field.ended && !platform->isClosing()) platform->pumpModal(40);
    char typed[1024] = {0};
    edit->getText(typed, sizeof typed);
    edit->forget();
    if (!field.taken || typed[0] == 0) return false;
    results = {typed};
    return true;
}

}  // namespace Vinta
