// A damaged chunk is refused through the VST 2 door, as preset and as bank, and leaves the plug-in exactly
// as it was; damage inside the body is the effect's to find (EffectState).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Vst2TestHost.h"

using namespace Vst2;
using namespace Vst2Test;

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

Bytes cut(Bytes chunk, size_t keep) {
    chunk.resize(keep);
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
    const std::pair<const char*, Bytes> damages[] = {
        {"stated size one more", withField(saved, kPlainSizeAt, 1)},
        {"stated size one less", withField(saved, kPlainSizeAt, -1)},
        {"stored size one more", withField(saved, kStoredSizeAt, 1)},
        {"stored size one less", withField(saved, kStoredSizeAt, -1)},
        {"body cut by one byte", cut(saved, saved.size() - 1)},
        {"body cut in half", cut(saved, kHeaderSize + body / 2)},
        {"header alone", cut(saved, kHeaderSize)}};
    for (VstInt32 isPreset : {1, 0})
        for (const auto& [name, damaged] : damages) {
            Bytes copy = damaged;
            EXPECT_EQ(plugin.dispatch(effSetChunk, isPreset, static_cast<VstIntPtr>(copy.size()), copy.data()), 0)
                << name << isPreset;
            EXPECT_EQ(chunk(isPreset), saved) << name << isPreset;
        }
    Plugin other;
    other.start(44100, 512);
    Bytes copy = saved;
    const auto size = static_cast<VstIntPtr>(copy.size());
    EXPECT_EQ(other.dispatch(effSetChunk, 1, size, copy.data()), size);
    EXPECT_NEAR(other.getParameter(1), 0.25f, 1e-5);
}
