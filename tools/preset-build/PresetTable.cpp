#include "PresetTable.h"

#include <sstream>

namespace {
std::string trim(const std::string& s) {
    const size_t first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) return "";
    const size_t last = s.find_last_not_of(" \t\r");
    return s.substr(first, last - first + 1);
}
}  // namespace

std::string parsePresetTable(const std::string& text, PresetTable& table) {
    std::istringstream in(text);
    std::string raw;
    int number = 0;
    while (std::getline(in, raw)) {
        ++number;
        const std::string line = trim(raw);
        const std::string where = "line " + std::to_string(number) + ": ";
        if (line.empty() || line[0] == '#') continue;
        if (line.front() == '[') {
            if (line.back() != ']') return where + "a section header ends with ']'";
            const std::string title = trim(line.substr(1, line.size() - 2));
            PresetEntry entry;
            entry.line = number;
            const size_t slash = title.find('/');
            if (slash == std::string::npos) {
                entry.name = title;
            } else {
                entry.folder = trim(title.substr(0, slash));
                entry.name = trim(title.substr(slash + 1));
            }
            if (entry.name.empty()) return where + "a preset needs a name";
            table.entries.push_back(entry);
            continue;
        }
        if (table.entries.empty()) return where + "a value before the first section";
        const size_t equals = line.find(" = ");
        if (equals == std::string::npos) return where + "expected 'KEY = value'";
        const std::string key = trim(line.substr(0, equals));
        const std::string value = trim(line.substr(equals + 3));
        if (key.empty() || value.empty()) return where + "expected 'KEY = value'";
        table.entries.back().values.emplace_back(key, value);
    }
    return "";
}
