#pragma once
// The toolkit's file and folder chooser: the desktop's own (kdialog under KDE, zenity elsewhere)
// as a child program, while the editor keeps painting; a path field drawn in the editor where
// neither program exists.
#include <cstdint>
#include <string>
#include <vector>

#include "lib/platform-x11/ChooserProcess.h"

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

    // Waits for the choice; false for a cancel or any failure.
    bool run(int32_t mode);
    // From any thread (the editor closing): a running chooser ends and run answers false.
    void cancel() { process.cancel(); }
    const char* getResult(int32_t index) const;
    int32_t getResultCount() const { return static_cast<int32_t>(results.size()); }

    // The chooser program and its arguments for a mode; empty when none is on PATH.
    std::vector<std::string> chooserCommand(int32_t mode) const;

private:
    struct FileType {
        std::string description;
        std::vector<std::string> extensions;
    };
    bool runPathField(int32_t mode);
    std::string startPath() const;

    CFrame* frame;
    std::vector<std::string> results;
    std::string initialPath, defaultName, title, defaultExtension;
    std::vector<FileType> fileTypes;
    bool allowMultiple = false;
    bool showHidden = false;
    X11::ChooserProcess process;
};

}  // namespace Vinta
