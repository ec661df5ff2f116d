#pragma once
#include <string>
#include <vector>

#include "effect/CZonfra.h"

namespace TestSupport {

// A named state block: the init preset, the heaviest settings, or a factory preset.
struct NamedState {
    std::string name;
    std::vector<char> chunk;
};

// The init preset, the heaviest settings and every factory preset of the compiled-in archive.
std::vector<NamedState> everySetup();

// Loads a copy of the block (the effect reads it in place).
bool loadState(CZonfra& effect, const NamedState& state);

// Fixed-seed stereo noise with a sine in it, `frames` long.
void testSignal(std::vector<float>& left, std::vector<float>& right, size_t frames, double rate);

}  // namespace TestSupport
