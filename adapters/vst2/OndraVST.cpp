#include "adapters/vst2/OndraVST.h"

#include <cctype>
#include <cstring>

#include "adapters/vst2/Vst2Text.h"
#include "lib/editor-base/CVintariaEditor.h"

extern "C" Ondra::OndraOS* createOndraInstance(Ondra::OndraCallback* callback, int uniqueId);
extern "C" Ondra::OndraPluginList* getOndraPluginListPTR();

using namespace Vst2;

namespace {
constexpr int kMidiEventRoom = 512;
constexpr VstIntPtr kWheelValue = 0x57686565;    // "Whee"
constexpr VstInt32 kWheelIndex = 0x73744341;     // "stCA", any case of its last letter
constexpr VstIntPtr kResetValue = 0x6B525354;    // "kRST"
constexpr VstInt32 kResetIndex = 0x64417564;     // "dAud"
constexpr VstInt32 kLastCubaseWithoutSidechain = 6999;
}  // namespace

OndraVST::OndraVST(audioMasterCallback host) : AudioEffectX(host, 0, 0) {
    defaultTime.tempo = 120;
    defaultTime.sampleRate = 44100;
    midiEvents.reserve(kMidiEventRoom);
    if (Ondra::OndraPluginList* list = getOndraPluginListPTR()) pluginList = *list;
    const VstInt32 wanted = getCurrentUniqueId();

    // A library of several plug-ins is a shell: the host lists them, then loads one by its id.
    const Ondra::OndraPluginInfo* record = pluginList.get(0);
    if (pluginList.getCount() >= 2) {
        cEffect.uniqueID = 0;
        if (canHostDo("shellCategory") == 1) {
            record = nullptr;
            if (wanted != 0) {
                category = kPlugCategUnknown;
                record = pluginList.find(wanted);
            }
        }
    }
    const VstInt32 id = record ? record->uniqueId : 0;
    if (id != 0) plugin = createOndraInstance(this, id);
    if (!plugin) {
        resizeChannelBuffers();
        return;
    }

    info = *record;
    category = kPlugCategUnknown;
    setInitialDelay(plugin->getInitialDelay());
    for (int i = 0; i < plugin->getAutomatableCount(); ++i)
        if (Ondra::IPluginParameter* parameter = plugin->getAutomatableParameter(i)) parameter->addListener(this, false);
    setUniqueID(info.uniqueId);
    inputPairs = info.inputPairs;
    outputPairs = info.outputPairs;
    if (info.wantsExtraInputPair) {
        // Cubase before version 7 cannot feed a side-chain pair.
        char product[256] = {0};
        AudioEffectX::getHostProductString(product);
        for (char* c = product; *c; ++c) *c = static_cast<char>(std::tolower(static_cast<unsigned char>(*c)));
        const bool oldCubase =
            std::strcmp(product, "cubase") == 0 && AudioEffectX::getHostVendorVersion() <= kLastCubaseWithoutSidechain;
        if (!oldCubase) ++inputPairs;
    }
    AudioEffect::setNumInputs(2 * inputPairs);
    AudioEffect::setNumOutputs(2 * outputPairs);
    hostInputChannels = 2 * inputPairs;
    hostOutputChannels = 2 * outputPairs;
    if (info.category == Ondra::kCategoryInstrument && pluginList.getCount() == 1) {
        isSynth(true);
        category = kPlugCategSynth;
    }
    programsAreChunks(true);
    canDoubleReplacing(false);
    setNumParams(plugin->getAutomatableCount());
    setNumPrograms(info.programCount);
    plugin->setSampleRate(sampleRate);
    plugin->setBlockSize(blockSize);
    resizeChannelBuffers();
    if (auto* effectEditor = dynamic_cast<Vinta::CVintariaEditor*>(plugin->getEditor())) {
        editorWrapper = new COndraVST2_Editor(effectEditor);
        setEditor(editorWrapper);
    }
}

OndraVST::~OndraVST() {
    delete editorWrapper;
    editorWrapper = nullptr;
    setEditor(nullptr);
    if (!plugin) return;
    for (int i = 0; i < plugin->getAutomatableCount(); ++i)
        if (Ondra::IPluginParameter* parameter = plugin->getAutomatableParameter(i)) parameter->removeListener(this);
    delete plugin;
    plugin = nullptr;
}

bool OndraVST::isMidiKind() const {
    return info.category == Ondra::kCategoryMidiEffect || info.category == Ondra::kCategoryInstrument;
}

VstInt32 OndraVST::getProgram() { return plugin ? plugin->getProgram() : 0; }

void OndraVST::setProgram(VstInt32 program) {
    if (plugin) plugin->setProgram(program);
}

void OndraVST::setProgramName(char* name) {
    if (plugin && name) plugin->setProgramName(name);
}

void OndraVST::getProgramName(char* name) {
    if (!name) return;
    char text[256] = {0};
    if (plugin) plugin->getProgramName(text);
    Vst2Text::copy(name, text, kVstMaxProgNameLen);
}

bool OndraVST::getProgramNameIndexed(VstInt32, VstInt32 index, char* text) {
    if (!text) return false;
    char name[256] = {0};
    const int found = plugin ? plugin->getProgramNameIndexed(index, name) : 0;
    Vst2Text::copy(text, name, kVstMaxProgNameLen);
    return found != 0;
}

VstInt32 OndraVST::getChunk(void** data, bool isPreset) {
    if (!plugin) return AudioEffectX::getChunk(data, isPreset);
    return isPreset ? plugin->getChunk(data) : plugin->getBankChunk(data);
}

VstInt32 OndraVST::setChunk(void* data, VstInt32 size, bool isPreset) {
    if (!plugin || !data || size <= 0) return 0;
    // A queued host value must not overwrite the state about to be loaded.
    plugin->endAutomationBlock();
    // The effect reads the block in place and changes it meanwhile; the host's copy stays whole.
    std::vector<char> copy(static_cast<const char*>(data), static_cast<const char*>(data) + size);
    const bool loaded = isPreset ? plugin->setChunk(copy.data(), size) : plugin->setBankChunk(copy.data(), size);
    if (!loaded) return 0;
    AudioEffectX::updateDisplay();
    return size;
}

bool OndraVST::getInputProperties(VstInt32 index, VstPinProperties* properties) {
    if (!properties || index < 0 || index >= 2 * inputPairs) return false;
    std::memset(properties, 0, sizeof *properties);
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    properties->arrangementType = kSpeakerArrStereo;
    return true;
}

bool OndraVST::getOutputProperties(VstInt32 index, VstPinProperties* properties) {
    if (!properties || index < 0 || index >= 2 * outputPairs) return false;
    std::memset(properties, 0, sizeof *properties);
    Vst2Text::copy(properties->label, info.name, kVstMaxLabelLen - 1);
    properties->flags = kVstPinIsActive | kVstPinIsStereo;
    properties->arrangementType = kSpeakerArrStereo;
    return true;
}

VstInt32 OndraVST::getNumMidiInputChannels() { return isMidiKind() ? info.flag : 0; }

VstInt32 OndraVST::getNumMidiOutputChannels() { return isMidiKind() ? info.flag : 0; }

bool OndraVST::getEffectName(char* name) {
    Vst2Text::copy(name, info.name, kVstMaxEffectNameLen);
    return info.name != nullptr;
}

bool OndraVST::getVendorString(char* text) {
    Vst2Text::copy(text, info.maker, kVstMaxVendorStrLen - 1);
    return info.maker != nullptr;
}

bool OndraVST::getProductString(char* text) {
    Vst2Text::copy(text, info.vendor, kVstMaxProductStrLen - 1);
    return info.vendor != nullptr;
}

VstInt32 OndraVST::getVendorVersion() { return info.versionNumber; }

VstIntPtr OndraVST::vendorSpecific(VstInt32 index, VstIntPtr value, void*, float opt) {
    if (value == kWheelValue && (index & ~0x20) == kWheelIndex) {
        // Steinberg hosts send the mouse wheel this way; it belongs to the editor.
        if (editorWrapper) editorWrapper->onWheel(opt);
        return 1;
    }
    if (value == kResetValue && index == kResetIndex) {
        if (plugin) plugin->reset();
        return 1;
    }
    return 0;
}

VstInt32 OndraVST::canDo(char* text) {
    if (!text) return 0;
    if (std::strcmp(text, "receiveVstMidiEvent") == 0 || std::strcmp(text, "sendVstMidiEvent") == 0 ||
        std::strcmp(text, "receiveVstEvents") == 0)
        return isMidiKind() ? 1 : 0;
    if (std::strcmp(text, "receiveVstTimeInfo") == 0 || std::strcmp(text, "bypass") == 0) return 1;
    return 0;
}

VstInt32 OndraVST::getPlugCategory() { return (cEffect.flags & effFlagsIsSynth) ? kPlugCategSynth : category; }

VstInt32 OndraVST::getNextShellPlugin(char* name) {
    category = kPlugCategUnknown;
    if (shellIndex < pluginList.getCount()) {
        const Ondra::OndraPluginInfo* entry = pluginList.get(shellIndex++);
        Vst2Text::copy(name, entry->name, kVstMaxProductStrLen - 1);
        return entry->uniqueId;
    }
    shellIndex = 0;
    Vst2Text::copy(name, "", 0);
    return 0;
}
