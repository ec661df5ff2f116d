// The audio path: sample rate, block size, the adapter's own channel buffers, events and
// processReplacing.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "adapters/vst2/OndraVST.h"
#include "framework/plugin/ChunkedProcess.h"

using namespace Vst2;

namespace {
// Larger blocks are no host's; refusing them keeps a bad value from taking all memory.
constexpr VstInt32 kLargestBlock = 1 << 20;
constexpr int kLargestChannelCount = 2 * Ondra::OndraAudioBlock::kMaxPairs;
}  // namespace

void OndraVST::suspend() {
    if (plugin) plugin->reset();
}

void OndraVST::resume() {
    if (plugin) plugin->reset();
    AudioEffectX::resume();
}

void OndraVST::setSampleRate(float rate) {
    if (!(rate > 0.0f) || !std::isfinite(rate)) return;
    AudioEffectX::setSampleRate(rate);
    if (plugin) plugin->setSampleRate(rate);
}

void OndraVST::setBlockSize(VstInt32 size) {
    if (size <= 0 || size > kLargestBlock) return;
    AudioEffectX::setBlockSize(size);
    if (plugin) plugin->setBlockSize(size);
    resizeChannelBuffers();
}

void OndraVST::resizeChannelBuffers() {
    inputBuffer.resize(blockSize, std::max({2 * inputPairs, hostInputChannels, 2}));
    outputBuffer.resize(blockSize, std::max({2 * outputPairs, hostOutputChannels, 2}));
}

bool OndraVST::setSpeakerArrangement(VstSpeakerArrangement* input, VstSpeakerArrangement* output) {
    if (input && input->numChannels > 0 && input->numChannels <= kLargestChannelCount)
        hostInputChannels = input->numChannels;
    if (output && output->numChannels > 0 && output->numChannels <= kLargestChannelCount)
        hostOutputChannels = output->numChannels;
    resizeChannelBuffers();
    return true;
}

bool OndraVST::getSpeakerArrangement(VstSpeakerArrangement** input, VstSpeakerArrangement** output) {
    if (input) *input = nullptr;
    if (output) *output = nullptr;
    return false;
}

bool OndraVST::setBypass(bool on) {
    bypassState = on;
    suspend();
    if (plugin) plugin->setBypass(on);
    return true;
}

VstInt32 OndraVST::processEvents(VstEvents* events) {
    if (!events || events->numEvents < 1) return 1;
    for (VstInt32 i = 0; i < events->numEvents; ++i) {
        const VstEvent* event = events->events[i];
        if (!event || event->type != kVstMidiType) continue;
        const auto* midi = reinterpret_cast<const VstMidiEvent*>(event);
        Ondra::OndraMidiEvent record;
        record.delta = midi->deltaFrames;
        record.status = static_cast<uint8_t>(midi->midiData[0]);
        record.data1 = static_cast<uint8_t>(midi->midiData[1]);
        record.data2 = static_cast<uint8_t>(midi->midiData[2]);
        record.kind = record.status & 0xF0;
        record.value1 = static_cast<float>(record.data2 & 127) / 127.0f;
        midiEvents.push_back(record);
    }
    return 1;
}

void OndraVST::copyInputs(float** inputs, int frames) {
    const int channels = std::min({hostInputChannels, cEffect.numInputs, inputBuffer.getChannelCount()});
    const size_t bytes = static_cast<size_t>(frames) * sizeof(float);
    for (int c = 0; c < channels; ++c) {
        const float* source = inputs ? inputs[c] : nullptr;
        if (source)
            std::memcpy(inputBuffer.channel(c), source, bytes);
        else
            std::memset(inputBuffer.channel(c), 0, bytes);
    }
    // A mono input feeds both sides of the stereo path.
    if (channels < 2) {
        if (channels == 0) std::memset(inputBuffer.channel(0), 0, bytes);
        std::memcpy(inputBuffer.channel(1), inputBuffer.channel(0), bytes);
    }
}

void OndraVST::copyOutputs(float** outputs, int frames) {
    if (!outputs) return;
    const int channels = std::min({hostOutputChannels, cEffect.numOutputs, outputBuffer.getChannelCount()});
    for (int c = 0; c < channels; ++c)
        if (outputs[c]) std::memcpy(outputs[c], outputBuffer.channel(c), static_cast<size_t>(frames) * sizeof(float));
}

void OndraVST::referChannels(Ondra::OndraAudioBlock& block, int frames) {
    block.inputCount = std::min(inputBuffer.getChannelCount() / 2, Ondra::OndraAudioBlock::kMaxPairs);
    for (int pair = 0; pair < block.inputCount; ++pair)
        block.in[pair].refer(inputBuffer.channel(2 * pair), inputBuffer.channel(2 * pair + 1), frames);
    block.outputCount = std::min(outputBuffer.getChannelCount() / 2, Ondra::OndraAudioBlock::kMaxPairs);
    for (int pair = 0; pair < block.outputCount; ++pair)
        block.out[pair].refer(outputBuffer.channel(2 * pair), outputBuffer.channel(2 * pair + 1), frames);
}

void OndraVST::fillTimeLine(Ondra::OndraAudioBlock& block, const VstTimeInfo& time) const {
    block.samplePos = time.samplePos;
    block.ppqPos = time.ppqPos;
    block.barStartPos = time.barStartPos;
    block.tempo = static_cast<float>(time.tempo);
    block.transportChanged = (time.flags & kVstTransportChanged) != 0;
    block.transportPlaying = (time.flags & kVstTransportPlaying) != 0;
    block.cycleActive = (time.flags & kVstTransportCycleActive) != 0;
    block.recording = (time.flags & kVstTransportRecording) != 0;
    block.automationWriting = (time.flags & kVstAutomationWriting) != 0;
    block.automationReading = (time.flags & kVstAutomationReading) != 0;
}

bool OndraVST::buffersHold(int frames) const {
    if (inputBuffer.getSamples() < frames || outputBuffer.getSamples() < frames) return false;
    for (int c = 0; c < inputBuffer.getChannelCount(); ++c)
        if (!inputBuffer.channel(c)) return false;
    for (int c = 0; c < outputBuffer.getChannelCount(); ++c)
        if (!outputBuffer.channel(c)) return false;
    return true;
}

void OndraVST::silence(float** outputs, int frames) const {
    if (!outputs) return;
    for (int c = 0; c < cEffect.numOutputs; ++c)
        if (outputs[c]) std::memset(outputs[c], 0, static_cast<size_t>(frames) * sizeof(float));
}

void OndraVST::processReplacing(float** inputs, float** outputs, VstInt32 frames) {
    if (frames <= 0) return;
    if (!plugin) {
        silence(outputs, frames);
        return;
    }
    if (!midiEvents.empty()) {
        plugin->processMidiEvents(midiEvents);
        midiEvents.clear();
    }
    if (frames > blockSize) setBlockSize(frames);
    if (!buffersHold(frames)) {
        silence(outputs, frames);
        return;
    }
    const VstTimeInfo* time = getTimeInfo(0xFFFF);

    // The host's buffers are read here and written at the end only, so in-place hosts are safe.
    copyInputs(inputs, frames);
    Ondra::OndraAudioBlock block;
    referChannels(block, frames);
    fillTimeLine(block, time ? *time : defaultTime);

    // Queued host values wait for the automation grid; while the host is setting a value
    // meanwhile, the queue is left alone.
    Ondra::ChunkingRules rules;
    rules.sliceAutomation = plugin->getAutomationGrid() != -1 && !settingParameter;
    rules.whileSlicing = &hostIsSetting;
    Ondra::processInChunks(*plugin, block, frames, rules);

    copyOutputs(outputs, frames);
}
