#include "dsp/effects/CVibrato.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace DSP::FX {

CVibrato::CVibrato() {
    lfo.setSampleRate(sampleRate);
    lfo.setShape(CLfoGenerator::kSine);
    lfo.setRate(6.0);
}

void CVibrato::setParam(int index, float value) {
    switch (index) {
        case 0:
            phaseSetting = value;
            lfo.setShift(value);
            break;
        case 2:
            lfo.setRate(value);
            gateTarget = value <= 0.0101f ? 0.0f : 1.0f;
            break;
        case 3:
            depthSetting = value;
            deriveDepth();
            break;
        default: break;
    }
}

// The depth is a time: the square makes the control fine near 0, and full depth swings the delay
// over 50 ms at any sample rate.
void CVibrato::deriveDepth() {
    const float c = depthSetting > 0.0f ? std::min(depthSetting, 1.0f) : 0.0f;
    depthTarget = std::min(65526.0f, static_cast<float>(static_cast<int>(0.05f * sampleRate * c * c)) * 0.5f);
}

void CVibrato::setSampleRate(float rate) {
    if (!(rate > 0)) return;
    sampleRate = rate;
    lfo.setSampleRate(rate);
    deriveDepth();
}

void CVibrato::reset() {
    std::memset(bufferL, 0, sizeof bufferL);
    std::memset(bufferR, 0, sizeof bufferR);
    writeIndex = 1;
    delay = 0;
    lfo.restart();
}

void CVibrato::process(float left, float right, float* outLeft, float* outRight) {
    depthCurrent += (depthTarget - depthCurrent) * 0.01f + 1e-19f;
    gateCurrent += (gateTarget - gateCurrent) * 0.00011f + 1e-19f;
    gateCurrent += (gateTarget - gateCurrent) * 0.00011f + 1e-19f;
    const float l = static_cast<float>(lfo.tick());
    const float wanted = depthCurrent * (1.0f + l) * gateCurrent;
    delay = std::clamp(delay + 1e-19f + 0.01f * (wanted - delay), 0.0f, 65536.0f);
    float pos = static_cast<float>(writeIndex) - delay;
    if (pos < 1.0f) pos += 65535.0f;
    if (pos < 1.0f) pos = 1.0f;  // only for delays beyond the buffer, which the depth never asks for
    const int i = static_cast<int>(pos);
    const float f = pos - static_cast<float>(i);
    *outLeft = bufferL[i - 1] + (bufferL[i] - bufferL[i - 1]) * f;
    *outRight = bufferR[i - 1] + (bufferR[i] - bufferR[i - 1]) * f;
    bufferL[writeIndex] = left;
    bufferR[writeIndex] = right;
    if (++writeIndex == 65536) {
        // Entry 0 repeats the newest sample so the interpolation runs across the seam.
        bufferL[0] = left;
        bufferR[0] = right;
        writeIndex = 1;
    }
}

namespace {
bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }
}  // namespace

void CVibrato::processBlock(float* left, float* right, int count, bool replace) {
    // Depth and gate glide toward their targets; once a step leaves both where they are, they
    // stay there for good and need no more steps.
    float depth = depthCurrent, gate = gateCurrent, wait = delay;
    const float depthGoal = depthTarget, gateGoal = gateTarget;
    bool resting = false;
    int write = writeIndex;
    int i = 0;
    // The LFO's step runs in the same loop, beside the delay's.
    lfo.forEachTick(count, [&](double tick) {
        if (!resting) {
            const float nextDepth = depth + ((depthGoal - depth) * 0.01f + 1e-19f);
            float nextGate = gate + ((gateGoal - gate) * 0.00011f + 1e-19f);
            nextGate += (gateGoal - nextGate) * 0.00011f + 1e-19f;
            resting = sameBits(nextDepth, depth) && sameBits(nextGate, gate);
            depth = nextDepth;
            gate = nextGate;
        }
        const float l = static_cast<float>(tick);
        const float wanted = depth * (1.0f + l) * gate;
        wait = std::clamp(wait + 1e-19f + 0.01f * (wanted - wait), 0.0f, 65536.0f);
        const float inL = left[i], inR = right[i];
        if (replace) {
            float pos = static_cast<float>(write) - wait;
            if (pos < 1.0f) pos += 65535.0f;
            if (pos < 1.0f) pos = 1.0f;
            const int k = static_cast<int>(pos);
            const float f = pos - static_cast<float>(k);
            left[i] = bufferL[k - 1] + (bufferL[k] - bufferL[k - 1]) * f;
            right[i] = bufferR[k - 1] + (bufferR[k] - bufferR[k - 1]) * f;
        }
        bufferL[write] = inL;
        bufferR[write] = inR;
        if (++write == 65536) {
            bufferL[0] = inL;
            bufferR[0] = inR;
            write = 1;
        }
        ++i;
    });
    depthCurrent = depth;
    gateCurrent = gate;
    delay = wait;
    writeIndex = write;
}

}  // namespace DSP::FX
