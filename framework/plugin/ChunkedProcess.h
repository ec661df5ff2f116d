#pragma once
#include "framework/plugin/OndraOS.h"

namespace Ondra {

struct ChunkingRules {
    // Cut chunks at queued automation points.
    bool sliceAutomation = true;
    // A block shorter than two chunks runs whole.
    bool wholeBlockBelowTwoChunks = false;
    // Set while queued values go into their parameters, so an adapter can tell them from other
    // changes (and need not report them back to the host they came from).
    bool* whileSlicing = nullptr;
    // The rate behind beat positions; 0 takes the plug-in's. A host without transport gives none.
    float positionSampleRate = 0.0f;
};

// The adapters' calling order for one host block: cuts it into control chunks (and at automation
// points), runs `process` per chunk and keeps the transport fields exact per chunk. `block` must
// hold the host's buffers (referring, not owning), tempo and time line for the whole block.
void processInChunks(OndraOS& plugin, OndraAudioBlock& block, int hostSamples, const ChunkingRules& rules);

// Samples to the next beat at the block's start, from ppqPos and tempo.
int samplesToNextBeat(double ppqPos, float tempo, float sampleRate);

}  // namespace Ondra
