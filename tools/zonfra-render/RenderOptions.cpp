#include "RenderOptions.h"

#include <cstdlib>
#include <cstring>

#include "AudioFile.h"

static_assert(kLowestSampleRate == 8000 && kHighestSampleRate == 768000, "the usage text states this range");

const char* renderUsage() {
    return "usage: zonfra-render IN OUT [--preset NAME|FILE.fxp] [--set KEY=VALUE ...] [--tempo BPM]\n"
           "                     [--block N] [--tail SECONDS] [--plugin LIBRARY]\n"
           "       zonfra-render --list-params | --list-presets | --help\n"
           "IN is a mono or stereo WAV, FLAC or AIFF file at 8 kHz to 768 kHz (8000..768000 Hz inclusive);\n"
           "OUT is written at the same rate, in the format its extension names (.wav, .flac, .aif, .aiff).\n";
}

namespace {
bool number(const char* text, double& out) {
    char* end = nullptr;
    out = std::strtod(text, &end);
    return end != text && *end == 0;
}
}  // namespace

std::string parseRenderOptions(int argc, char** argv, RenderOptions& options) {
    std::vector<std::string> positional;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&](const char* name) -> const char* {
            if (i + 1 >= argc) return nullptr;
            (void)name;
            return argv[++i];
        };
        if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "--list-params") {
            options.listParams = true;
        } else if (arg == "--list-presets") {
            options.listPresets = true;
        } else if (arg == "--preset" || arg == "--plugin" || arg == "--set" || arg == "--tempo" || arg == "--block" ||
                   arg == "--tail") {
            const char* v = value(arg.c_str());
            if (!v) return arg + " needs a value";
            if (!*v) return arg + " needs a value, not an empty text";
            double n = 0;
            if (arg == "--preset") {
                options.preset = v;
            } else if (arg == "--plugin") {
                options.plugin = v;
            } else if (arg == "--set") {
                const char* equals = std::strchr(v, '=');
                if (!equals || equals == v) return std::string("--set takes KEY=VALUE, not '") + v + "'";
                options.settings.emplace_back(std::string(v, equals), std::string(equals + 1));
            } else if (!number(v, n)) {
                return arg + " takes a number, not '" + v + "'";
            } else if (arg == "--tempo") {
                if (!(n > 0 && n <= 999)) return "--tempo must lie above 0 and up to 999 BPM";
                options.tempo = n;
            } else if (arg == "--block") {
                if (!(n >= 1 && n <= 65536) || n != static_cast<int>(n)) return "--block must be a whole number from 1 to 65536";
                options.block = static_cast<int>(n);
            } else {
                if (!(n >= 0 && n <= 600)) return "--tail must lie from 0 to 600 seconds";
                options.tailSeconds = n;
            }
        } else if (arg.size() > 1 && arg[0] == '-' && arg != "-") {
            return "unknown option " + arg;
        } else {
            positional.push_back(arg);
        }
    }
    if (options.help) return "";
    if (options.listParams || options.listPresets) return positional.empty() ? "" : "the list options take no files";
    if (positional.size() != 2) return "expected an input and an output file";
    options.input = positional[0];
    options.output = positional[1];
    return "";
}
