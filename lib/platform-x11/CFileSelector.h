#pragma once
// The toolkit's file and folder chooser: the desktop's own (kdialog under KDE, zenity elsewhere)
// as a child program, or a path field drawn in the editor where neither program exists. run()
// returns at once: the host's loop goes on, and the choice arrives later through a callback.
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Vinta {

class CFrame;

class CFileSelector {
public:
    enum Mode : int32_t { kOpenFile = 0, kSaveFile = 1, kChooseFolder = 2 };

    explicit CFileSelector(CFrame* frame);

    void setInitialPath(const char* path) { initialPath = path ? path : ""; }
    void setDefaultName(const char* name) { defaultName = name ? name : ""; }
    void setTitle(const char* text) { title = text ? text : ""; }
    void setDefaultExtension(const char* extension) { defaultExtension = extension ? extension : ""; }
    // `extensions` without dots, separated by ';' ("wav;aif").
    void addFileType(const char* description, const char* extensions);
    void setAllowMultiple(bool allow) { allowMultiple = allow; }
    void setShowHidden(bool show) { showHidden = show; }

    // The chosen paths; none for a cancel or a failure the chooser reported.
    using Done = std::function<void(const std::vector<std::string>& paths)>;

    // Puts the chooser up and returns; `done` runs later on the editor's thread. False when
    // nothing could be shown (`done` never runs then). When the editor closes first, the chooser
    // goes with it and `done` is dropped unrun. The selector itself may go as soon as this returns.
    bool run(int32_t mode, Done done);

    // The chooser program and its arguments for a mode; empty when none is on PATH.
    std::vector<std::string> chooserCommand(int32_t mode) const;

private:
    struct FileType {
        std::string description;
        std::vector<std::string> extensions;
    };
    bool runPathField(int32_t mode, Done done);
    std::string startPath() const;

    CFrame* frame;
    std::string initialPath, defaultName, title, defaultExtension;
    std::vector<FileType> fileTypes;
    bool allowMultiple = false;
    bool showHidden = false;
};

}  // namespace Vinta
