#pragma once
#include "dsp/StereoBuffer.h"
#include "dsp/effects/CDistortion.h"
#include "dsp/effects/CFXLimiter.h"
#include "dsp/effects/CFXRingMod.h"
#include "dsp/effects/CRateReduction.h"
#include "dsp/effects/CVibrato.h"
#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "effect/CGainRamp.h"
#include "effect/MixSmoother.h"
#include "framework/plugin/CNChannelBuffer.h"
#include "framework/plugin/OndraAudioBlock.h"
#include "framework/plugin/Relaxed.h"

// What runs once per chunk between the input gain and the first stage: it reads the gained input
// and sets the stages for this chunk.
class ChunkControl {
public:
    virtual ~ChunkControl() = default;
    virtual void controlChunk(const DSP::StereoBuffer& gained, const Ondra::OndraAudioBlock& audio, int samples) = 0;
};

// The effect's audio path: every stage held by value, the order of a block through them, the dry
// path kept in phase and in time with the wet one, and the bypass fade.
class SignalChain {
public:
    SignalChain();

    void setSampleRate(float rate);
    void setBlockSize(int samples);
    // Takes the limiter's delay as the latency of every path and sizes the delay lines to it.
    void updateLatency();
    int latency() const { return latencySamples; }

    // Silence in place of what is not a number in the host's input, since one such sample would stay
    // in every filter's state: the block then reads a cleaned copy until restoreHostInput.
    bool takeFiniteInput(Ondra::OndraAudioBlock& audio, int samples);
    void restoreHostInput(Ondra::OndraAudioBlock& audio);
    // Finite input can still overflow a stage (full-scale floats times gain): such a block leaves
    // silence, and true, so that the caller starts the stages afresh.
    bool silenceIfNotFinite(Ondra::OndraAudioBlock& audio, int samples);
    // The untouched input, delayed as far as the wet path, goes aside for bypass. Once bypass has
    // settled on it is the output: returns true and the block is done.
    bool passBypassed(Ondra::OndraAudioBlock& audio, int samples, bool bypassed);
    // The rest of the block, with `control` run after the input gain. Returns true when the bypass
    // fade settled on in this block, so that the caller clears what bypass leaves behind.
    bool process(Ondra::OndraAudioBlock& audio, int samples, bool bypassed, ChunkControl& control);
    void startBypassFade(bool on, float sampleRate);

    // Mode and slopes are asked for from any thread and built here, where the filters run.
    void setFilterMode(int mode) { filterMode = mode; }
    int askedFilterMode() const { return filterMode; }
    void setLowSlope(int db) { lowSlope.asked = db; }
    void setHighSlope(int db) { highSlope.asked = db; }
    int lowSlopeInForce() const { return lowSlope.inForce; }
    int highSlopeInForce() const { return highSlope.inForce; }
    void applyFilterSettings();

    void setDistortionAfterFilters(bool after) { distortionPost = after; }
    void setReductionAfterFilters(bool after) { rateReductionPost = after; }
    void setLimiterOn(bool on);
    void setGlobalLimiterOn(bool on) { globalLimiterOn = on; }
    bool isGlobalLimiterOn() const { return globalLimiterOn; }
    void setMixTarget(float mix) { mixTarget = mix; }
    float mixInForce() const { return mixCurrent; }
    bool isBypassSettled() const { return bypassSettled; }
    // Output peaks collected while the bypass is settled, and the gain stages' peaks, for the meters.
    float peakHoldLeft() const { return peakHoldL; }
    float peakHoldRight() const { return peakHoldR; }
    void clearPeaks();
    float bypassFadeGain() const { return bypassFade; }

    // Reset in two halves around the modulation control's, which sets the stages again.
    void resetBeforeControl();
    void resetAfterControl();
    // Forgets the slope filters' cached designs, so that a loaded state sounds the same whatever
    // cutoffs the filters met before it, at this rate or another.
    void clearFilterDesigns();

    // The stages, set by the modulation control. The slope filters have room for 96 dB per octave.
    static constexpr int kMaxOrder = 8;
    DSP::CSlopeFilter lowPassL{kMaxOrder}, lowPassR{kMaxOrder}, highPassL{kMaxOrder}, highPassR{kMaxOrder};
    DSP::CPeakBiquad resonanceLow, resonanceHigh;
    CGainRamp inputGain, outputGain;
    DSP::FX::CDistortion distortion;
    DSP::FX::CRateReduction rateReducer;
    DSP::FX::CFXRingMod ringMod;
    DSP::FX::CVibrato freqMod;
    DSP::FX::CFXLimiter limiter;

private:
    struct Slope {
        Ondra::Relaxed<int> asked{12};
        int inForce = 0;
    };
    void applySlope(Slope& slope, DSP::CSlopeFilter& left, DSP::CSlopeFilter& right, bool force);
    void runFilterStage(Ondra::OndraAudioBlock& audio, int samples);
    bool runBypassFade(DSP::StereoBuffer& out, int samples, bool bypassed);
    // What a bypass that settled on leaves behind.
    void clearAfterBypass();
    void clearFilterStates();

    // The all-pass twins of the filters, which keep the dry path in phase with the wet one.
    static constexpr int kDryStages = DSP::CSlopeFilter::kMaxStages;
    DSP::CBiquadCascade dryPhaseLowL{kDryStages}, dryPhaseLowR{kDryStages}, dryPhaseHighL{kDryStages},
        dryPhaseHighR{kDryStages};

    DSP::StereoBuffer workBuffer, secondBuffer, dryPathBuffer, bypassDryBuffer, finiteInput;
    struct {
        float *left = nullptr, *right = nullptr;
        int capacity = 0;
    } hostInput;
    Ondra::CNChannelBuffer limiterDelay, bypassDelay, dryPathDelay, delayScratch;
    int latencySamples = 0;

    Slope lowSlope, highSlope;
    Ondra::Relaxed<int> filterMode{0};
    int appliedFilterMode = -1;
    Ondra::Relaxed<bool> distortionPost{false}, rateReductionPost{true};
    Ondra::Relaxed<bool> limiterOn{true}, globalLimiterOn{true};
    Ondra::Relaxed<float> mixTarget{1.0f};
    float mixCurrent = 1.0f;
    MixSmoother mixSmoother;
    float bypassFade = 1.0f, bypassFadeStep = 0.0f;
    Ondra::Relaxed<bool> bypassSettled{true};
    float peakHoldL = 0, peakHoldR = 0;
};
