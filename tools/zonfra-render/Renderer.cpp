#include "Renderer.h"

#include <algorithm>

#include "framework/plugin/ChunkedProcess.h"

StereoAudio renderThrough(Ondra::OndraOS& effect, const StereoAudio& input, const RenderSettings& settings,
                          const std::function<void(double)>& progress) {
    effect.setSampleRate(static_cast<float>(input.sampleRate));
    effect.setBlockSize(settings.block);
    effect.reset();
    const size_t latency = static_cast<size_t>(std::max(effect.getInitialDelay(), 0));
    const size_t tail = static_cast<size_t>(settings.tailSeconds * input.sampleRate + 0.5);
    const size_t frames = input.left.size() + tail;

    StereoAudio work;
    work.sampleRate = input.sampleRate;
    work.format = input.format;
    work.left.assign(frames + latency, 0.0f);
    work.right.assign(frames + latency, 0.0f);
    std::copy(input.left.begin(), input.left.end(), work.left.begin());
    std::copy(input.right.begin(), input.right.end(), work.right.begin());

    const double samplesPerBeat = 60.0 / settings.tempo * input.sampleRate;
    const size_t step = static_cast<size_t>(settings.block);
    for (size_t at = 0; at < work.left.size(); at += step) {
        const int n = static_cast<int>(std::min(step, work.left.size() - at));
        Ondra::OndraAudioBlock block;
        block.in[0].refer(work.left.data() + at, work.right.data() + at, n);
        block.out[0].refer(work.left.data() + at, work.right.data() + at, n);
        block.inputCount = block.outputCount = 1;
        block.tempo = static_cast<float>(settings.tempo);
        block.transportPlaying = true;
        block.transportChanged = at == 0;
        block.samplePos = static_cast<double>(at);
        block.ppqPos = static_cast<double>(at) / samplesPerBeat;
        Ondra::processInChunks(effect, block, n, Ondra::ChunkingRules{});
        if (progress && (at / step) % 64 == 0) progress(static_cast<double>(at) / static_cast<double>(work.left.size()));
    }
    if (progress) progress(1.0);
    work.left.erase(work.left.begin(), work.left.begin() + static_cast<long>(latency));
    work.right.erase(work.right.begin(), work.right.begin() + static_cast<long>(latency));
    return work;
}
