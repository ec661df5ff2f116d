// The block forms of the modulators and delays give, to the bit, what their per-sample forms give.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "dsp/delays/CSimpleMonoDelay.h"
#include "dsp/effects/CFXLimiter.h"
#include "dsp/effects/CFXRingMod.h"
#include "dsp/effects/CVibrato.h"
#include "dsp/generators/CSineOSC.h"

using namespace DSP;

namespace {
uint32_t bits(float v) {
    uint32_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

std::vector<float> noise(size_t n, uint32_t seed, float amplitude = 1.0f) {
    std::vector<float> x(n);
    for (float& v : x) {
        seed = seed * 1664525u + 1013904223u;
        v = amplitude * (static_cast<float>(seed >> 8) / 8388608.0f - 1.0f);
    }
    return x;
}

const int kBlocks[] = {96, 1, 7, 200, 33, 128, 129, 2, 64, 300};
}  // namespace

TEST(ModulatorBlockForms, SineOscillatorFillIsNextFloatInARow) {
    Generators::CSineOSC a, b;
    for (Generators::CSineOSC* o : {&a, &b}) {
        o->setSampleRate(48000);
        o->setFrequency(800);
    }
    std::vector<float> block(500);
    for (int round = 0; round < 6; ++round) {
        if (round == 3) {
            a.setPhase(0.3);
            b.setPhase(0.3);
        }
        a.fill(block.data(), kBlocks[round]);
        for (int i = 0; i < kBlocks[round]; ++i) ASSERT_EQ(bits(block[static_cast<size_t>(i)]), bits(b.nextFloat())) << i;
    }
}

TEST(ModulatorBlockForms, RingModulatorBlockIsItsSampleStepThroughGlidesAndSettling) {
    FX::CFXRingMod block, single;
    for (FX::CFXRingMod* r : {&block, &single}) {
        r->setSampleRate(48000);
        r->setParam(0, 500);
        r->setParam(1, 0.6f);
    }
    std::vector<float> l = noise(30000, 1), r = noise(30000, 2), l2 = l, r2 = r;
    size_t at = 0;
    for (int round = 0; at < l.size(); ++round) {
        for (FX::CFXRingMod* m : {&block, &single}) {
            if (round == 40) m->setParam(1, 0.0f);
            if (round == 80) m->setParam(0, 0.0f);  // the gate closes
        }
        const auto n = static_cast<unsigned>(std::min<size_t>(static_cast<size_t>(kBlocks[round % 10]), l.size() - at));
        float* io[2] = {l.data() + at, r.data() + at};
        block.processInPlace(io, n);
        for (unsigned i = 0; i < n; ++i) single.tickInPlace(&l2[at + i], &r2[at + i]);
        at += n;
    }
    for (size_t i = 0; i < l.size(); ++i) {
        ASSERT_EQ(bits(l[i]), bits(l2[i])) << i;
        ASSERT_EQ(bits(r[i]), bits(r2[i])) << i;
    }
    EXPECT_EQ(bits(block.getMixCurrent()), bits(single.getMixCurrent()));
}

TEST(ModulatorBlockForms, VibratoBlockIsItsSampleStepActiveAndAtRest) {
    auto block = std::make_unique<FX::CVibrato>();
    auto single = std::make_unique<FX::CVibrato>();
    for (FX::CVibrato* v : {block.get(), single.get()}) {
        v->setSampleRate(48000);
        v->setParam(2, 5);
        v->setParam(3, 0.5f);
    }
    std::vector<float> l = noise(200000, 3), r = noise(200000, 4), l2 = l, r2 = r;
    size_t at = 0;
    for (int round = 0; at < l.size(); ++round) {
        for (FX::CVibrato* v : {block.get(), single.get()}) {
            if (round == 300) v->setParam(3, 0.0f);
            if (round == 1200) v->setParam(2, 0.0f);  // the gate closes
        }
        const int n = static_cast<int>(std::min<size_t>(static_cast<size_t>(kBlocks[round % 10]), l.size() - at));
        const bool replace = round % 3 != 0;
        block->processBlock(l.data() + at, r.data() + at, n, replace);
        for (int i = 0; i < n; ++i) {
            float outL, outR;
            single->process(l2[at + static_cast<size_t>(i)], r2[at + static_cast<size_t>(i)], &outL, &outR);
            if (replace) {
                l2[at + static_cast<size_t>(i)] = outL;
                r2[at + static_cast<size_t>(i)] = outR;
            }
        }
        at += static_cast<size_t>(n);
    }
    for (size_t i = 0; i < l.size(); ++i) {
        ASSERT_EQ(bits(l[i]), bits(l2[i])) << i;
        ASSERT_EQ(bits(r[i]), bits(r2[i])) << i;
    }
    EXPECT_EQ(bits(block->getDelay()), bits(single->getDelay()));
}

TEST(ModulatorBlockForms, DelayExchangeIsTickOnEverySample) {
    for (int length : {1, 2, 5, 64, 65, 221, 240}) {
        DELAY::CSimpleMonoDelay block, single;
        block.setDelaySamples(length);
        single.setDelaySamples(length);
        std::vector<float> x = noise(5000, static_cast<uint32_t>(length)), y = x;
        x[10] = y[10] = -0.0f;
        size_t at = 0;
        for (int round = 0; at < x.size(); ++round) {
            if (round == 30) {  // shrinking keeps the longer buffer
                block.setDelaySamples(length / 2);
                single.setDelaySamples(length / 2);
            }
            const auto n = static_cast<unsigned>(std::min<size_t>(static_cast<size_t>(kBlocks[round % 10]), x.size() - at));
            block.exchange(x.data() + at, n);
            for (unsigned i = 0; i < n; ++i) y[at + i] = single.tick(y[at + i]);
            at += n;
        }
        for (size_t i = 0; i < x.size(); ++i) ASSERT_EQ(bits(x[i]), bits(y[i])) << "delay " << length << " at " << i;
    }
}

TEST(ModulatorBlockForms, LimiterGivesTheSameWhateverTheBlockSize) {
    // One sample per call runs every library function afresh; longer blocks reuse their results.
    for (float release : {1.0f, 80.0f}) {
        FX::CFXLimiter block, single;
        for (FX::CFXLimiter* f : {&block, &single}) {
            f->setSampleRate(48000);
            f->setBlockSize(512);
            f->setParam(3, release);
            f->setParam(4, 0.9f);
        }
        std::vector<float> l = noise(20000, 5, 3.0f), r = noise(20000, 6, 2.0f);
        for (size_t i = 8000; i < 9000; ++i) l[i] = r[i] = 0.1f * l[i];  // release between the loud parts
        std::vector<float> l2 = l, r2 = r;
        size_t at = 0;
        for (int round = 0; at < l.size(); ++round) {
            const auto n = static_cast<unsigned>(std::min<size_t>(static_cast<size_t>(kBlocks[round % 10]), l.size() - at));
            block.process(l.data() + at, r.data() + at, n);
            for (unsigned i = 0; i < n; ++i) single.process(&l2[at + i], &r2[at + i], 1);
            at += n;
        }
        for (size_t i = 0; i < l.size(); ++i) {
            ASSERT_EQ(bits(l[i]), bits(l2[i])) << "release " << release << " at " << i;
            ASSERT_EQ(bits(r[i]), bits(r2[i])) << "release " << release << " at " << i;
        }
        EXPECT_EQ(bits(block.getReleaseCoefficient()), bits(single.getReleaseCoefficient()));
        EXPECT_EQ(bits(block.getMeterGain()), bits(single.getMeterGain()));
    }
}
