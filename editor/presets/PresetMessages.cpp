#include "editor/presets/PresetMessages.h"

#include <vector>

#include "lib/platform-x11/ChooserProcess.h"
#include "lib/platform-x11/X11Frame.h"

namespace ZonfraPresets {

namespace {

// Runs the dialog; true when it was answered with yes / OK.
bool runDialog(Vinta::CFrame* frame, bool question, const std::string& title, const std::string& text) {
    using Vinta::X11::ChooserProcess;
    const std::string program = ChooserProcess::findOnPath({"zenity", "kdialog", "xmessage"});
    if (program.empty()) return false;
    std::vector<std::string> command{program};
    if (program.ends_with("xmessage"))  // the X utilities' plain box: exit code 0 for the first button
        command.insert(command.end(), {"-center", "-title", title, "-buttons", question ? "Yes:0,No:1" : "OK:0", text});
    else if (program.ends_with("zenity"))
        command.insert(command.end(), {question ? "--question" : "--error", "--no-markup", "--title", title, "--text", text});
    else
        command.insert(command.end(), {"--title", title, question ? "--yesno" : "--error", text});
    Vinta::X11::X11Frame* platform = Vinta::X11::X11Frame::of(frame);
    const bool pumping = platform && platform->onFrameThread();
    ChooserProcess process;
    std::string output;
    return process.run(
        command,
        [&](int milliseconds) {
            if (platform && platform->isClosing()) return false;
            if (pumping) platform->pumpModal(milliseconds);
            return true;
        },
        output);
}

}  // namespace

bool askQuestion(Vinta::CFrame* frame, const std::string& title, const std::string& text) {
    return runDialog(frame, true, title, text);
}

void showMessage(Vinta::CFrame* frame, const std::string& title, const std::string& text) {
    runDialog(frame, false, title, text);
}

}  // namespace ZonfraPresets
