// Turns the factory preset table into FXP files: zonfra-preset-build TABLE OUT_FOLDER
#include <cstdio>
#include <fstream>
#include <sstream>

#include "PresetTable.h"
#include "PresetWriter.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: zonfra-preset-build TABLE OUT_FOLDER\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) {
        std::fprintf(stderr, "zonfra-preset-build: can't read %s\n", argv[1]);
        return 1;
    }
    std::stringstream text;
    text << in.rdbuf();
    PresetTable table;
    std::string error = parsePresetTable(text.str(), table);
    if (error.empty()) error = writeFactoryPresets(table, argv[2]);
    if (!error.empty()) {
        std::fprintf(stderr, "zonfra-preset-build: %s: %s\n", argv[1], error.c_str());
        return 1;
    }
    std::printf("zonfra-preset-build: %zu presets\n", table.entries.size());
    return 0;
}
