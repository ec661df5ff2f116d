#pragma once

namespace DSP::FX {

// The common base of the dynamics modules.
class CFX_Module {
public:
    virtual ~CFX_Module() = default;
    virtual void reserved() {}
    virtual void setSampleRate(float rate) { sampleRate = rate; }
    virtual void setBlockSize(int) {}
    virtual void setActive(bool on) { active = on; }
    virtual bool isActive() { return active; }
    virtual void reset() {}

protected:
    bool active = false;
    float sampleRate = 44100.0f;
};

}  // namespace DSP::FX
