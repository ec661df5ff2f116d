#include "effect/LatencyDelay.h"

#include <cstring>

namespace {
void delayChannel(float* ring, int length, float* scratch, float* channel, int n) {
    const size_t bytes = sizeof(float);
    std::memcpy(scratch, channel, static_cast<size_t>(n) * bytes);
    if (length < n) {
        std::memcpy(channel, ring, static_cast<size_t>(length) * bytes);
        std::memcpy(channel + length, scratch, static_cast<size_t>(n - length) * bytes);
        std::memcpy(ring, scratch + (n - length), static_cast<size_t>(length) * bytes);
    } else {
        std::memcpy(channel, ring, static_cast<size_t>(n) * bytes);
        std::memmove(ring, ring + n, static_cast<size_t>(length - n) * bytes);
        std::memcpy(ring + (length - n), scratch, static_cast<size_t>(n) * bytes);
    }
}
}  // namespace

void delayInPlace(Ondra::CNChannelBuffer& ring, Ondra::CNChannelBuffer& scratch, float* left, float* right,
                  int samples) {
    const int length = ring.getSamples();
    if (length <= 0 || samples <= 0 || ring.getChannelCount() < 2 || scratch.getSamples() < samples) return;
    delayChannel(ring.channel(0), length, scratch.channel(0), left, samples);
    delayChannel(ring.channel(1), length, scratch.channel(0), right, samples);
}
