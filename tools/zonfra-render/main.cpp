// Renders audio files through the Zonfra plug-in library, as a host would run it.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <new>
#include <string>

#include "AudioFile.h"
#include "FactoryPresets.h"
#include "ParameterValue.h"
#include "PluginHost.h"
#include "RenderOptions.h"
#include "Renderer.h"
#include "framework/parameters/IPluginParameter.h"
#include "framework/parameters/UnitType.h"

namespace {
int fail(const std::string& message) {
    std::fprintf(stderr, "zonfra-render: %s\n", message.c_str());
    return 1;
}

void listParameters(Ondra::OndraOS& effect) {
    std::printf("%-24s %-28s %12s %12s %12s  %s\n", "key", "name", "minimum", "maximum", "default", "current");
    for (int i = 0; i < effect.getParameterCount(); ++i) {
        Ondra::IPluginParameter* p = effect.getParameter(i);
        char current[Ondra::kParameterTextSize];
        p->getDisplayText(p->getValue(), current, Ondra::kDisplayWithUnit);
        std::printf("%-24s %-28s %12g %12g %12g  %s\n", p->getKey(), p->getName(), static_cast<double>(p->getMinimum()),
                    static_cast<double>(p->getMaximum()), static_cast<double>(p->getDefault()), current);
    }
}

// Also through "..", symlinks and hard links: an existing pair is compared by device and inode.
bool sameFile(const std::string& a, const std::string& b) {
    struct stat first {}, second {};
    if (stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0)
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::weakly_canonical(a, error);
    return !error && canonical == std::filesystem::weakly_canonical(b, error) && !error;
}

void showProgress(double fraction) {
    const int width = 40;
    const int filled = static_cast<int>(fraction * width);
    std::fprintf(stderr, "\r[%.*s%*s] %3d%%", filled, "########################################", width - filled, "",
                 static_cast<int>(fraction * 100));
    if (fraction >= 1.0) std::fprintf(stderr, "\n");
}

int render(const RenderOptions& options) {
    PluginHost host;
    host.setTempo(options.tempo);
    const std::string loadError = host.load(options.plugin.empty() ? ZONFRA_PLUGIN_PATH : options.plugin);
    if (!loadError.empty()) return fail(loadError);
    Ondra::OndraOS& effect = *host.effect();

    if (options.listParams) {
        listParameters(effect);
        return 0;
    }
    if (options.listPresets) {
        for (const std::string& name : factoryPresetNames()) std::printf("%s\n", name.c_str());
        return 0;
    }

    if (sameFile(options.input, options.output) || sameFile(options.input, partialPathOf(options.output)))
        return fail("writing '" + options.output + "' would overwrite the input '" + options.input +
                    "'; give another output path");
    StereoAudio input;
    std::string warning;
    const std::string readError = readAudio(options.input, input, &warning);
    if (!readError.empty()) return fail(readError);
    if (!warning.empty()) std::fprintf(stderr, "zonfra-render: warning: %s\n", warning.c_str());
    if (!options.preset.empty()) {
        std::vector<uint8_t> chunk;
        const std::string presetError = loadPresetChunk(options.preset, chunk);
        if (!presetError.empty()) return fail(presetError);
        // The effect reads the block in place.
        if (!effect.setChunk(chunk.data(), static_cast<int>(chunk.size())))
            return fail("preset '" + options.preset + "' could not be loaded: its state block is damaged");
    }
    for (const auto& [key, value] : options.settings) {
        Ondra::IPluginParameter* p = effect.findParameter(key.c_str());
        if (!p) return fail("unknown parameter key '" + key + "' (see --list-params)");
        const std::string valueError = setParameterFromUser(*p, value);
        if (!valueError.empty()) return fail("bad value for " + key + ": " + valueError);
    }

    RenderSettings settings{options.tempo, options.block, options.tailSeconds};
    const double seconds = static_cast<double>(input.left.size()) / input.sampleRate;
    const bool showBar = isatty(STDERR_FILENO) && seconds > 20.0;
    const StereoAudio output = renderThrough(effect, input, settings, showBar ? showProgress : std::function<void(double)>{});
    // A file of NaN is worse than none.
    for (const std::vector<float>* channel : {&output.left, &output.right}) {
        const auto bad = std::find_if(channel->begin(), channel->end(), [](float v) { return !std::isfinite(v); });
        if (bad != channel->end())
            return fail("the plug-in gave a sample that is not a number at frame " +
                        std::to_string(bad - channel->begin()) + " at " + std::to_string(input.sampleRate) +
                        " Hz; nothing was written");
    }
    const std::string writeError = writeAudio(options.output, output);
    if (!writeError.empty()) return fail(writeError);
    return 0;
}
}  // namespace

int main(int argc, char** argv) {
    RenderOptions options;
    const std::string argumentError = parseRenderOptions(argc, argv, options);
    if (!argumentError.empty()) {
        std::fprintf(stderr, "zonfra-render: %s\n%s", argumentError.c_str(), renderUsage());
        return 2;
    }
    if (options.help) {
        std::printf("%s", renderUsage());
        return 0;
    }
    try {
        return render(options);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory to render '" + options.input + "'");
    }
}
