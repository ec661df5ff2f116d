// How a host's process call reaches the effect, heard in the audio: the exports show neither the
// effect's calls nor its tempo, and a hook for tests would ship in the product.
// - A moved low-pass cutoff glides one step per effect call, so two instances sound the same exactly
//   as long as their calls begin at the same samples; the first difference (one latency later) shows
//   where the calls parted.
// - The tempo sets the synced LFO's rate, which moves the cutoff. The effect hands the LFO only a
//   change of tempo, and the LFO starts at 120, so a context first sets it to 60.

#include "Vst3Instance.h"

using namespace TestHost;

namespace {

constexpr ParamID kLowPassFrequency = 1;
constexpr ParamID kLowPassLfoStrength = 23;
constexpr int32 kChunk = 88;  // 44,100 / 500: the effect's control step at the test rate
constexpr int32 kBlock = 512;

// Runs `plugin` through host calls of the given sizes, one after the other on a continuous sine,
// and returns the left output. `first` changes go with the first call. Blocks of `kBlock` before
// and after are the same for every instance: warm-up and the latency's worth of tail.
std::vector<float> render(Instance& plugin, const std::vector<int32>& calls, IParameterChanges* first) {
    std::vector<float> output;
    auto call = [&](int32 n, IParameterChanges* changes) {
        const std::vector<float> left = plugin.runSine(n, 3000, output.size(), changes);
        EXPECT_EQ(plugin.lastResult, kResultOk);
        output.insert(output.end(), left.begin(), left.end());
    };
    for (int b = 0; b < 20; ++b) call(kBlock, nullptr);
    const size_t start = output.size();
    bool isFirst = true;
    for (int32 n : calls) {
        call(n, isFirst ? first : nullptr);
        isFirst = false;
    }
    for (int b = 0; b < 3; ++b) call(kBlock, nullptr);
    return std::vector<float>(output.begin() + static_cast<long>(start), output.end());
}

// Index of the first sample where the two differ; the shorter size if none does.
size_t firstDifference(const std::vector<float>& a, const std::vector<float>& b) {
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return i;
}

}  // namespace

class Vst3EffectCalls : public ModuleTest {
protected:
    // Output of a fresh instance for one sequence of host calls, the cutoff moved at the first.
    std::vector<float> cutoffMove(const std::vector<int32>& calls) {
        Instance plugin(module);
        Changes move;
        return render(plugin, calls, &move.add(kLowPassFrequency, 0.3));
    }

    // Output of a fresh instance whose synced LFO moves the low-pass: a few blocks at a context
    // tempo of 60, then blocks with `context`, or none.
    std::vector<float> lfoSweep(ProcessContext* context) {
        Instance plugin(module);
        Changes setup;
        setup.add(kLowPassFrequency, 0.5).add(kLowPassLfoStrength, 0.75);
        ProcessContext sixty{.state = ProcessContext::kTempoValid, .tempo = 60};
        std::vector<float> output;
        for (size_t b = 0; b < 44; ++b) {
            const std::vector<float> left =
                plugin.runSine(kBlock, 3000, b * kBlock, b == 0 ? &setup : nullptr, b < 4 ? &sixty : context);
            EXPECT_EQ(plugin.lastResult, kResultOk);
            if (b >= 4) output.insert(output.end(), left.begin(), left.end());
        }
        return output;
    }
};

TEST_F(Vst3EffectCalls, AHostCallIsCutOnlyAtChunksAndOnlyFromTwoChunksOn) {
    constexpr size_t kSame = SIZE_MAX;
    const struct {
        std::vector<int32> whole, cut;
        size_t differsAt;
    } rows[] = {
        {{60}, {30, 30}, 30},  // at most one chunk is never cut further: a safe reference for the rows below
        {{100}, {kChunk, 100 - kChunk}, kChunk},  // less than two chunks: no cut at the chunk, nor before it
        {{100}, {50, 50}, 50},
        {{2 * kChunk}, {kChunk, kChunk}, kSame},
    };
    const size_t latency = Instance(module).processor->getLatencySamples();
    for (const auto& row : rows) {
        const std::vector<float> whole = cutoffMove(row.whole);
        EXPECT_EQ(firstDifference(whole, cutoffMove(row.cut)),
                  row.differsAt == kSame ? whole.size() : row.differsAt + latency)
            << row.whole[0] << " against " << row.cut[0];
    }
}

TEST_F(Vst3EffectCalls, NoProcessContextGivesTheEffectTempoOne) {
    const std::vector<float> none = lfoSweep(nullptr);
    auto atTempo = [this](double tempo) {
        ProcessContext context{.state = ProcessContext::kTempoValid, .tempo = tempo};
        return lfoSweep(&context);
    };
    EXPECT_EQ(firstDifference(none, atTempo(1.0)), none.size());
    // The LFO is heard to follow the tempo: away from 60, and not to the adapter's other defaults.
    for (double tempo : {60.0, 10.0, 120.0}) EXPECT_LT(firstDifference(none, atTempo(tempo)), none.size()) << tempo;
}
