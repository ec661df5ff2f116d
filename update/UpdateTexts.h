#pragma once

// The words of the update views, for each thing they can show.
namespace Resko {

struct UpdateMessage {
    const char* title;
    const char* body;
};

// mode 0 asks, 1 tells of a finished download, 2 of a failed one. `updateMode` 2 opens a web page
// instead of downloading.
constexpr UpdateMessage updateMessage(int mode, int updateMode) {
    if (mode == 1)
        return {"Download finished",
                "Close your host-DAW and run the\ninstaller file that is located on your desktop"};
    if (mode == 2) return {"Download failed", "Download failed. The plugin will try it again later!"};
    return {"New version available", updateMode == 2 ? "Do you want to open the update page in your browser?"
                                                     : "Do you want to download the installer file to your Desktop?"};
}

constexpr const char* kUpdateBadgeText = "Update\navailable";

}  // namespace Resko
