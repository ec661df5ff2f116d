#pragma once
// Placeholder until the limiter lands: a pure delay of the look-ahead length, so that every path
// of the effect is already equally late.
#include <algorithm>
#include <cstddef>
#include <vector>
namespace DSP::FX {
class CFXLimiter {
public:
    CFXLimiter() { setLookahead(5.0f); }
    void setLookahead(float ms) {
        lookaheadMs = ms;
        resize();
    }
    void setBlockSize(int) {}
    void setParam(int, float) {}
    void setSampleRate(float rate) {
        if (rate <= 0 || rate == sampleRate) return;
        sampleRate = rate;
        resize();
    }
    void reset() { std::fill(ring.begin(), ring.end(), Frame{}); }
    void process(float* left, float* right, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            Frame in{left[i], right[i]};
            left[i] = ring[pos].l;
            right[i] = ring[pos].r;
            ring[pos] = in;
            pos = pos + 1 == ring.size() ? 0 : pos + 1;
        }
    }
    int getDelaySamples() const { return static_cast<int>(ring.size()); }

private:
    struct Frame { float l = 0, r = 0; };
    void resize() {
        // The look-ahead keeps its length in time: 221 samples at 44.1 kHz, 240 at 48, 481 at 96.
        const int base = static_cast<int>(lookaheadMs * 0.001f * 44100.0f + 1.0f);
        ring.assign(static_cast<size_t>(static_cast<double>(base) * sampleRate / 44100.0), Frame{});
        pos = 0;
    }
    float lookaheadMs = 5.0f;
    float sampleRate = 44100.0f;
    std::vector<Frame> ring;
    size_t pos = 0;
};
}  // namespace DSP::FX
