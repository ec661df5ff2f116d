#pragma once
#include <string>

namespace Core {

// Folders by kind: 0 the desktop, 1 the library's install prefix, 2 and 3 the user's data home.
// The result ends in "/" and has `subPath` appended; empty when the folder can't be found.
std::string getSpecialFolder(int kind, const char* subPath = nullptr);
// The plug-in library's own full path.
std::string getModulePath();
// Creates every missing folder of the path; true when the whole path exists afterwards.
bool createDirectoryPath(const std::string& path);
// "\" becomes "/", "//" collapses, "/./" and "name/../" go.
std::string normalisePath(const std::string& path);
std::string addTrailingSlash(const std::string& text);

}  // namespace Core
