#pragma once
#include <memory>

#include "dsp/delays/CMonoDelayBase.h"

namespace DSP::DELAY {

// A plain delay line: a sample comes out exactly `delaySamples` ticks after it went in. The
// buffer only grows; shrinking keeps it.
class CSimpleMonoDelay : public CMonoDelayBase {
public:
    void setSampleRate(float rate) override;
    void reset() override;
    void setDelayMs(float ms) override;
    void setDelaySamples(int samples) override;
    int getDelaySamples() const override { return delaySamples; }
    float getDelayMs() const override;
    virtual float tick(float x);
    // Writes the block and hands back the delayed one, in place.
    virtual void exchange(float* io, unsigned count);
    virtual void writeOnly(const float* in, unsigned count);
    void tick(const float* in, float* out) override { *out = tick(*in); }
    int getCapacity() const { return capacity; }

private:
    static constexpr int kPiece = 64;

    void resize(int samples);

    std::unique_ptr<float[]> buffer;
    int position = 0;
    int bufferLength = 0;
    int delaySamples = 0;
    // The length as last set and the rate it was set at: every rate change scales from these, so
    // that a way there and back ends where it began.
    int setSamples = 0;
    float setRate = 0;
    int capacity = 0;
    float feedback = 0;
};

}  // namespace DSP::DELAY
