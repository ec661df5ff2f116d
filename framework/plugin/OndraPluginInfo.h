#pragma once
#include <cstdint>

namespace Ondra {

// An effect, an effect that takes MIDI, an instrument; this library holds an effect.
enum PluginCategory : int32_t { kCategoryEffect = 1000, kCategoryMidiEffect = 1001, kCategoryInstrument = 1002 };

// One record per plug-in in the library; the field order is shared with embedding programs.
struct OndraPluginInfo {
    int32_t uniqueId;
    const char* name;
    const char* vendor;
    const char* maker;
    int32_t inputPairs;
    int32_t outputPairs;
    int32_t programCount;
    const char* versionText;
    int32_t category;
    bool wantsExtraInputPair;
    int32_t versionNumber;
    int32_t flag;
};

constexpr int32_t fourCharacterId(const char (&text)[5]) {
    return static_cast<int32_t>((static_cast<uint32_t>(static_cast<unsigned char>(text[0])) << 24) |
                                (static_cast<uint32_t>(static_cast<unsigned char>(text[1])) << 16) |
                                (static_cast<uint32_t>(static_cast<unsigned char>(text[2])) << 8) |
                                static_cast<uint32_t>(static_cast<unsigned char>(text[3])));
}

// Array of owned record copies that grows by five entries.
class OndraPluginList {
public:
    OndraPluginList() = default;
    OndraPluginList(const OndraPluginList& other) { *this = other; }
    OndraPluginList& operator=(const OndraPluginList& other);
    ~OndraPluginList() { clear(); }

    void add(const OndraPluginInfo& info);
    void clear();
    int32_t getCount() const { return count; }
    OndraPluginInfo* get(int index) const { return index >= 0 && index < count ? entries[index] : nullptr; }
    // The first record, or the one with `uniqueId` when the host asked for it.
    OndraPluginInfo* find(int32_t uniqueId) const;

private:
    OndraPluginInfo** entries = nullptr;
    int32_t count = 0;
    int32_t capacity = 0;
};

}  // namespace Ondra
