#pragma once
#include <functional>
#include <memory>

#include "effect/CZonfra.h"
#include "framework/plugin/ChunkedProcess.h"
#include "support/Samples.h"

// The host side of an embedding program: its plug-in type, and the latency the effect reports.
struct RecordingCallback : Ondra::OndraCallback {
    void setInitialDelay(int samples) override { reportedLatency = samples; }
    int getPluginType() override { return Ondra::kPluginTypeEmbedded; }
    int reportedLatency = -1;
};

// Drives an effect the way an adapter does: host blocks cut into control chunks.
struct EffectHarness {
    explicit EffectHarness(float rate = 44100.0f, int maxBlock = 512)
        : effect(std::make_unique<CZonfra>(&callback)), sampleRate(rate) {
        effect->setSampleRate(rate);
        effect->setBlockSize(maxBlock);
    }

    // Runs `left`/`right` through the effect in host blocks of `hostBlock` samples, in place;
    // `beforeBlock` may change settings, given each block's index.
    void run(std::vector<float>& left, std::vector<float>& right, int hostBlock,
             const std::function<void(int)>& beforeBlock = {}) {
        for (size_t at = 0, index = 0; at < left.size(); at += static_cast<size_t>(hostBlock)) {
            if (beforeBlock) beforeBlock(static_cast<int>(index++));
            const int n = static_cast<int>(std::min<size_t>(static_cast<size_t>(hostBlock), left.size() - at));
            runBlock(left.data() + at, right.data() + at, n);
        }
    }

    void runBlock(float* left, float* right, int n) {
        Ondra::OndraAudioBlock block{.inputCount = 1, .outputCount = 1, .samplePos = position,
                                     .ppqPos = tempo > 0 ? position / (60.0 / tempo * sampleRate) : 0.0,
                                     .tempo = tempo, .transportPlaying = playing};
        block.in[0].refer(left, right, n);
        block.out[0].refer(left, right, n);
        Ondra::processInChunks(*effect, block, n, Ondra::ChunkingRules{});
        position += n;
    }

    void set(int id, float value) { effect->getParameter(id)->setValue(value); }
    void setAll(std::initializer_list<std::pair<int, float>> values) {
        for (auto [id, value] : values) set(id, value);
    }
    std::string presetName() const {
        char text[256] = {};
        effect->getProgramName(text);
        return text;
    }

    RecordingCallback callback;
    std::unique_ptr<CZonfra> effect;
    double sampleRate;
    double position = 0;
    bool playing = false;  // the host's transport
    float tempo = 120;
};

using TestSupport::sine;
