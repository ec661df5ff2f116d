#pragma once
#include <atomic>
#include <vector>

#include "dsp/delays/CSimpleStereoDelay.h"
#include "dsp/effects/CFX_Module.h"

namespace DSP::FX {

// A stereo-linked look-ahead limiter with a ceiling of 1.0 and manual or automatic release. Its
// delay line is the plug-in's only latency.
class CFXLimiter : public CFX_Module {
public:
    CFXLimiter();
    // Allocates: call from the main thread, as construction and rate changes do.
    void setLookahead(float ms);
    void setBlockSize(int samples) override;
    // Settings by number: 3 release in ms (automatic at 1 and below), 4 output gain, linear,
    // 5 bypass from 0.5 up. The named calls below are the same settings.
    void setParam(int index, float value);
    void setReleaseMs(float ms) { setParam(3, ms); }
    void setOutputGain(float linear) { setParam(4, linear); }
    void setBypassed(bool on) { setParam(5, on ? 1.0f : 0.0f); }
    void setSampleRate(float rate) override;
    void process(float* left, float* right, unsigned count);
    void reset() override;
    int getDelaySamples() const { return delay.getDelaySamples(); }
    int getPeakRingLength() const { return peakRingLength; }
    // Safe to read from the editor's thread.
    float getMeterGain() const { return meterGain.load(std::memory_order_relaxed); }
    float getReleaseCoefficient() const { return releaseCoefficient; }
    bool isAutomaticRelease() const { return releaseMs <= 1.0f; }

    DELAY::CSimpleStereoDelay delay;

private:
    void updateCoefficients();
    void detect(const float* left, const float* right, unsigned count);
    float ringMaximum() const;
    void setRingPeakFromSquare(float square);

    float attackCoefficient = 1, releaseCoefficient = 1;
    const float threshold = 1.0f;
    const float ratio = 0.0001f;
    const float attackMs = 1.0f;
    float releaseMs = 50.0f;
    float outputGain = 1.0f;
    float envelope = 0;
    float gainBelowThreshold = 1.0f;
    float gainScale = 1.0f;
    std::vector<float> peakRing;
    int peakRingPos = 0, peakRingLength = 0;
    std::atomic<float> meterGain{1.0f};
    bool bypassed = false;
    float makeup = 1.0f;
    float ringPeak = 0;
    std::vector<float> peakBuffer;
    float autoReleaseMs = 0;
    float autoRise = 1.0f;
    float autoFall;
};

}  // namespace DSP::FX
