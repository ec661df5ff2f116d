#pragma once
#include <mutex>

namespace Ondra {

// A block of aligned float channels.
class CNChannelBuffer {
public:
    CNChannelBuffer() = default;
    CNChannelBuffer(const CNChannelBuffer&) = delete;
    CNChannelBuffer& operator=(const CNChannelBuffer&) = delete;
    virtual ~CNChannelBuffer();

    // Frees and reallocates every channel, zeroed.
    void resize(int samples, int channels);
    void clear();
    void clear(int samples);
    void clear(int from, int samples);
    void read(float* const* destination, int destinationChannels, int samples) const;
    void write(const float* const* source, int sourceChannels, int samples);
    bool tryLock() { return lock.try_lock(); }
    void unlock() { lock.unlock(); }

    float* channel(int index) const { return index >= 0 && index < channelCount ? channels[index] : nullptr; }
    int getChannelCount() const { return channelCount; }
    int getSamples() const { return samplesPerChannel; }

private:
    void release();

    float** channels = nullptr;
    int channelCount = 0;
    int samplesPerChannel = 0;
    std::mutex lock;
};

}  // namespace Ondra
