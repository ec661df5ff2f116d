#pragma once
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/generators/CLfoGenerator.h"
#include "effect/SignalChain.h"
#include "framework/parameters/ParameterProperty.h"
#include "framework/plugin/Relaxed.h"
#include "framework/state/CPropertyManager.h"

// Control values of one filter: written by parameter changes, read by the chunk step; the rest are
// its results, which the editor's plot and meters show.
struct FilterControl {
    Ondra::Relaxed<float> cutoffParam, resonanceParam{0}, widthParam{0.9f};
    float cutoff;         // in force, after the glide
    float resonance = 0;  // in force, after its glide
    float target;         // after the envelope, before the LFO
    float modulated;      // after envelope and LFO: where the glide heads
    Ondra::Relaxed<float> envAttack{0.5f}, envRelease{0.5f}, envAmount{0}, lfoAmount{0};
    float env = 0, envOut = 0;
};

// The effect's control layer. Parameter changes become fields here and settings of the chain's
// stages; once per chunk it measures the input, steps the LFO, glides both cutoffs and resonances
// and carries the low-pass position over to the rate reducer and the two modulators.
class ModulationControl : public ChunkControl {
public:
    ModulationControl(SignalChain& chain, Ondra::CPropertyManager& parameters);

    // The switch over parameter ids; the effect keeps the bypass row for itself.
    void parameterChanged(Ondra::IPluginParameter& parameter);
    void controlChunk(const DSP::StereoBuffer& gained, const Ondra::OndraAudioBlock& audio, int samples) override;

    void setSampleRate(float rate);
    // The LFO's settings before any parameter reports its own.
    void startLfo(float rate);
    // While a state loads, links leave the parameters alone.
    void setStateLoading(bool on) { stateLoading = on; }
    bool isStateLoading() const { return stateLoading; }
    // A change of filter mode, or a block that overflowed, asks for a reset on the audio thread.
    bool isResetRequested() const { return resetRequested; }
    void requestReset() { resetRequested = true; }
    void requestLfoResync() { lfoResync = true; }

    // Between the chain's two halves of a reset: the values go back to their parameters, the
    // filters are built and set to them, and one control step sets the other stages.
    void reset();
    void clearAfterBypass();

    const FilterControl& low() const { return lowSide; }
    const FilterControl& high() const { return highSide; }
    float lfoMean() const { return lfoMeanValue; }
    // The modulators' settings in force, after their links to the filter.
    float ringFrequencyInForce() const { return ringFreqOut; }
    float freqModFrequencyInForce() const { return freqModFreqOut; }
    float freqModMixInForce() const { return freqModMixOut; }
    int lfoSyncIndex() const { return syncIndex; }
    // Host sample position of the LFO's last restart by the sync, -1 before the first.
    double lastLfoRestart() const { return lastRestart; }

private:
    Ondra::ParameterProperty* row(int id) const { return parameters.getParameter(id); }
    void step();
    void applyMeasureBand();
    void measureEnvelope(const DSP::StereoBuffer& gained, int n);
    float peakSquare(const DSP::StereoBuffer& gained, float gain, int n) const;
    float bandPeakSquare(const DSP::StereoBuffer& gained, float gain, int n);
    void stepLfo(const Ondra::OndraAudioBlock& audio, int n);
    void moveCutoff(FilterControl& side, Ondra::IPluginParameter* cutoffRow, int slopeDb, DSP::CSlopeFilter& left,
                    DSP::CSlopeFilter& right, DSP::CPeakBiquad& resonanceStage);
    void applyRateLink();
    void applyRingLink();
    void applyFreqModLink(bool atChange);
    float filterPosition();
    void changeFilterMode(int mode);
    void linkCutoff(int otherRow, float value);
    void changeLfoRate();

    SignalChain& chain;
    Ondra::CPropertyManager& parameters;
    float sampleRate = 44100.0f;

    FilterControl lowSide{{22000}, {0}, {0.9f}, 22050, 0, 22050, 22050};
    FilterControl highSide{{5}, {0}, {0.9f}, 20, 0, 20, 20};
    Ondra::Relaxed<bool> resetRequested{false};
    Ondra::Relaxed<float> inertia{1.0f};

    // Envelope detector.
    DSP::CPeakBiquad measureBand;
    Ondra::Relaxed<float> envBoost{1.0f};
    Ondra::Relaxed<bool> measureBandOn{false};
    Ondra::Relaxed<float> measureBandFrequency{4000};
    float appliedMeasureBandFrequency = 0;

    // LFO and its sync to the host.
    DSP::CLfoGenerator lfo;
    float lfoMeanValue = 0;
    Ondra::Relaxed<bool> lfoSyncOn{false}, lfoResync{true};
    bool lfoSyncRunning = false;
    Ondra::Relaxed<int> syncIndex{0};
    int lfoCounter = -1;
    double lfoLastPos = -10;
    float lfoTempo = 1;
    double lastRestart = -1;
    Ondra::Relaxed<int> bpmOverride{29};

    // Links.
    Ondra::Relaxed<bool> linkFilters{false}, linkRecursion{false};
    Ondra::Relaxed<float> linkRatio{1.0f};
    Ondra::Relaxed<bool> rateLinkOn{false}, rateFlip{false};
    Ondra::Relaxed<float> rateAmount{1}, rateParam{1};
    Ondra::Relaxed<float> ringFreq{200}, ringMix{0}, ringLinkAmount{0};
    float ringFreqOut = 200;
    Ondra::Relaxed<float> freqModFreq{100}, freqModMix{0}, freqModLinkFreq{0}, freqModLinkMix{0};
    float freqModFreqOut = 100, freqModMixOut = 0;
    Ondra::Relaxed<bool> stateLoading{true};
};
