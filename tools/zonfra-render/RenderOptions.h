#pragma once
#include <string>
#include <utility>
#include <vector>

struct RenderOptions {
    std::string input, output;
    std::string preset;  // factory preset name or an .fxp file
    std::vector<std::pair<std::string, std::string>> settings;  // KEY=VALUE in the order given
    double tempo = 120.0;
    int block = 512;
    double tailSeconds = 2.0;
    bool listParams = false;
    bool listPresets = false;
    bool help = false;
    std::string plugin;
};

// Empty on success, else one line that says what is wrong with the arguments.
std::string parseRenderOptions(int argc, char** argv, RenderOptions& options);
const char* renderUsage();
