#include "editor/presets/PresetMessages.h"

#include <vector>

#include "lib/platform-x11/CMessageBox.h"
#include "lib/platform-x11/ChooserProcess.h"
#include "lib/platform-x11/X11Frame.h"

namespace ZonfraPresets {

namespace {

void runDialog(Vinta::CFrame* frame, bool question, const std::string& title, const std::string& text, Answer answer) {
    using Vinta::X11::ChooserProcess;
    Vinta::X11::X11Frame* platform = Vinta::X11::X11Frame::of(frame);
    const std::string program = ChooserProcess::findOnPath({"zenity", "kdialog", "xmessage"});
    std::vector<std::string> command{program};
    if (program.ends_with("xmessage"))  // the X utilities' plain box: exit code 0 for the first button
        command.insert(command.end(), {"-center", "-title", title, "-buttons", question ? "Yes:0,No:1" : "OK:0", text});
    else if (program.ends_with("zenity"))
        command.insert(command.end(), {question ? "--question" : "--error", "--no-markup", "--title", title, "--text", text});
    else
        command.insert(command.end(), {"--title", title, question ? "--yesno" : "--error", text});
    const auto answered = [answer](bool yes) {
        if (answer) answer(yes);
    };
    if (platform && !program.empty() &&
        ChooserProcess::start(*platform, command, [answered](bool yes, const std::string&) { answered(yes); }))
        return;
    // No program to run it: the editor's own box.
    const std::vector<std::string> buttons = question ? std::vector<std::string>{"Yes", "No"} : std::vector<std::string>{"OK"};
    if (!Vinta::CMessageBox::show(frame, title.c_str(), text.c_str(), buttons,
                                  [answered](int32_t button) { answered(button == 0); }))
        answered(false);
}

}  // namespace

void askQuestion(Vinta::CFrame* frame, const std::string& title, const std::string& text, Answer answer) {
    runDialog(frame, true, title, text, std::move(answer));
}

void showMessage(Vinta::CFrame* frame, const std::string& title, const std::string& text) {
    runDialog(frame, false, title, text, nullptr);
}

}  // namespace ZonfraPresets
