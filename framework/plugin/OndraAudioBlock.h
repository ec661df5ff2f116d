#pragma once
#include <cstdint>

#include "dsp/StereoBuffer.h"

namespace Ondra {

// The record of one `process` call, filled by an adapter for each host call.
struct OndraAudioBlock {
    static constexpr int kMaxPairs = 24;

    DSP::StereoBuffer in[kMaxPairs];
    DSP::StereoBuffer out[kMaxPairs];
    int32_t inputCount = 0;
    int32_t outputCount = 0;
    int32_t numSamples = 0;
    double samplePos = 0;
    double ppqPos = 0;
    double barStartPos = 0;
    float tempo = 0;
    int32_t samplesToNextBeat = 0;
    bool transportChanged = false;
    bool transportPlaying = false;
    bool cycleActive = false;
    bool recording = false;
    bool automationWriting = false;
    bool automationReading = false;

    void advanceInputs(int samples) {
        for (int i = 0; i < inputCount && i < kMaxPairs; ++i) in[i].advance(samples);
    }
    void advanceOutputs(int samples) {
        for (int i = 0; i < outputCount && i < kMaxPairs; ++i) out[i].advance(samples);
    }
};

}  // namespace Ondra
