// The LFO's block forms give the ticks of tick(), in order and to the bit, for every waveform.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "dsp/generators/CLfoGenerator.h"

using DSP::CLfoGenerator;

namespace {
CLfoGenerator make(int shape) {
    CLfoGenerator lfo;
    lfo.setSampleRate(48000);
    lfo.setShape(shape);
    lfo.setRate(7.3);
    lfo.setShift(0.25);
    lfo.restart();
    return lfo;
}

bool same(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
}  // namespace

TEST(LfoBlockForms, AccumulateAndFillAreTicksInOrder) {
    for (int shape = -1; shape <= 7; ++shape) {
        CLfoGenerator summed = make(shape), filled = make(shape), single = make(shape);
        std::vector<double> block(300);
        for (int count : {96, 1, 0, 7, 300, 33}) {
            double expected = 0.25;
            for (int i = 0; i < count; ++i) expected += single.tick();
            ASSERT_TRUE(same(summed.accumulate(0.25, count), expected)) << "shape " << shape << " count " << count;
        }
        CLfoGenerator reference = make(shape);
        for (int count : {96, 1, 7, 300, 33}) {
            filled.fill(block.data(), count);
            for (int i = 0; i < count; ++i)
                ASSERT_TRUE(same(block[static_cast<size_t>(i)], reference.tick())) << "shape " << shape << " at " << i;
            if (count == 7) {  // a restart and a new shift between blocks
                filled.setShift(0.6);
                reference.setShift(0.6);
                filled.restart();
                reference.restart();
            }
        }
    }
}
