#pragma once
#include <string>

namespace Core {

// Kinds of getSpecialFolder. Both data kinds are the user's data home on this platform.
enum SpecialFolder : int { kDesktopFolder = 0, kInstallPrefixFolder = 1, kUserDataFolder = 2, kSharedDataFolder = 3 };

// The folder of a SpecialFolder kind. The result ends in "/" and has `subPath` appended; empty when
// the folder can't be found.
std::string getSpecialFolder(int kind, const char* subPath = nullptr);
// The plug-in library's own full path.
std::string getModulePath();
// Creates every missing folder of the path; true when the whole path exists afterwards.
bool createDirectoryPath(const std::string& path);
// "\" becomes "/", "//" collapses, "/./" and "name/../" go.
std::string normalisePath(const std::string& path);
std::string addTrailingSlash(const std::string& text);

}  // namespace Core
