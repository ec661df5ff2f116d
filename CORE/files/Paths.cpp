#include "CORE/files/Paths.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace Core {

namespace {
std::string homeFolder() {
    const char* home = std::getenv("HOME");
    return home ? home : "";
}

std::string environmentOr(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}

// The desktop as xdg-user-dirs records it: XDG_DESKTOP_DIR="$HOME/Desktop" in user-dirs.dirs.
std::string desktopFolder(const std::string& home) {
    if (const char* fromEnvironment = std::getenv("XDG_DESKTOP_DIR"); fromEnvironment && *fromEnvironment)
        return fromEnvironment;
    const std::string config = environmentOr("XDG_CONFIG_HOME", home.empty() ? "" : home + "/.config");
    std::ifstream dirs(config + "/user-dirs.dirs");
    std::string line;
    while (std::getline(dirs, line)) {
        const std::string prefix = "XDG_DESKTOP_DIR=\"";
        if (line.rfind(prefix, 0) != 0 || line.back() != '"') continue;
        std::string value = line.substr(prefix.size(), line.size() - prefix.size() - 1);
        if (value.rfind("$HOME", 0) == 0) value = home + value.substr(5);
        return value;
    }
    return home.empty() ? "" : home + "/Desktop";
}

bool isDirectory(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}
}  // namespace

std::string addTrailingSlash(const std::string& text) {
    if (text.empty()) return "/";
    const char last = text.back();
    return last == '/' || last == '\\' ? text : text + "/";
}

std::string getModulePath() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&getModulePath), &info) == 0 || !info.dli_fname) return "";
    char* resolved = realpath(info.dli_fname, nullptr);
    std::string path = resolved ? resolved : info.dli_fname;
    std::free(resolved);
    return path;
}

std::string getSpecialFolder(int kind, const char* subPath) {
    std::string folder;
    const std::string home = homeFolder();
    switch (kind) {
        case kDesktopFolder: folder = desktopFolder(home); break;
        case kInstallPrefixFolder: {
            // The library lies in <prefix>/lib/... or in a bundle; its folder's parent stands for the prefix.
            const std::string module = getModulePath();
            const size_t slash = module.rfind('/');
            const std::string dir = slash == std::string::npos ? "" : module.substr(0, slash);
            const size_t parent = dir.rfind('/');
            folder = parent == std::string::npos ? dir : dir.substr(0, parent);
            break;
        }
        case kUserDataFolder:
        case kSharedDataFolder: folder = environmentOr("XDG_DATA_HOME", home.empty() ? "" : home + "/.local/share"); break;
        default: break;
    }
    if (folder.empty()) return "";
    folder = addTrailingSlash(normalisePath(folder));
    if (subPath) folder += subPath;
    return folder;
}

bool createDirectoryPath(const std::string& raw) {
    const std::string path = addTrailingSlash(normalisePath(raw));
    for (size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1)) {
        const std::string part = path.substr(0, at);
        if (part.empty() || isDirectory(part)) continue;
        if (mkdir(part.c_str(), 0755) != 0 && errno != EEXIST) return false;
    }
    return isDirectory(path.substr(0, path.size() - 1));
}

std::string normalisePath(const std::string& input) {
    std::string path = input;
    for (char& c : path)
        if (c == '\\') c = '/';
    for (size_t at = path.find("//"); at != std::string::npos; at = path.find("//")) path.erase(at, 1);
    for (size_t at = path.find("/./"); at != std::string::npos; at = path.find("/./")) path.erase(at, 2);
    // "name/../" goes; a leading "../" stays.
    for (size_t at = path.find("/../"); at != std::string::npos;) {
        const size_t start = at == 0 ? std::string::npos : path.rfind('/', at - 1);
        const size_t nameStart = start == std::string::npos ? 0 : start + 1;
        const std::string name = path.substr(nameStart, at - nameStart);
        if (name.empty() || name == "..") {
            at = path.find("/../", at + 1);
            continue;
        }
        path.erase(nameStart, at + 4 - nameStart);
        at = path.find("/../");
    }
    return path;
}

}  // namespace Core
