// Renders audio files through the Zonfra plug-in library, as a host would run it.
#include <unistd.h>

#include <cstdio>
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

void showProgress(double fraction) {
    const int width = 40;
    const int filled = static_cast<int>(fraction * width);
    std::fprintf(stderr, "\r[%.*s%*s] %3d%%", filled, "########################################", width - filled, "",
                 static_cast<int>(fraction * 100));
    if (fraction >= 1.0) std::fprintf(stderr, "\n");
}
}  // namespace

int main(int argc, char** argv) {
    RenderOptions options;
    const std::string argumentError = parseRenderOptions(argc, argv, options);
    if (!argumentError.empty()) {
        std::fprintf(stderr, "zonfra-render: %s\n%s", argumentError.c_str(), renderUsage());
        return 2;
    }
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

    StereoAudio input;
    const std::string readError = readAudio(options.input, input);
    if (!readError.empty()) return fail(readError);
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
    const std::string writeError = writeAudio(options.output, output);
    if (!writeError.empty()) return fail(writeError);
    return 0;
}
