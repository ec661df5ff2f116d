#pragma once
#include <string>

#include "CORE/strings/CString.h"
#include "dsp/effects/CDistortion.h"
#include "dsp/effects/CFXLimiter.h"
#include "dsp/effects/CFXRingMod.h"
#include "dsp/effects/CRateReduction.h"
#include "dsp/effects/CVibrato.h"
#include "dsp/filters/CBiquadCascade.h"
#include "dsp/filters/CPeakBiquad.h"
#include "dsp/filters/CSlopeFilter.h"
#include "dsp/generators/CLfoGenerator.h"
#include "effect/CGainRamp.h"
#include "effect/MixSmoother.h"
#include "framework/plugin/OndraPluginInfo.h"
#include "effect/IEditorTap.h"
#include "effect/ISamplerEffect.h"
#include "effect/ZonfraParameters.h"
#include "framework/plugin/CNChannelBuffer.h"
#include "framework/plugin/OndraOS.h"
#include "framework/plugin/Relaxed.h"
#include "framework/state/COndraChunk.h"
#include "framework/state/CPropertyManager.h"

// The effect. Holds every stage by value; its block order and control layer decide the sound.
class CZonfra : public Ondra::OndraOS, public ISamplerEffect {
public:
    explicit CZonfra(Ondra::OndraCallback* callback);
    ~CZonfra() override;

    // OndraOS
    void parameterChanged(Ondra::IPluginParameter* parameter) override;
    void setProgramName(const char* text) override;
    void getProgramName(char* text) override;
    Ondra::IPluginParameter* findParameter(const char* key) override;
    Ondra::IPluginParameter* getParameter(int index) override;
    Ondra::IPluginParameter* getParameterById(int id) override;
    Ondra::IPluginParameter* getAutomatableParameter(int index) override;
    int getParameterCount() override;
    int getAutomatableCount() override;
    void process(Ondra::OndraAudioBlock& audio) override;
    void setSampleRate(float rate) override;
    void setBlockSize(int samples) override;
    int getChunk(void** data) override;
    bool setChunk(void* data, int size) override;
    void reset() override;
    void beginParameterBatch() override;
    void endParameterBatch() override;
    void setBypass(bool on) override;
    int getControlChunkSize() override;

    // The switch over parameter ids that turns changes into fields and stage settings.
    virtual void onParameterChanged(Ondra::IPluginParameter* parameter);

    // ISamplerEffect: handed to the editor, which places itself.
    void getEditorRect(EditorRect& rect) override;
    void openEditor(void* parent) override;
    void closeEditor() override;

    // Makes the editor each new effect owns; set by the editor library where it is linked in, so
    // tools and tests without a GUI make effects without one.
    using EditorFactory = Ondra::PluginEditor* (*)(CZonfra& effect);
    static EditorFactory editorFactory;

    // Read-only views for the editor and for tests.
    int getLatencySamples() const { return latencySamples; }
    float getMixCurrent() const { return mixCurrent; }
    float getMixTarget() const { return mixTarget; }
    bool isBypassSettled() const { return bypassSettled; }
    float getBypassFade() const { return bypassFade; }
    bool isStateLoading() const { return stateLoading; }
    bool isGlobalLimiterOn() const { return globalLimiterOn; }
    const char* getPresetName() const { return presetName.c_str(); }
    Ondra::ParameterProperty& getGlobalLimiterParameter() { return globalLimiter; }
    Ondra::ParameterProperty& getPresetNameParameter() { return presetNameParameter; }
    void setWriteGlobalLimiter(int on) { writeGlobalLimiter = on; }
    // The folder of user presets: the stored "PresetFolder", else a default in the data home.
    std::string getPresetFolder();
    void setPresetFolder(const std::string& folder);
    const CGainRamp& getInputGain() const { return inputGain; }
    const CGainRamp& getOutputGain() const { return outputGain; }
    float getLowTarget() const { return low.target; }
    float getHighTarget() const { return high.target; }
    float getLowModulated() const { return low.modulated; }
    float getHighModulated() const { return high.modulated; }
    float getLowCutoff() const { return low.cutoff; }
    float getHighCutoff() const { return high.cutoff; }
    float getLowResonance() const { return low.resonance; }
    float getHighResonance() const { return high.resonance; }
    float getLowEnvOut() const { return low.envOut; }
    float getHighEnvOut() const { return high.envOut; }
    float getLfoMean() const { return lfoMean; }
    int getLfoSyncIndex() const { return lfoSyncIndex; }
    // Host sample position of the LFO's last restart by the sync, -1 before the first.
    double getLastLfoRestart() const { return lastLfoRestart; }
    int getFilterMode() const { return filterMode; }
    int getLowSlopeDb() const { return low.slopeDb; }
    int getHighSlopeDb() const { return high.slopeDb; }
    float getInertia() const { return inertia; }
    float getLinkRatio() const { return linkRatio; }
    float getRateAmount() const { return rateAmount; }
    bool isRateFlipped() const { return rateFlip; }
    float getRingFrequencyInForce() const { return ringFreqOut; }
    float getFreqModFrequencyInForce() const { return freqModFreqOut; }
    float getFreqModMixInForce() const { return freqModMixOut; }
    float getEnvAttackCoefficient(bool lowSide) const { return lowSide ? low.envAttack : high.envAttack; }
    float getEnvReleaseCoefficient(bool lowSide) const { return lowSide ? low.envRelease : high.envRelease; }
    const DSP::CLfoGenerator& getLfo() const { return lfo; }
    // Output peaks collected while the bypass is settled.
    float getLimiterGain() const { return limiter.getMeterGain(); }
    float getPeakHoldL() const { return peakHoldL; }
    float getPeakHoldR() const { return peakHoldR; }

private:
    // Control fields of one filter: written by parameter changes, read by the chunk step.
    struct FilterSide {
        Ondra::Relaxed<float> cutoffParam, resonanceParam{0}, widthParam{0.9f};
        float cutoff, resonance = 0, target, modulated;
        Ondra::Relaxed<int> slopeDb{12};
        int appliedSlopeDb = 0;
        Ondra::Relaxed<float> envAttack{0.5f}, envRelease{0.5f}, envAmount{0}, lfoAmount{0};
        float env = 0, envOut = 0;
    };

    void buildParameters();
    // Loads "presets/Init Preset.fxp" of the main archive compiled into the library, if any.
    void loadInitPreset();
    void resetInternal(bool tellEditor);
    void clearAfterBypass();
    void clearFilterStates();
    void measureEnvelope(int n);
    float peakSquare(float gain, int n) const;
    float bandPeakSquare(float gain, int n);
    void stepLfo(const Ondra::OndraAudioBlock& audio, int n);
    void controlStep();
    void moveCutoff(FilterSide& side, Ondra::IPluginParameter* row, DSP::CSlopeFilter& left,
                    DSP::CSlopeFilter& right, DSP::CPeakBiquad& resonanceStage);
    void applyRateLink();
    void applyRingLink();
    void applyFreqModLink(bool atChange);
    float filterPosition();
    void changeFilterMode(int mode);
    void linkCutoff(int otherRow, float value);
    Ondra::ParameterProperty* row(int id) const { return parameters.getParameter(id); }
    void resizeDelayLines();
    void applyFilterSettings();
    // The signal chain on input known to be finite.
    void runChain(Ondra::OndraAudioBlock& audio, int n);
    void runFilterStage(Ondra::OndraAudioBlock& audio, int n);
    void runFilters(Ondra::OndraAudioBlock& audio, int n, bool parallel);
    void runDryPhaseChains(int n);
    void setPresetNameText(const char* text);

    // Filters and their dry twins.
    DSP::CSlopeFilter lowPassL{8}, lowPassR{8}, highPassL{8}, highPassR{8};
    DSP::CPeakBiquad resonanceLow, resonanceHigh, measureBand;
    DSP::CBiquadCascade dryPhaseLowL{12}, dryPhaseLowR{12}, dryPhaseHighL{12}, dryPhaseHighR{12};
    CGainRamp inputGain, outputGain;
    DSP::CLfoGenerator lfo;
    DSP::FX::CDistortion distortion;
    DSP::FX::CRateReduction rateReducer;
    DSP::FX::CFXRingMod ringMod;
    DSP::FX::CVibrato freqMod;
    DSP::FX::CFXLimiter limiter;

    Ondra::StereoBuffer workBuffer, secondBuffer, dryPathBuffer, bypassDryBuffer, finiteInput;
    Ondra::CNChannelBuffer limiterDelay, bypassDelay, dryPathDelay, delayScratch;
    int latencySamples = 0;

    Ondra::Relaxed<bool> distortionPost{false}, rateReductionPost{true};
    Ondra::Relaxed<int> filterMode{0};
    Ondra::Relaxed<bool> limiterOn{true}, globalLimiterOn{true};
    Ondra::Relaxed<float> mixTarget{1.0f};
    float mixCurrent = 1.0f;
    MixSmoother mixSmoother;
    float bypassFade = 1.0f, bypassFadeStep = 0.0f;
    Ondra::Relaxed<bool> bypassSettled{true};
    float peakHoldL = 0, peakHoldR = 0;

    // Control fields.
    FilterSide low{{22000}, {0}, {0.9f}, 22050, 0, 22050, 22050};
    FilterSide high{{5}, {0}, {0.9f}, 20, 0, 20, 20};
    int appliedFilterMode = -1;
    Ondra::Relaxed<bool> resetRequested{false};
    Ondra::Relaxed<float> inertia{1.0f};
    Ondra::Relaxed<float> envBoost{1.0f};
    Ondra::Relaxed<bool> measureBandOn{false};
    Ondra::Relaxed<float> measureBandFrequency{4000};
    float appliedMeasureBandFrequency = 0;
    float lfoMean = 0;
    Ondra::Relaxed<bool> lfoSyncOn{false}, lfoResync{true};
    bool lfoSyncRunning = false;
    Ondra::Relaxed<int> lfoSyncIndex{0};
    int lfoCounter = -1;
    double lfoLastPos = -10;
    float lfoTempo = 1;
    double lastLfoRestart = -1;
    Ondra::Relaxed<int> bpmOverride{29};
    Ondra::Relaxed<bool> linkFilters{false}, linkRecursion{false};
    Ondra::Relaxed<float> linkRatio{1.0f};
    Ondra::Relaxed<bool> rateLinkOn{false}, rateFlip{false};
    Ondra::Relaxed<float> rateAmount{1}, rateParam{1};
    Ondra::Relaxed<float> ringFreq{200}, ringMix{0}, ringLinkAmount{0};
    float ringFreqOut = 200;
    Ondra::Relaxed<float> freqModFreq{100}, freqModMix{0}, freqModLinkFreq{0}, freqModLinkMix{0};
    float freqModFreqOut = 100, freqModMixOut = 0;
    Ondra::Relaxed<bool> stateLoading{true};

    // State and housekeeping.
    Ondra::CPropertyManager parameters;
    Ondra::COndraChunk chunk;
    Core::CStringBufferd<64> presetName;
    Ondra::ParameterProperty presetNameParameter;
    Ondra::ParameterProperty globalLimiter;
    int writeGlobalLimiter = 1;
    std::string presetFolder;
    IEditorTap* editorTap = nullptr;
};
