#pragma once
#include <string>

namespace Core {

// Hands a file, folder or web address to the desktop's opener (xdg-open). True when it started.
bool openWithShell(const std::string& path);
// Starts the command line as a detached process: words split at blanks, double quotes group.
// True when the program was found and started; nothing waits for it to end.
bool runCommandLine(const std::string& text);

}  // namespace Core
