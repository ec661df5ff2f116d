#pragma once
#include "dsp/delays/CStereoDelayBase.h"
#include "dsp/StereoBuffer.h"

namespace DSP::DELAY {

class CSimpleStereoDelay : public CStereoDelayBase {
public:
    void process(const DSP::StereoBuffer& in, const DSP::StereoBuffer& out, unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            out.left[i] = left.tick(in.left[i]);
            out.right[i] = right.tick(in.right[i]);
        }
    }
    // tick on every sample pair of a block, in place.
    void exchange(float* l, float* r, unsigned count) {
        left.exchange(l, count);
        right.exchange(r, count);
    }
    void tick(float& l, float& r) {
        l = left.tick(l);
        r = right.tick(r);
    }
};

}  // namespace DSP::DELAY
