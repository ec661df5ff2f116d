#include "update/DownloadTarget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace Resko {

namespace {
bool hasControlCharacter(const std::string& text) {
    for (unsigned char c : text)
        if (c < 0x20 || c == 0x7f) return true;
    return false;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string percentDecoded(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexDigit(text[i + 1]) >= 0 && hexDigit(text[i + 2]) >= 0) {
            out += char(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

// Cuts to at most `limit` bytes without splitting a UTF-8 sequence.
void cutTo(std::string& text, size_t limit) {
    if (text.size() <= limit) return;
    size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
}
}  // namespace

bool splitDownloadUrl(const std::string& raw, DownloadLocation& location) {
    std::string url = raw;
    if (url.rfind("http://", 0) == 0) url.erase(0, 7);
    if (url.find("://") != std::string::npos || hasControlCharacter(url)) return false;
    const size_t slash = url.find('/');
    std::string hostPort = url.substr(0, slash);
    location.path = slash == std::string::npos ? "" : url.substr(slash + 1);
    location.port = 80;
    if (const size_t colon = hostPort.rfind(':'); colon != std::string::npos) {
        const std::string port = hostPort.substr(colon + 1);
        char* end = nullptr;
        const long value = std::strtol(port.c_str(), &end, 10);
        if (port.empty() || *end || value < 1 || value > 65535) return false;
        location.port = int(value);
        hostPort.resize(colon);
    }
    location.host = hostPort;
    return !location.host.empty() && location.host.find_first_of(" @") == std::string::npos;
}

std::string plainFileName(const std::string& url) {
    std::string name = url.substr(0, url.find_first_of("?#"));
    name = name.substr(name.find_last_of('/') == std::string::npos ? 0 : name.find_last_of('/') + 1);
    name = percentDecoded(name);
    // Decoding may bring separators back; only the last segment counts.
    if (const size_t cut = name.find_last_of("/\\"); cut != std::string::npos) name.erase(0, cut + 1);
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f || c == ':') c = '_';
    while (!name.empty() && (name.front() == '.' || name.front() == ' ')) name.erase(0, 1);
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.pop_back();
    if (name.size() > 200) {
        const size_t dot = name.rfind('.');
        const std::string extension = dot != std::string::npos && name.size() - dot <= 16 ? name.substr(dot) : "";
        name.resize(name.size() - extension.size());
        cutTo(name, 200 - extension.size());
        name += extension;
    }
    return name.empty() ? "download" : name;
}

int createUniqueFile(const std::string& folder, const std::string& name, std::string& path) {
    const size_t dot = name.rfind('.');
    const std::string title = dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
    const std::string extension = dot == std::string::npos || dot == 0 ? "" : name.substr(dot);
    for (int copy = 0; copy < 1000; ++copy) {
        path = folder + title + (copy ? " (" + std::to_string(copy) + ")" : "") + extension;
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644);
        if (file >= 0) return file;
        if (errno != EEXIST) break;
    }
    path.clear();
    return -1;
}

}  // namespace Resko
