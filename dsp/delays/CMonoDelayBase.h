#pragma once
#include "dsp/CDspBaseObject.h"

namespace DSP::DELAY {

class CMonoDelayBase : public CDspBaseObject {
public:
    virtual ~CMonoDelayBase() = default;
    virtual void setDelayMs(float ms) = 0;
    virtual void setDelaySamples(int samples) = 0;
    virtual int getDelaySamples() const = 0;
    virtual float getDelayMs() const = 0;
};

}  // namespace DSP::DELAY
