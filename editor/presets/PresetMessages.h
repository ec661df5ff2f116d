#pragma once
// Questions and messages of the preset browser, shown by the desktop's dialog program (zenity or
// kdialog, else the X utilities' xmessage), or as a box drawn in the editor where none exists.
// Both return at once so the host's loop goes on; the answer comes later on the editor's thread.
// When the editor closes first, the dialog goes with it and the answer never comes.
#include <functional>
#include <string>

namespace Vinta {
class CFrame;
}

namespace ZonfraPresets {

using Answer = std::function<void(bool yes)>;

// A question that cannot be shown at all answers "no" at once, so nothing is replaced unasked.
void askQuestion(Vinta::CFrame* frame, const std::string& title, const std::string& text, Answer answer);
void showMessage(Vinta::CFrame* frame, const std::string& title, const std::string& text);

}  // namespace ZonfraPresets
