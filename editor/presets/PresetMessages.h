#pragma once
// Questions and messages of the preset browser, shown by the desktop's dialog program (zenity or
// kdialog, else the X utilities' xmessage) while the editor goes on painting. Without any of them
// questions answer "no" and messages are dropped, so nothing is replaced unasked.
#include <string>

namespace Vinta {
class CFrame;
}

namespace ZonfraPresets {

bool askQuestion(Vinta::CFrame* frame, const std::string& title, const std::string& text);
void showMessage(Vinta::CFrame* frame, const std::string& title, const std::string& text);

}  // namespace ZonfraPresets
