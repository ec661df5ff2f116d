#pragma once
#include <string>

// The support report: a text file on the desktop that a user sends to support. The caller (the
// effect) supplies its own section and what it knows of the host; the machine is described here.
namespace Core {

// Local time, the system's name and kernel, processor, memory, and the user with their rights.
std::string buildSystemSection();

// The host as the adapter knows it, the audio settings, the interface (VST2, VST3, embedding) and
// where the plug-in lies. A null `interfaceName` reads "unknown"; an empty `hostName` marks the
// host's version block as not available.
std::string buildHostSection(int maxBlockSize, float sampleRate, const char* interfaceName,
                             const std::string& hostName, const std::string& hostVendor,
                             const std::string& hostVersion);

// Root, or a member of an administering group (sudo, wheel, adm, admin) in the process's present
// groups. Fills `userName` when given.
bool isUserAdministrator(std::string* userName);

// The effect's own section: version, content root (the preset folder) and plug-in type.
std::string buildProductSection(const char* versionText, const std::string& contentRoot, const char* pluginType);

struct SupportReportOutcome {
    bool tellUser = false;  // false only when there is no desktop folder
    bool written = false;
    std::string path;
    const char* title = "Support Request";
    const char* text = "A support file (zonfraQT Support.txt) has been created on your desktop.\n";
    const char* button = "Thank you";
};

// Writes product, system and host sections, in this order, to "zonfraQT Support.txt" on the
// desktop. The editor shows `title`, `text` and `button` when `tellUser` is set, also when the
// file couldn't be written.
SupportReportOutcome writeSupportReport(const std::string& productSection, const std::string& hostSection);

}  // namespace Core
