// Pushes a generated test loop through the plug-in, loaded the way a host loads it, and writes
// the result as a WAV file.
#include <dlfcn.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "WavWriter.h"
#include "framework/plugin/ChunkedProcess.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/OndraPluginInfo.h"

namespace {
constexpr int kRate = 44100;
constexpr int kBlock = 512;

// Two bars of a saw bass line with a little noise: rich enough that a filter is audible.
void makeLoop(std::vector<float>& left, std::vector<float>& right, int seconds) {
    const double notes[8] = {55.0, 55.0, 65.41, 73.42, 55.0, 82.41, 73.42, 65.41};
    const size_t frames = static_cast<size_t>(seconds) * kRate;
    left.resize(frames);
    right.resize(frames);
    uint32_t noise = 22222;
    double phase = 0;
    for (size_t i = 0; i < frames; ++i) {
        const double t = static_cast<double>(i) / kRate;
        const int step = static_cast<int>(t * 4.0) % 8;
        phase += notes[step] / kRate;
        phase -= std::floor(phase);
        const double envelope = std::exp(-6.0 * (t * 4.0 - std::floor(t * 4.0)));
        noise = noise * 1664525u + 1013904223u;
        const double white = (static_cast<double>(noise >> 8) / 8388608.0 - 1.0) * 0.05;
        const double saw = (2.0 * phase - 1.0) * envelope * 0.6;
        left[i] = static_cast<float>(saw + white);
        right[i] = static_cast<float>(saw - white);
    }
}
}  // namespace

int main(int argc, char** argv) {
    const std::string output = argc > 1 ? argv[1] : "zonfra-demo.wav";
    const std::string pluginPath = argc > 2 ? argv[2] : ZONFRA_PLUGIN_PATH;
    void* library = dlopen(pluginPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "zonfra-demo: cannot load %s: %s\n", pluginPath.c_str(), dlerror());
        return 1;
    }
    using GetList = Ondra::OndraPluginList* (*)();
    using Create = Ondra::OndraOS* (*)(Ondra::OndraCallback*, int);
    auto getList = reinterpret_cast<GetList>(dlsym(library, "getOndraPluginListPTR"));
    auto create = reinterpret_cast<Create>(dlsym(library, "createOndraInstance"));
    if (!getList || !create || getList()->getCount() < 1) {
        std::fprintf(stderr, "zonfra-demo: %s is not a Zonfra plug-in library\n", pluginPath.c_str());
        return 1;
    }
    Ondra::OndraCallback host;
    Ondra::OndraOS* effect = create(&host, getList()->get(0)->uniqueId);
    if (!effect) {
        std::fprintf(stderr, "zonfra-demo: the plug-in made no instance\n");
        return 1;
    }
    effect->setSampleRate(kRate);
    effect->setBlockSize(kBlock);
    if (auto* p = effect->findParameter("LOWPASSFREQ")) p->setValue(900);
    if (auto* p = effect->findParameter("LOWPASSSLOPE")) p->setValue(3);
    if (auto* p = effect->findParameter("INPUTGAIN")) p->setValue(1.2f);

    std::vector<float> left, right;
    makeLoop(left, right, 4);
    const int latency = effect->getInitialDelay();
    left.resize(left.size() + static_cast<size_t>(latency), 0.0f);
    right.resize(right.size() + static_cast<size_t>(latency), 0.0f);
    double position = 0;
    for (size_t at = 0; at < left.size(); at += kBlock) {
        const int n = static_cast<int>(std::min<size_t>(kBlock, left.size() - at));
        Ondra::OndraAudioBlock block;
        block.in[0].refer(left.data() + at, right.data() + at, n);
        block.out[0].refer(left.data() + at, right.data() + at, n);
        block.inputCount = block.outputCount = 1;
        block.tempo = 120;
        block.transportPlaying = true;
        block.samplePos = position;
        block.ppqPos = position / (0.5 * kRate);
        Ondra::processInChunks(*effect, block, n, Ondra::ChunkingRules{});
        position += n;
    }
    delete effect;
    // The plug-in reports its latency; drop it so the output lines up with the loop.
    left.erase(left.begin(), left.begin() + latency);
    right.erase(right.begin(), right.begin() + latency);
    if (!writeStereoWav(output, left, right, kRate)) {
        std::fprintf(stderr, "zonfra-demo: cannot write %s\n", output.c_str());
        return 1;
    }
    std::printf("%s\n", output.c_str());
    return 0;
}
