#include "CORE/files/Settings.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "CORE/files/Paths.h"

namespace Core {

namespace {
using Values = std::map<std::string, std::string>;

std::string escape(const std::string& text, bool isName) {
    std::string out;
    for (char c : text) {
        if (c == '\\') out += "\\\\";
        else if (c == '\n') out += "\\n";
        else if (c == '\r') out += "\\r";
        else if (c == '=' && isName) out += "\\=";
        else out += c;
    }
    return out;
}

std::string unescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char next = text[++i];
        out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
    }
    return out;
}

// Lines of "name=value"; anything malformed is skipped, not fatal.
Values load(const std::string& file) {
    Values values;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        size_t split = std::string::npos;
        for (size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '\\') {
                ++i;
                continue;
            }
            if (line[i] == '=') {
                split = i;
                break;
            }
        }
        if (split == std::string::npos || split == 0) continue;
        values[unescape(line.substr(0, split))] = unescape(line.substr(split + 1));
    }
    return values;
}

std::string configHome() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg) return xdg;
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "/tmp") + "/.config";
}

std::string machineConfigRoot() {
    const char* dirs = std::getenv("XDG_CONFIG_DIRS");
    if (dirs && *dirs) {
        const std::string all = dirs;
        return all.substr(0, all.find(':'));
    }
    return "/etc/xdg";
}

bool lookUp(const std::string& file, const std::string& name, std::string& value) {
    const Values values = load(file);
    const auto found = values.find(name);
    if (found == values.end()) return false;
    value = found->second;
    return true;
}
}  // namespace

std::string makeKeyName(const char* vendor, const char* product) {
    return std::string(vendor ? vendor : "") + "/" + (product ? product : "");
}

std::string userSettingsFile(const std::string& key) { return configHome() + "/" + key + "/settings"; }

std::string machineSettingsFile(const std::string& key) { return machineConfigRoot() + "/" + key + "/settings"; }

bool writeSetting(const std::string& key, const std::string& name, const std::string& value) {
    if (name.empty()) return false;
    const std::string file = userSettingsFile(key);
    const std::string folder = file.substr(0, file.rfind('/'));
    if (!createDirectoryPath(folder)) return false;
    // One writer at a time per store; readers never wait, they see whole files only.
    const int lock = ::open((folder + "/.settings.lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (lock < 0) return false;
    flock(lock, LOCK_EX);
    Values values = load(file);
    values[name] = value;
    std::ostringstream text;
    for (const auto& [n, v] : values) text << escape(n, true) << '=' << escape(v, false) << '\n';
    const std::string body = text.str();
    char temporary[4096];
    std::snprintf(temporary, sizeof temporary, "%s/.settings.XXXXXX", folder.c_str());
    bool written = false;
    const int out = mkstemp(temporary);
    if (out >= 0) {
        written = ::write(out, body.data(), body.size()) == static_cast<ssize_t>(body.size()) && fsync(out) == 0;
        ::close(out);
        written = written && std::rename(temporary, file.c_str()) == 0;
        if (!written) ::unlink(temporary);
    }
    flock(lock, LOCK_UN);
    ::close(lock);
    return written;
}

bool readSetting(const std::string& key, const std::string& name, std::string& value, const char* fallback) {
    value = fallback ? fallback : "";
    if (lookUp(userSettingsFile(key), name, value)) return true;
    if (lookUp(machineSettingsFile(key), name, value)) {
        writeSetting(key, name, value);
        return true;
    }
    if (fallback) writeSetting(key, name, fallback);
    return false;
}

}  // namespace Core
