// A damaged state is refused through the VST 3 door and leaves the instance exactly as it was. Damage
// inside the body is the effect's to find, as Vst2StateRefusal shows for every bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "Vst3Instance.h"
#include "vst2/ChunkDamage.h"

using namespace Steinberg;
using namespace Steinberg::Vst;
using namespace TestHost;

namespace {

constexpr size_t kChunkAt = 8;  // after the chunk's size and the program number

// A host's state block around `chunk`: its size, the program number, the chunk.
std::vector<char> hostState(const ChunkDamage::Bytes& chunk, int32 program = 0) {
    std::vector<char> state(kChunkAt + chunk.size());
    const auto size = static_cast<int32>(chunk.size());
    std::memcpy(state.data(), &size, 4);
    std::memcpy(state.data() + 4, &program, 4);
    std::copy(chunk.begin(), chunk.end(), state.begin() + kChunkAt);
    return state;
}

}  // namespace

class Vst3StateRefusal : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(module.factory, nullptr) << dlerror();
        std::vector<float> l(128, 0.0f), r = l;
        Changes changes;
        plugin.run(l.data(), r.data(), 128, &changes.add(1, 0.3).add(20, 0.7));
        saved = plugin.state();
        chunk.assign(saved.begin() + kChunkAt, saved.end());
    }
    Module module;
    Instance plugin{module};
    std::vector<char> saved;
    ChunkDamage::Bytes chunk;
};

TEST_F(Vst3StateRefusal, WrongSizesAndCutBodiesAreRefused) {
    for (const ChunkDamage::Case& damage : ChunkDamage::sizeDamages(chunk)) {
        EXPECT_EQ(plugin.load(hostState(damage.chunk)), kResultFalse) << damage.name;
        EXPECT_EQ(plugin.state(), saved) << damage.name;
    }
    // The host's own size field claiming more than the stream holds, or less than the chunk.
    for (int32 delta : {1, -1, -static_cast<int32>(chunk.size()) / 2}) {
        std::vector<char> state = saved;
        const int32 size = static_cast<int32>(chunk.size()) + delta;
        std::memcpy(state.data(), &size, 4);
        EXPECT_EQ(plugin.load(state), kResultFalse) << delta;
        EXPECT_EQ(plugin.state(), saved) << delta;
    }
}

TEST_F(Vst3StateRefusal, AValidStateStillLoadsAndItsProgramNumberIsNotKept) {
    Instance other(module);
    ASSERT_EQ(other.load(hostState(chunk, 5)), kResultOk);
    EXPECT_NEAR(other.controller->getParamNormalized(1), 0.3, 1e-6);
    EXPECT_EQ(other.state(), saved);  // program 0 again, and the same chunk
}
