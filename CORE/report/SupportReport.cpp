#include "CORE/report/SupportReport.h"

#include <grp.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <vector>

#include "CORE/files/Paths.h"

namespace Core {

namespace {
std::string format(const char* pattern, ...) __attribute__((format(printf, 1, 2)));
std::string format(const char* pattern, ...) {
    char text[0x1000];
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

// The first line of `file` that starts with `key` and a separator (":" or "="), without it.
std::string fieldOf(const char* file, const std::string& key, char separator) {
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, key.size(), key) != 0) continue;
        const size_t split = line.find(separator, key.size());
        if (split == std::string::npos || line.find_first_not_of(" \t", key.size()) != split) continue;
        std::string value = line.substr(split + 1);
        value.erase(0, value.find_first_not_of(" \t"));
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        return value;
    }
    return "";
}

std::string systemName() {
    for (const char* file : {"/etc/os-release", "/usr/lib/os-release"}) {
        if (std::string pretty = fieldOf(file, "PRETTY_NAME", '='); !pretty.empty()) return pretty;
        if (std::string name = fieldOf(file, "NAME", '='); !name.empty())
            return name + " " + fieldOf(file, "VERSION", '=');
    }
    return "Linux";
}
}  // namespace

bool isUserAdministrator(std::string* userName) {
    const uid_t user = geteuid();
    if (userName) {
        const passwd* entry = getpwuid(user);
        const char* fromEnvironment = std::getenv("USER");
        *userName = entry && entry->pw_name ? entry->pw_name : fromEnvironment ? fromEnvironment : "";
    }
    if (user == 0) return true;
    std::vector<gid_t> groups(256);
    const int count = getgroups(int(groups.size()), groups.data());
    groups.resize(count > 0 ? size_t(count) : 0);
    groups.push_back(getegid());
    for (gid_t id : groups) {
        const group* entry = getgrgid(id);
        if (!entry || !entry->gr_name) continue;
        for (const char* admin : {"sudo", "wheel", "adm", "admin"})
            if (std::string(entry->gr_name) == admin) return true;
    }
    return false;
}

std::string buildSystemSection() {
    std::string text;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    text += format("%04d-%02d-%02d %02d:%02d:%02d\n\n", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                   local.tm_hour, local.tm_min, local.tm_sec);
    text += "-\n- System\n-\n\n";
    text += systemName() + "\n";
    if (utsname names{}; uname(&names) == 0) {
        text += format("\nKernel     : %s %s\nBuild      : %s\n\n", names.sysname, names.release, names.version);
        const std::string machine = names.machine;
        const char* bits = machine == "x86_64" || machine == "aarch64" ? "64"
                           : machine.size() == 4 && machine[0] == 'i' && machine.substr(2) == "86" ? "32"
                                                                                                    : "";
        text += format("System type: %s-bit Operating System (%s)\n", bits, names.machine);
    }
    text += "\n";
    if (const std::string model = fieldOf("/proc/cpuinfo", "model name", ':'); !model.empty()) {
        text += format("Processor  : %s\n", model.c_str());
        text += format("Identifier : family %s model %s stepping %s\n", fieldOf("/proc/cpuinfo", "cpu family", ':').c_str(),
                       fieldOf("/proc/cpuinfo", "model", ':').c_str(), fieldOf("/proc/cpuinfo", "stepping", ':').c_str());
        text += format("Vendor     : %s\n", fieldOf("/proc/cpuinfo", "vendor_id", ':').c_str());
        text += format("Cores      : %ld\n\n", sysconf(_SC_NPROCESSORS_ONLN));
    }
    // MemTotal is given in kB.
    const double kilobytes = std::strtod(fieldOf("/proc/meminfo", "MemTotal", ':').c_str(), nullptr);
    text += format("Installed memory (RAM): %.2f GB\n", float(kilobytes * 1024.0 * 9.313225746154785e-10));
    std::string user;
    const bool admin = isUserAdministrator(&user);
    text += format("\nUser       : %s\nAdmin      : %s\n", user.c_str(), admin ? "yes" : "no");
    return text;
}

std::string buildHostSection(int maxBlockSize, float sampleRate, const char* interfaceName,
                             const std::string& hostName, const std::string& hostVendor,
                             const std::string& hostVersion) {
    std::string text = "\n-\n- Host\n-\n\n";
    char executable[0x1000] = {};
    const ssize_t length = readlink("/proc/self/exe", executable, sizeof executable - 1);
    text += format("Executable : %s\n\n", length > 0 ? executable : "unknown");
    text += "VERSIONINFO\n";
    auto known = [](const std::string& value) { return value.empty() ? std::string("unknown") : value.substr(0, 255); };
    if (hostName.empty())
        text += "not available!\n\n";
    else
        text += format("Name       : %s\nVendor     : %s\nVersion    : %s\n", known(hostName).c_str(),
                       known(hostVendor).c_str(), known(hostVersion).c_str());
    text += format("MaxBufSize : %i\nSamplerate : %.0f\nInterface  : %s\n", maxBlockSize, double(sampleRate),
                   interfaceName ? interfaceName : "unknown");
    const std::string module = getModulePath();
    text += format("Plug-in    : %s\n\n", module.empty() ? "unknown" : module.c_str());
    return text;
}

std::string buildProductSection(const char* versionText, const std::string& contentRoot, const char* pluginType) {
    return format("-\n- Zonfra Settings\n-\n\nversion: %s\ncontent root: %s\nhosted plugin type: %s\n\n",
                  versionText ? versionText : "", contentRoot.c_str(), pluginType ? pluginType : "");
}

SupportReportOutcome writeSupportReport(const std::string& productSection, const std::string& hostSection) {
    SupportReportOutcome outcome;
    const std::string desktop = getSpecialFolder(kDesktopFolder);
    if (desktop.empty()) return outcome;
    outcome.tellUser = true;
    const std::string system = buildSystemSection();
    outcome.path = desktop + "zonfraQT Support.txt";
    if (!createDirectoryPath(desktop)) return outcome;
    std::ofstream file(outcome.path, std::ios::binary | std::ios::trunc);
    file << productSection << system << hostSection;
    file.close();
    outcome.written = !file.fail();
    return outcome;
}

}  // namespace Core
