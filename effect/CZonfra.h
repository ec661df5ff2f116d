#pragma once
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
#include "framework/plugin/OndraPluginInfo.h"
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
    void setChunk(void* data, int size) override;
    void reset() override;
    void beginParameterBatch() override;
    void endParameterBatch() override;
    void setBypass(bool on) override;
    int getControlChunkSize() override;

    // The switch over parameter ids that turns changes into fields and stage settings.
    virtual void onParameterChanged(Ondra::IPluginParameter* parameter);

    // ISamplerEffect
    void getEditorRect(EditorRect& rect) override;
    void openEditor(void* parent) override;
    void closeEditor() override;

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
    const CGainRamp& getInputGain() const { return inputGain; }
    const CGainRamp& getOutputGain() const { return outputGain; }
    float getLowTarget() const { return lowTarget; }
    float getHighTarget() const { return highTarget; }
    float getLowModulated() const { return lowModulated; }
    float getHighModulated() const { return highModulated; }
    float getLowCutoff() const { return lowCutoff; }
    float getHighCutoff() const { return highCutoff; }
    float getLowEnvOut() const { return lowEnvOut; }
    float getHighEnvOut() const { return highEnvOut; }
    float getLfoMean() const { return lfoMean; }
    int getFilterMode() const { return filterMode; }
    int getLowSlopeDb() const { return lowSlopeDb; }
    int getHighSlopeDb() const { return highSlopeDb; }

private:
    void buildParameters();
    void resetInternal(bool tellEditor);
    void clearAfterBypass();
    void controlStep();
    void resizeDelayLines();
    void applyFilterSettings();
    void runFilters(Ondra::OndraAudioBlock& audio, int n);
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

    Ondra::StereoBuffer workBuffer, secondBuffer, dryPathBuffer, bypassDryBuffer;
    Ondra::CNChannelBuffer limiterDelay, bypassDelay, dryPathDelay, delayScratch;
    int latencySamples = 0;

    Ondra::Relaxed<bool> distortionPost{false}, rateReductionPost{true};
    Ondra::Relaxed<int> filterMode{0};
    Ondra::Relaxed<bool> limiterOn{true}, globalLimiterOn{true};
    Ondra::Relaxed<float> mixTarget{1.0f};
    float mixCurrent = 1.0f;
    float bypassFade = 1.0f, bypassFadeStep = 0.0f;
    Ondra::Relaxed<bool> bypassSettled{true};
    float peakHoldL = 0, peakHoldR = 0;

    // Control fields.
    Ondra::Relaxed<float> lowCutoffParam{22000}, highCutoffParam{5};
    Ondra::Relaxed<float> lowResonanceParam{0}, highResonanceParam{0};
    Ondra::Relaxed<float> lowWidthParam{0.9f}, highWidthParam{0.9f};
    float lowCutoff = 22050, highCutoff = 20;
    float lowResonance = 0, highResonance = 0;
    float lowTarget = 22050, highTarget = 20;
    float lowModulated = 22050, highModulated = 20;
    Ondra::Relaxed<int> lowSlopeDb{12}, highSlopeDb{12};
    Ondra::Relaxed<int> appliedLowSlopeDb{0}, appliedHighSlopeDb{0};
    Ondra::Relaxed<int> appliedFilterMode{-1};
    float lowEnvOut = 0, highEnvOut = 0;
    float lfoMean = 0;
    Ondra::Relaxed<bool> lfoResync{true};
    Ondra::Relaxed<bool> stateLoading{true};

    // State and housekeeping.
    Ondra::CPropertyManager parameters;
    Ondra::COndraChunk chunk;
    Core::CStringBufferd<64> presetName;
    Ondra::ParameterProperty presetNameParameter;
    Ondra::ParameterProperty globalLimiter;
    int writeGlobalLimiter = 1;
};
