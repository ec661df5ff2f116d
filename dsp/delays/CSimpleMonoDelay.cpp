#include "dsp/delays/CSimpleMonoDelay.h"

#include <algorithm>

namespace DSP::DELAY {

void CSimpleMonoDelay::setDelaySamples(int samples) {
    setSamples = std::max(samples, 0);
    setRate = sampleRate;
    resize(setSamples);
}

void CSimpleMonoDelay::resize(int samples) {
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
    // The delay keeps its length in time, truncated to whole samples.
    if (setRate > 0) resize(static_cast<int>(static_cast<float>(setSamples) * (rate / setRate)));
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

// As tick on every sample, in pieces no longer than the delay: within a piece no sample is read
// that the piece itself writes, so all of its outputs can be read before its inputs go in.
void CSimpleMonoDelay::exchange(float* io, unsigned count) {
    if (!buffer || delaySamples == 0) return;
    float* ring = buffer.get();
    int remaining = static_cast<int>(count);
    float incoming[kPiece];
    while (remaining > 0) {
        int read = position - delaySamples;
        if (read < 0) read += bufferLength;
        const int piece = std::min({remaining, delaySamples, kPiece, bufferLength - position, bufferLength - read});
        std::copy(io, io + piece, incoming);
        std::copy(ring + read, ring + read + piece, io);
        for (int k = 0; k < piece; ++k) ring[position + k] = incoming[k] + feedback * ring[position + k];
        position += piece;
        if (position == bufferLength) position = 0;
        io += piece;
        remaining -= piece;
    }
}

void CSimpleMonoDelay::writeOnly(const float* in, unsigned count) {
    for (unsigned i = 0; i < count; ++i) tick(in[i]);
}

}  // namespace DSP::DELAY
