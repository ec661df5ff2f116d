#include "dsp/effects/CVibrato.h"

#include <algorithm>
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
        case 3: {
            depthSetting = value;
            const float c = std::clamp(value, 0.0f, 1.0f);
            // The square makes the control fine near 0; full depth swings the delay over 50 ms.
            depthTarget = std::min(65526.0f, static_cast<float>(static_cast<int>(0.05f * sampleRate * c * c)) * 0.5f);
            break;
        }
        default: break;
    }
}

void CVibrato::setSampleRate(float rate) {
    sampleRate = rate;
    lfo.setSampleRate(rate);
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

}  // namespace DSP::FX
