#include "Vst2TestHost.h"
#include "adapters/vst2/sdk/ERect.h"
#include "adapters/vst2/sdk/VstPinProperties.h"
#include "adapters/vst2/sdk/VstSpeakerArrangement.h"

using namespace Vst2Test;

namespace {
constexpr VstInt32 kZonfraId = ('V' << 24) | ('z' << 16) | ('o' << 8) | 'n';
}

TEST(Vst2Entry, AllThreeEntryPointsMakeThePluginButNotForAHostWithoutVersionOrCallback) {
    TestSupport::PluginLibrary library;
    ASSERT_TRUE(library.loaded()) << library.error();
    void* pluginMain = library.symbol("VSTPluginMain");
    ASSERT_NE(pluginMain, nullptr);
    EXPECT_EQ(library.symbol("MAIN"), pluginMain);
    for (const char* entry : {"main", "MAIN"}) {
        Plugin plugin(entry);
        ASSERT_NE(plugin.effect, nullptr) << entry;
        EXPECT_EQ(plugin.effect->uniqueID, kZonfraId) << entry;
    }
    auto entry = library.function<EntryPoint>("VSTPluginMain");
    EXPECT_EQ(entry(nullptr), nullptr);
    host() = HostState{};
    host().version = 0;
    EXPECT_EQ(entry(audioMaster), nullptr);
    EXPECT_EQ(host().count(audioMasterVersion), 1);
}

TEST(Vst2Entry, TheRecordDescribesTheEffect) {
    Plugin plugin;
    ASSERT_NE(plugin.effect, nullptr);
    const AEffect& e = *plugin.effect;
    EXPECT_EQ(e.magic, kEffectMagic);
    EXPECT_EQ(e.uniqueID, kZonfraId);
    EXPECT_EQ(std::vector<VstInt32>({e.numInputs, e.numOutputs, e.numPrograms, e.numParams, e.initialDelay}),
              std::vector<VstInt32>({2, 2, 1, 48, 221}));  // the look-ahead at 44.1 kHz
    EXPECT_EQ(e.flags & (effFlagsCanReplacing | effFlagsProgramChunks | effFlagsCanDoubleReplacing | effFlagsHasEditor |
                         effFlagsIsSynth),
              effFlagsCanReplacing | effFlagsProgramChunks | effFlagsHasEditor);
    // It asked which plug-in the host wants and told it of its latency.
    EXPECT_EQ(host().count(audioMasterCurrentId), 1);
    EXPECT_GE(host().count(audioMasterIOChanged), 1);
}

class Vst2Host : public Started {};

TEST_F(Vst2Host, FixedAnswersAndNames) {
    // No editor yet: the host finds none to open.
    const std::pair<VstInt32, VstIntPtr> answers[] = {
        {effGetVstVersion, 2400},         {effGetPlugCategory, 0},           {effCanDo, 0},
        {effGetVendorVersion, 0x10300},   {effGetTailSize, 0},               {effBeginSetProgram, 1},
        {effEndSetProgram, 1},            {effGetNumMidiInputChannels, 0},   {effGetNumMidiOutputChannels, 0},
        {effGetProgram, 0},               {effEditOpen, 0},                  {999, 0}};
    for (const auto& [opcode, answer] : answers) EXPECT_EQ(plugin.dispatch(opcode), answer) << opcode;
    const std::pair<const char*, int> canDos[] = {{"bypass", 1},           {"receiveVstTimeInfo", 1},
                                                  {"receiveVstMidiEvent", 0}, {"sendVstMidiEvent", 0},
                                                  {"receiveVstEvents", 0},    {"Bypass", 0}, {"offline", 0}};
    for (const auto& [what, answer] : canDos) EXPECT_EQ(plugin.canDo(what), answer) << what;
    EXPECT_EQ(plugin.text(effGetEffectName), "MMK Zonfra QT");
    EXPECT_EQ(plugin.text(effGetVendorString), "Morvandel");
    EXPECT_EQ(plugin.text(effGetProductString), "Morvandel Mixing Kit");
    // The editor's size is known before it opens.
    ERect* rect = nullptr;
    EXPECT_EQ(plugin.dispatch(effEditGetRect, 0, 0, &rect), 1);
    ASSERT_NE(rect, nullptr);
    EXPECT_GT(rect->right - rect->left, 0);
    // The shell listing of a library with one plug-in, which starts over.
    char name[64];
    EXPECT_EQ(plugin.dispatch(effShellGetNextPlugin, 0, 0, name), kZonfraId);
    EXPECT_STREQ(name, "MMK Zonfra QT");
    EXPECT_EQ(plugin.dispatch(effShellGetNextPlugin, 0, 0, name), 0);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(plugin.dispatch(effShellGetNextPlugin, 0, 0, name), kZonfraId);
}

TEST_F(Vst2Host, PinsAndSpeakerArrangements) {
    VstPinProperties pin;
    for (VstInt32 opcode : {effGetInputProperties, effGetOutputProperties})
        for (VstInt32 index : {0, 1}) {
            std::memset(&pin, 0x55, sizeof pin);
            ASSERT_EQ(plugin.dispatch(opcode, index, 0, &pin), 1);
            EXPECT_EQ(pin.flags, kVstPinIsActive | kVstPinIsStereo);
            EXPECT_EQ(pin.arrangementType, kSpeakerArrStereo);
            EXPECT_STREQ(pin.label, opcode == effGetInputProperties ? "" : "MMK Zonfra QT");
        }
    EXPECT_EQ(plugin.dispatch(effGetInputProperties, 2, 0, &pin), 0);
    EXPECT_EQ(plugin.dispatch(effGetOutputProperties, -1, 0, &pin), 0);
    EXPECT_EQ(plugin.dispatch(effGetOutputProperties, 0, 0, nullptr), 0);

    VstSpeakerArrangement stereo{.type = kSpeakerArrStereo, .numChannels = 2};
    EXPECT_EQ(plugin.dispatch(effSetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&stereo), &stereo), 1);
    EXPECT_EQ(plugin.dispatch(effSetSpeakerArrangement, 0, 0, nullptr), 1);  // both kept
    VstSpeakerArrangement *input = &stereo, *output = &stereo;
    EXPECT_EQ(plugin.dispatch(effGetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&input), &output), 0);
    EXPECT_EQ(input, nullptr);
    EXPECT_EQ(output, nullptr);
}

TEST_F(Vst2Host, VendorRequestsResumeAndBypass) {
    const VstInt32 dAud = ('d' << 24) | ('A' << 16) | ('u' << 8) | 'd';
    const VstInt32 stCA = ('s' << 24) | ('t' << 16) | ('C' << 8) | 'A';
    const struct {
        VstInt32 index;
        VstIntPtr value;
        float opt;
        VstIntPtr answer;
    } requests[] = {{dAud, 0x6B525354, 0, 1},  // "kRST": reset
                    {dAud, 0x6B525355, 0, 0}, {0, 0x6B525354, 0, 0},
                    {stCA, 0x57686565, 1, 1},  // the wheel
                    {stCA | 0x20, 0x57686565, -1, 1}, {1, 2, 0, 0}};
    for (const auto& r : requests)
        EXPECT_EQ(plugin.dispatch(effVendorSpecific, r.index, r.value, nullptr, r.opt), r.answer) << r.index;
    // Each resume asks for events.
    EXPECT_EQ(host().count(audioMasterWantMidi), 1);
    plugin.dispatch(effMainsChanged, 0, 0);
    plugin.dispatch(effMainsChanged, 0, 1);
    EXPECT_EQ(host().count(audioMasterWantMidi), 2);
    EXPECT_EQ(plugin.dispatch(effSetBypass, 0, 1), 1);
    EXPECT_EQ(plugin.dispatch(effSetBypass, 0, 0), 1);
}

TEST_F(Vst2Host, PresetAndBankChunksRoundTrip) {
    for (VstInt32 isPreset : {1, 0}) {
        plugin.setParameter(1, 0.25f);
        void* data = nullptr;
        const VstIntPtr size = plugin.dispatch(effGetChunk, isPreset, 0, &data);
        ASSERT_GT(size, 0) << isPreset;
        ASSERT_NE(data, nullptr);
        const std::vector<char> saved(static_cast<char*>(data), static_cast<char*>(data) + size);
        EXPECT_NE(std::string(saved.begin(), saved.end()).find("MMK-zonfra-Preset"), std::string::npos);
        plugin.setParameter(1, 0.9f);
        std::vector<char> handedOver = saved;
        const int displayUpdates = host().count(audioMasterUpdateDisplay);
        EXPECT_EQ(plugin.dispatch(effSetChunk, isPreset, size, handedOver.data()), size);
        EXPECT_NEAR(plugin.getParameter(1), 0.25f, 1e-5) << isPreset;
        EXPECT_EQ(handedOver, saved);  // the host's block is left as it was
        EXPECT_EQ(host().count(audioMasterUpdateDisplay), displayUpdates + 1);
    }
    // Nothing to load: no answer, no change.
    EXPECT_EQ(plugin.dispatch(effSetChunk, 1, 0, nullptr), 0);
    char garbage[64] = {1, 2, 3};
    plugin.dispatch(effSetChunk, 1, sizeof garbage, garbage);
    EXPECT_NEAR(plugin.getParameter(1), 0.25f, 1e-5);
}

// A damaged chunk is refused through the VST 2 door, as preset and as bank, and leaves the plug-in exactly
// as it was; damage inside the body is the effect's to find (EffectState).
namespace {
using Bytes = std::vector<char>;

// The outer header: its size, then the stored and the unpacked size of the body that follows.
constexpr size_t kHeaderSize = 44, kStoredSizeAt = 36, kPlainSizeAt = 40;

Bytes withField(Bytes chunk, size_t at, int32_t delta) {
    int32_t value = 0;
    std::memcpy(&value, chunk.data() + at, 4);
    value += delta;
    std::memcpy(chunk.data() + at, &value, 4);
    return chunk;
}
}  // namespace

class Vst2StateRefusal : public Started {
protected:
    Bytes chunk(VstInt32 isPreset) {
        void* data = nullptr;
        const VstIntPtr size = plugin.dispatch(effGetChunk, isPreset, 0, &data);
        return data ? Bytes(static_cast<char*>(data), static_cast<char*>(data) + size) : Bytes{};
    }
};

TEST_F(Vst2StateRefusal, WrongSizesAndCutBodiesAreRefusedAsPresetAndAsBank) {
    plugin.setParameter(1, 0.25f);
    plugin.setParameter(20, 0.7f);
    const Bytes saved = chunk(1);
    ASSERT_FALSE(saved.empty());
    const size_t body = saved.size() - kHeaderSize;
    auto cut = [&](size_t keep) { return Bytes(saved.begin(), saved.begin() + static_cast<long>(keep)); };
    const std::pair<const char*, Bytes> damages[] = {
        {"stated size one more", withField(saved, kPlainSizeAt, 1)},
        {"stated size one less", withField(saved, kPlainSizeAt, -1)},
        {"stored size one more", withField(saved, kStoredSizeAt, 1)},
        {"stored size one less", withField(saved, kStoredSizeAt, -1)},
        {"body cut by one byte", cut(saved.size() - 1)},
        {"body cut in half", cut(kHeaderSize + body / 2)},
        {"header alone", cut(kHeaderSize)}};
    for (VstInt32 isPreset : {1, 0})
        for (const auto& [name, damaged] : damages) {
            Bytes copy = damaged;
            EXPECT_EQ(plugin.dispatch(effSetChunk, isPreset, static_cast<VstIntPtr>(copy.size()), copy.data()), 0)
                << name << isPreset;
            EXPECT_EQ(chunk(isPreset), saved) << name << isPreset;
        }
}
