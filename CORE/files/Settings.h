#pragma once
#include <string>

// Two-level store of small text settings: the user's level first, then the machine's. On Linux a
// key is a folder under $XDG_CONFIG_HOME (user) and the first of $XDG_CONFIG_DIRS (machine), and
// its values live in one "settings" file there.
namespace Core {

// "MORVANDEL" and "zonfraQT" give "MORVANDEL/zonfraQT".
std::string makeKeyName(const char* vendor, const char* product);

// Writes atomically: readers see the old file or the new one, never a half-written one.
bool writeSetting(const std::string& key, const std::string& name, const std::string& value);

// User level, else the machine's value (copied to the user level), else `fallback` (written to the
// user level when given). True when a stored value was found.
bool readSetting(const std::string& key, const std::string& name, std::string& value, const char* fallback);

std::string userSettingsFile(const std::string& key);
std::string machineSettingsFile(const std::string& key);

}  // namespace Core
