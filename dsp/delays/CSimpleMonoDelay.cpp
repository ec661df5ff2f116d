#include "dsp/delays/CSimpleMonoDelay.h"

#include <algorithm>

namespace DSP::DELAY {

void CSimpleMonoDelay::setDelaySamples(int samples) {
    if (samples < 0) samples = 0;
    delaySamples = samples;
    if (samples > capacity && samples > 0) {
        bufferLength = 2 * samples + 1;
        buffer = std::make_unique<float[]>(static_cast<size_t>(bufferLength));
        capacity = samples;
    }
    position = 0;
}

void CSimpleMonoDelay::setSampleRate(float rate) {
    if (rate == 0) {
        sampleRate = rate;
        return;
    }
    // The delay keeps its length in time; each change truncates.
    const float q = rate / sampleRate;
    setDelaySamples(static_cast<int>(static_cast<float>(delaySamples) * q));
    sampleRate = rate;
}

void CSimpleMonoDelay::reset() {
    if (buffer) std::fill(buffer.get(), buffer.get() + bufferLength, 0.0f);
}

void CSimpleMonoDelay::setDelayMs(float ms) { setDelaySamples(static_cast<int>(ms * sampleRate * 0.001f) + 1); }

float CSimpleMonoDelay::getDelayMs() const {
    return static_cast<float>(static_cast<int>(static_cast<float>(delaySamples) / sampleRate * 1000.0f));
}

float CSimpleMonoDelay::tick(float x) {
    if (!buffer || delaySamples == 0) return x;
    int read = position - delaySamples;
    if (read < 0) read += bufferLength;
    buffer[static_cast<size_t>(position)] = x + feedback * buffer[static_cast<size_t>(position)];
    const float y = buffer[static_cast<size_t>(read)];
    if (++position == bufferLength) position = 0;
    return y;
}

void CSimpleMonoDelay::exchange(float* io, unsigned count) {
    for (unsigned i = 0; i < count; ++i) io[i] = tick(io[i]);
}

void CSimpleMonoDelay::writeOnly(const float* in, unsigned count) {
    for (unsigned i = 0; i < count; ++i) tick(in[i]);
}

}  // namespace DSP::DELAY
