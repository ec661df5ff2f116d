#pragma once
#include <string>

#include "CORE/strings/CString.h"
#include "effect/IEditorTap.h"
#include "effect/ISamplerEffect.h"
#include "effect/ModulationControl.h"
#include "effect/SignalChain.h"
#include "effect/ZonfraHousekeeping.h"
#include "effect/ZonfraParameters.h"
#include "framework/plugin/OndraOS.h"
#include "framework/state/COndraChunk.h"
#include "framework/state/CPropertyManager.h"

// The effect: its parameters and state, glued to two parts. The signal chain holds the stages and
// runs a block through them; the modulation control turns parameter changes into settings and
// moves the filters once per chunk.
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

    // ISamplerEffect: handed to the editor, which places itself.
    void getEditorRect(EditorRect& rect) override;
    void openEditor(void* parent) override;
    void closeEditor() override;

    // The parts, read by the editor's displays.
    const SignalChain& signalChain() const { return chain; }
    const ModulationControl& modulation() const { return control; }

    // Makes the editor each new effect owns; set by the editor library where it is linked in, so
    // tools and tests without a GUI make effects without one.
    using EditorFactory = Ondra::PluginEditor* (*)(CZonfra& effect);
    static EditorFactory editorFactory;

    // Housekeeping for the editor's pages and the preset tools.
    Ondra::ParameterProperty& getGlobalLimiterParameter() { return globalLimiter; }
    Ondra::ParameterProperty& getPresetNameParameter() { return presetNameParameter; }
    const char* getPresetName() const { return presetName.c_str(); }
    // Whether getChunk writes the global limiter switch; presets leave it out.
    void setWriteGlobalLimiter(int on) { writeGlobalLimiter = on; }
    std::string getPresetFolder() { return presetFolder.get(); }
    void setPresetFolder(const std::string& folder) { presetFolder.set(folder); }

private:
    void buildParameters();
    void resetInternal();
    void runBlock(Ondra::OndraAudioBlock& audio, int samples);
    void setPresetNameText(const char* text);

    Ondra::CPropertyManager parameters;
    SignalChain chain;
    ModulationControl control{chain, parameters};

    Ondra::COndraChunk chunk;
    Core::CStringBufferd<64> presetName;
    Ondra::ParameterProperty presetNameParameter;
    Ondra::ParameterProperty globalLimiter;
    int writeGlobalLimiter = 1;
    PresetFolderSetting presetFolder;
    IEditorTap* editorTap = nullptr;
};
