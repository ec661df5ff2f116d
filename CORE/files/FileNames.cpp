#include "CORE/files/FileNames.h"

#include <sys/stat.h>

#include <cstring>

namespace Core {

namespace {
constexpr size_t kPathBuffer = 260;

// The name part of a path: after the last separator or drive colon, up to the next ":".
std::string namePart(const char* path) {
    if (!path) return "";
    const char* start = path;
    for (const char* p = path; *p; ++p)
        if (*p == '/' || *p == '\\' || *p == ':') start = p + 1;
    return start;
}

const char* keep(char (&buffer)[kPathBuffer], const std::string& text) {
    std::strncpy(buffer, text.c_str(), kPathBuffer - 1);
    buffer[kPathBuffer - 1] = 0;
    return buffer;
}
}  // namespace

bool fileExists(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0;
}

uint64_t fileSize(const std::string& path) {
    struct stat info {};
    return stat(path.c_str(), &info) == 0 ? static_cast<uint64_t>(info.st_size) : 0;
}

const char* fileName(const char* path) {
    static char buffer[kPathBuffer];
    return keep(buffer, namePart(path));
}

const char* fileTitle(const char* path) {
    static char buffer[kPathBuffer];
    const std::string name = namePart(path);
    const size_t dot = name.rfind('.');
    return keep(buffer, dot == std::string::npos ? name : name.substr(0, dot));
}

const char* fileExtension(const char* path) {
    static char buffer[kPathBuffer];
    const std::string name = namePart(path);
    const size_t dot = name.rfind('.');
    return keep(buffer, dot == std::string::npos ? "" : name.substr(dot));
}

const char* convertSeparators(int mode, const char* path, char* out) {
    static char buffer[kPathBuffer];
    char* target = out ? out : buffer;
    const size_t limit = out ? std::strlen(path) + 1 : kPathBuffer;
    size_t i = 0;
    for (; path[i] && i + 1 < limit; ++i) {
        char c = path[i];
        if (mode == 1 && c == '/') c = '\\';
        if (mode == 2 && c == '\\') c = '/';
        target[i] = c;
    }
    target[i] = 0;
    return target;
}

bool isLegalFileNameChar(char c) {
    static constexpr char kIllegal[] = "^:*.\",/\\[];|=<>";
    return c != 0 && std::strchr(kIllegal, c) == nullptr;
}

}  // namespace Core
