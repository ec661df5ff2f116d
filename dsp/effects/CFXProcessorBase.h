#pragma once

namespace DSP {

// A stereo block stage the effect can place before or behind its filters.
class CFXProcessorBase {
public:
    virtual ~CFXProcessorBase() = default;
    virtual void setSampleRate(float hertz) { sampleRate = hertz; }
    virtual void reset() {}

protected:
    float sampleRate = 44100.0f;
};

}  // namespace DSP
