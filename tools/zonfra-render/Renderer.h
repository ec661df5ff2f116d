#pragma once
#include <functional>

#include "AudioFile.h"
#include "framework/plugin/OndraOS.h"

struct RenderSettings {
    double tempo = 120.0;
    int block = 512;
    double tailSeconds = 2.0;
};

// Runs `input` through `effect` as a host would (blocks cut into control chunks, transport
// playing and advancing) and returns the output aligned with the input: the effect's latency is
// removed and the tail is kept. `progress` hears the fraction done now and then.
StereoAudio renderThrough(Ondra::OndraOS& effect, const StereoAudio& input, const RenderSettings& settings,
                          const std::function<void(double)>& progress = {});
