#include "framework/plugin/CNChannelBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace Ondra {

CNChannelBuffer::~CNChannelBuffer() { release(); }

void CNChannelBuffer::release() {
    for (int c = 0; c < channelCount; ++c) std::free(channels[c]);
    delete[] channels;
    channels = nullptr;
    channelCount = samplesPerChannel = 0;
}

void CNChannelBuffer::resize(int samples, int channelsWanted) {
    release();
    if (samples < 0 || channelsWanted <= 0) return;
    channels = new float*[channelsWanted]();
    const size_t bytes = (static_cast<size_t>(samples) * sizeof(float) + 31) / 32 * 32;
    for (int c = 0; c < channelsWanted; ++c) {
        channels[c] = static_cast<float*>(std::aligned_alloc(32, bytes == 0 ? 32 : bytes));
        if (channels[c]) std::memset(channels[c], 0, bytes == 0 ? 32 : bytes);
    }
    channelCount = channelsWanted;
    samplesPerChannel = samples;
}

void CNChannelBuffer::clear() { clear(0, samplesPerChannel); }

void CNChannelBuffer::clear(int samples) { clear(0, samples); }

void CNChannelBuffer::clear(int from, int samples) {
    from = std::clamp(from, 0, samplesPerChannel);
    samples = std::clamp(samples, 0, samplesPerChannel - from);
    for (int c = 0; c < channelCount; ++c)
        if (channels[c]) std::memset(channels[c] + from, 0, static_cast<size_t>(samples) * sizeof(float));
}

void CNChannelBuffer::read(float* const* destination, int destinationChannels, int samples) const {
    samples = std::clamp(samples, 0, samplesPerChannel);
    const int n = std::min(destinationChannels, channelCount);
    for (int c = 0; c < n; ++c)
        if (destination[c] && channels[c])
            std::memcpy(destination[c], channels[c], static_cast<size_t>(samples) * sizeof(float));
}

void CNChannelBuffer::write(const float* const* source, int sourceChannels, int samples) {
    samples = std::clamp(samples, 0, samplesPerChannel);
    const int n = std::min(sourceChannels, channelCount);
    for (int c = 0; c < n; ++c)
        if (source[c] && channels[c])
            std::memcpy(channels[c], source[c], static_cast<size_t>(samples) * sizeof(float));
}

}  // namespace Ondra
