#include "robustness/Setups.h"

#include <random>

#include "effect/EffectHarness.h"
#include "support/ArchiveFiles.h"
#include "support/HeaviestSettings.h"

namespace TestSupport {
namespace {
constexpr size_t kFxpChunkOffset = 60;

NamedState stateOf(const std::string& name, CZonfra& effect) {
    void* data = nullptr;
    const int size = effect.getChunk(&data);
    const char* bytes = static_cast<const char*>(data);
    return {name, std::vector<char>(bytes, bytes + size)};
}
}  // namespace

std::vector<NamedState> everySetup() {
    std::vector<NamedState> setups;
    EffectHarness harness;
    setups.push_back(stateOf("init", *harness.effect));
    applyHeaviestSettings(*harness.effect);
    setups.push_back(stateOf("heaviest", *harness.effect));
    harness.set(kBypass, 1);  // a state saved bypassed fades in as it loads
    setups.push_back(stateOf("heaviest, bypassed", *harness.effect));

    for (const ArchiveFile& preset : archiveFiles("main", "presets/"))
        if (preset.bytes.size() > kFxpChunkOffset)
            setups.push_back({preset.name, {preset.bytes.begin() + kFxpChunkOffset, preset.bytes.end()}});
    return setups;
}

bool loadState(CZonfra& effect, const NamedState& state) {
    std::vector<char> copy = state.chunk;
    return effect.setChunk(copy.data(), static_cast<int>(copy.size()));
}

void testSignal(std::vector<float>& left, std::vector<float>& right, size_t frames, double rate) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-0.3f, 0.3f);
    left.resize(frames);
    right.resize(frames);
    for (size_t i = 0; i < frames; ++i) {
        const float tone = 0.4f * static_cast<float>(std::sin(2.0 * M_PI * 440.0 * static_cast<double>(i) / rate));
        left[i] = tone + noise(random);
        right[i] = tone + noise(random);
    }
}

}  // namespace TestSupport
