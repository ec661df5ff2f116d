// A damaged chunk is refused through the VST 2 door and leaves the plug-in exactly as it was.
#include <gtest/gtest.h>

#include <vector>

#include "ChunkDamage.h"
#include "Vst2TestHost.h"

using namespace Vst2;
using namespace Vst2Test;

class Vst2StateRefusal : public Started {
protected:
    void SetUp() override {
        Started::SetUp();
        plugin.setParameter(1, 0.25f);
        plugin.setParameter(20, 0.7f);
        saved = chunk();
        ASSERT_FALSE(saved.empty());
    }
    ChunkDamage::Bytes chunk(VstInt32 isPreset = 1) {
        void* data = nullptr;
        const VstIntPtr size = plugin.dispatch(effGetChunk, isPreset, 0, &data);
        return data ? ChunkDamage::Bytes(static_cast<char*>(data), static_cast<char*>(data) + size) : ChunkDamage::Bytes{};
    }
    VstIntPtr load(ChunkDamage::Bytes block, VstInt32 isPreset = 1) {
        return plugin.dispatch(effSetChunk, isPreset, static_cast<VstIntPtr>(block.size()), block.data());
    }
    ChunkDamage::Bytes saved;
};

TEST_F(Vst2StateRefusal, EveryBitFlipInTheBodyIsRefused) {
    const auto body = static_cast<size_t>(ChunkDamage::field(saved, ChunkDamage::kStoredSizeAt));
    ASSERT_EQ(body + ChunkDamage::kHeaderSize, saved.size());
    for (size_t at = 0; at < body; ++at) {
        const ChunkDamage::Bytes damaged = ChunkDamage::bitFlipped(saved, at);
        const bool alike = ChunkDamage::unpacksAlike(damaged, saved);
        ASSERT_EQ(load(damaged), alike ? static_cast<VstIntPtr>(damaged.size()) : 0) << "byte " << at;
        ASSERT_EQ(chunk(), saved) << "byte " << at;
    }
}

TEST_F(Vst2StateRefusal, WrongSizesAndCutBodiesAreRefusedAsPresetAndAsBank) {
    for (VstInt32 isPreset : {1, 0})
        for (const ChunkDamage::Case& damage : ChunkDamage::sizeDamages(saved)) {
            EXPECT_EQ(load(damage.chunk, isPreset), 0) << damage.name << isPreset;
            EXPECT_EQ(chunk(isPreset), saved) << damage.name << isPreset;
        }
    Plugin other;
    other.start(44100, 512);
    ChunkDamage::Bytes copy = saved;
    const auto size = static_cast<VstIntPtr>(copy.size());
    EXPECT_EQ(other.dispatch(effSetChunk, 1, size, copy.data()), size);
    EXPECT_NEAR(other.getParameter(1), 0.25f, 1e-5);
}
