// What the effect asks of its host, answered through the VST 2 host callback.
#include <algorithm>

#include "adapters/vst2/OndraVST.h"

using namespace Vst2;

void OndraVST::setNumInputs(int count) {
    // The effect counts channels, twice its pairs.
    inputPairs = std::max(0, (count + 1) / 2);
    AudioEffect::setNumInputs(2 * inputPairs);
    resizeChannelBuffers();
    ioChanged();
}

void OndraVST::setNumOutputs(int count) {
    outputPairs = std::max(0, (count + 1) / 2);
    AudioEffect::setNumOutputs(2 * outputPairs);
    resizeChannelBuffers();
    ioChanged();
}

void OndraVST::setInitialDelay(int samples) {
    AudioEffect::setInitialDelay(samples);
    ioChanged();
}

float OndraVST::getHostTempo() {
    const VstTimeInfo* time = getTimeInfo(kVstTempoValid);
    return static_cast<float>(time ? time->tempo : defaultTime.tempo);
}

void OndraVST::updateDisplay() {
    AudioEffectX::updateDisplay();
    ioChanged();
}
