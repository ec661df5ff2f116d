#pragma once
#include <string>
#include <utility>
#include <vector>

// The factory presets as a readable table: sections "[Folder/Name]" (or "[Init Preset]") with
// "KEY = value" lines. A value is a plain number or a parameter's display text ("1/8", "Saw").
// Every preset starts from the Init Preset's values.
struct PresetEntry {
    std::string folder;  // empty for the Init Preset
    std::string name;
    std::vector<std::pair<std::string, std::string>> values;  // as written, in order
    int line = 0;
};

struct PresetTable {
    std::vector<PresetEntry> entries;
};

// Empty on success, else "line N: what is wrong".
std::string parsePresetTable(const std::string& text, PresetTable& table);
