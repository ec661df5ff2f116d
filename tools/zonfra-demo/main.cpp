// Writes the demo's test loop: a deterministic bass line with a little noise, made here so the
// demo needs no third-party audio.
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "WavWriter.h"

namespace {
constexpr int kRate = 44100;

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
    if (argc != 2) {
        std::fprintf(stderr, "usage: zonfra-demo OUT.wav\n");
        return 2;
    }
    std::vector<float> left, right;
    makeLoop(left, right, 8);
    if (!writeStereoWav(argv[1], left, right, kRate)) {
        std::fprintf(stderr, "zonfra-demo: cannot write %s\n", argv[1]);
        return 1;
    }
    std::printf("%s\n", argv[1]);
    return 0;
}
