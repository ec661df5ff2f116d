#pragma once
#include "dsp/CDspBaseObject.h"

namespace DSP::FX {

// A processing object with numbered parameters.
class CFXBase : public CDspBaseObject {
public:
    virtual void setParam(int, float) {}
    virtual int reservedFx() { return 0; }
    virtual ~CFXBase() = default;
};

}  // namespace DSP::FX
