#include "framework/plugin/ChunkedProcess.h"

#include <algorithm>
#include <cstdint>

namespace Ondra {

int samplesToNextBeat(double ppqPos, float tempo, float sampleRate) {
    const int period = static_cast<int>((60.0 / std::max(tempo, 10.0f)) * sampleRate);
    if (period <= 0) return 0;
    const int64_t position = static_cast<int64_t>(ppqPos * period);
    const int64_t within = ((position % period) + period) % period;
    return std::max(0, static_cast<int>(period - within));
}

void processInChunks(OndraOS& plugin, OndraAudioBlock& block, int hostSamples, const ChunkingRules& rules) {
    int remaining = std::max(hostSamples, 0);
    int chunk = plugin.getControlChunkSize();
    if (chunk <= 0 || chunk > remaining) chunk = remaining;
    if (rules.wholeBlockBelowTwoChunks && remaining < 2 * chunk) chunk = remaining;

    const float rate = rules.positionSampleRate > 0 ? rules.positionSampleRate : plugin.getSampleRate();
    block.samplesToNextBeat = samplesToNextBeat(block.ppqPos, block.tempo, rate);
    const double samplesPerBeat = (60.0 / block.tempo) * rate;
    if (rules.sliceAutomation && plugin.hasQueuedAutomation()) plugin.beginAutomationBlock(block, remaining);

    while (remaining > 0) {
        int now = std::min(chunk, remaining);
        if (rules.sliceAutomation) {
            if (rules.whileSlicing) *rules.whileSlicing = true;
            plugin.sliceAutomation(now);
            if (rules.whileSlicing) *rules.whileSlicing = false;
        }
        block.numSamples = now;
        plugin.process(block);
        block.advanceInputs(now);
        block.advanceOutputs(now);
        block.samplesToNextBeat -= now;
        block.samplePos += now;
        block.ppqPos += now / samplesPerBeat;
        remaining -= now;
    }
    plugin.endAutomationBlock();
}

}  // namespace Ondra
