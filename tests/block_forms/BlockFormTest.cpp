// Every stage that works on blocks gives, to the bit, what its per-sample form gives, through
// setting changes and whatever the block sizes.

#include <array>
#include <limits>
#include <memory>
#include <string>

#include "dsp/delays/CSimpleMonoDelay.h"
#include "dsp/effects/CDistortion.h"
#include "dsp/effects/CFXLimiter.h"
#include "dsp/effects/CFXRingMod.h"
#include "dsp/effects/CRateReduction.h"
#include "dsp/effects/CVibrato.h"
#include "dsp/generators/CLfoGenerator.h"
#include "dsp/memory/BlockScan.h"
#include "effect/CGainRamp.h"
#include "effect/MixSmoother.h"
#include "support/BlockForm.h"

using namespace DSP;
using BlockForm::same;
using BlockForm::Step;

namespace {

struct Case {
    std::string name;
    Step step;
    std::vector<float> left, right;
    // Compares what the two objects hold besides the audio.
    std::function<bool()> sameState = [] { return true; };
};

// Two objects of one kind set up alike, the first run as blocks, the second sample by sample.
template <typename T>
std::shared_ptr<std::array<T, 2>> pair(const std::function<void(T&)>& setUp) {
    auto both = std::make_shared<std::array<T, 2>>();
    for (T& one : *both) setUp(one);
    return both;
}

Case ringModulator() {
    auto m = pair<FX::CFXRingMod>([](auto& ring) {
        ring.setSampleRate(48000);
        ring.setFrequency(500);
        ring.setMix(0.6f);
    });
    return {"ring modulator", [m](int round, bool asBlock, float* l, float* r, int n) {
                FX::CFXRingMod& ring = (*m)[asBlock ? 0 : 1];
                if (round == 40) ring.setMix(0.0f);
                if (round == 80) ring.setFrequency(0.0f);  // the gate closes
                float* io[2] = {l, r};
                if (asBlock) ring.processInPlace(io, static_cast<unsigned>(n));
                else for (int i = 0; i < n; ++i) ring.tickInPlace(l + i, r + i);
            }, BlockForm::noise(30000, 1), BlockForm::noise(30000, 2),
            [m] { return same((*m)[0].getMixCurrent(), (*m)[1].getMixCurrent()); }};
}

Case vibrato() {
    auto v = pair<FX::CVibrato>([](auto& vib) {
        vib.setSampleRate(48000);
        vib.setFrequency(5);
        vib.setDepth(0.5f);
    });
    return {"vibrato", [v](int round, bool asBlock, float* l, float* r, int n) {
                FX::CVibrato& vib = (*v)[asBlock ? 0 : 1];
                if (round == 300) vib.setDepth(0.0f);
                if (round == 1200) vib.setFrequency(0.0f);  // the gate closes
                const bool replace = round % 3 != 0;  // else the block only feeds the delay line
                if (asBlock) return vib.processBlock(l, r, n, replace);
                for (int i = 0; i < n; ++i) {
                    float outL, outR;
                    vib.process(l[i], r[i], &outL, &outR);
                    if (replace) l[i] = outL, r[i] = outR;
                }
            }, BlockForm::noise(200000, 3), BlockForm::noise(200000, 4),
            [v] { return same((*v)[0].getDelay(), (*v)[1].getDelay()); }};
}

Case monoDelay(int length) {
    auto d = pair<DELAY::CSimpleMonoDelay>([length](auto& delay) { delay.setDelaySamples(length); });
    std::vector<float> in = BlockForm::noise(5000, static_cast<uint32_t>(length));
    in[10] = -0.0f;
    return {"delay of " + std::to_string(length), [d, length](int round, bool asBlock, float* l, float*, int n) {
                DELAY::CSimpleMonoDelay& delay = (*d)[asBlock ? 0 : 1];
                if (round == 30) delay.setDelaySamples(length / 2);  // shrinking keeps the longer buffer
                if (asBlock) delay.exchange(l, static_cast<unsigned>(n));
                else for (int i = 0; i < n; ++i) l[i] = delay.tick(l[i]);
            }, in, in};
}

// One sample per call runs every library function afresh; longer blocks reuse their results.
Case limiter(float releaseMs) {
    auto f = pair<FX::CFXLimiter>([releaseMs](auto& limiter) {
        limiter.setSampleRate(48000);
        limiter.setBlockSize(512);
        limiter.setReleaseMs(releaseMs);
        limiter.setOutputGain(0.9f);
    });
    std::vector<float> l = BlockForm::noise(20000, 5, 3.0f), r = BlockForm::noise(20000, 6, 2.0f);
    for (size_t i = 8000; i < 9000; ++i) l[i] = r[i] = 0.1f * l[i];  // release between the loud parts
    return {"limiter releasing in " + std::to_string(releaseMs) + " ms",
            [f](int, bool asBlock, float* left, float* right, int n) {
                if (asBlock) return (*f)[0].process(left, right, static_cast<unsigned>(n));
                for (int i = 0; i < n; ++i) (*f)[1].process(left + i, right + i, 1);
            }, l, r,
            [f] {
                return same((*f)[0].getReleaseCoefficient(), (*f)[1].getReleaseCoefficient()) &&
                       same((*f)[0].getMeterGain(), (*f)[1].getMeterGain());
            }};
}

// Block by block the right channel may start with infinity, which sends the block down the plain loop.
Case distortion(float drive) {
    auto d = std::make_shared<FX::CDistortion>();
    d->setDrive(drive);
    return {"distortion at drive " + std::to_string(drive), [d](int round, bool asBlock, float* l, float* r, int n) {
                if (round % 2) r[0] = std::numeric_limits<float>::infinity();
                if (asBlock) {
                    StereoBuffer io;
                    io.refer(l, r, n);
                    return d->process(io, static_cast<unsigned>(n));
                }
                const double wetGain = static_cast<double>(d->getWet()) * d->getMakeup();
                for (float* x : {l, r}) {
                    for (int i = 0; i < n; ++i) {
                        const double s = x[i], magnitude = std::sqrt(s * s);
                        x[i] = static_cast<float>(d->getDry() * s +
                                                  wetGain * s * (10.0 + magnitude) / (s * s + 1.0 + magnitude * 9.0));
                    }
                }
            }, BlockForm::awkward(3000, 7), BlockForm::awkward(3000, 8)};
}

// The sample form is the rate reducer's definition: quantise, then hold at each phase wrap.
Case rateReduction(float bits, float rate) {
    auto rr = std::make_shared<FX::CRateReduction>();
    rr->setBits(bits);
    rr->setRate(rate);
    auto held = std::make_shared<std::array<float, 3>>();  // phase, left, right
    return {"rate reduction " + std::to_string(bits) + " / " + std::to_string(rate),
            [rr, held, bits](int, bool asBlock, float* l, float* r, int n) {
                if (asBlock) {
                    StereoBuffer io;
                    io.refer(l, r, n);
                    return rr->process(io, static_cast<unsigned>(n));
                }
                const float levels = rr->getLevels(), inverse = 1.0f / levels;
                auto& [phase, heldL, heldR] = *held;
                for (int i = 0; i < n; ++i) {
                    if (bits < 1.0f) {
                        for (float* x : {l + i, r + i})
                            *x = (*x > 0 ? std::floor(*x * levels) : std::ceil(*x * levels)) * inverse;
                    }
                    phase += rr->getPhaseStep();
                    if (phase >= 1.0f) {
                        heldL = l[i], heldR = r[i];
                        phase -= std::floor(phase);
                    }
                    l[i] = heldL, r[i] = heldR;
                }
            }, BlockForm::awkward(3000, 1), BlockForm::awkward(3000, 2)};
}

// Gains that glide, that are close enough to jump, and zeros of both signs, with the peaks.
Case gainRamp() {
    auto ramp = std::make_shared<CGainRamp>();
    auto bySample = std::make_shared<std::array<float, 5>>(std::array<float, 5>{1, 0, 0, 0, 0});
    return {"gain ramp", [ramp, bySample](int round, bool asBlock, float* l, float* r, int n) {
                const float gains[] = {1.0f, 0.5f, 0.50004f, 1.7f, 0.0f, -0.0f};
                const float gain = gains[std::min(round / 12, 5)];
                auto& [current, minL, maxL, minR, maxR] = *bySample;
                if (round % 12 == 5) std::fill(l, l + n, -0.0f);
                if (asBlock) {
                    if (round == 60) ramp->clearPeaks();
                    ramp->setGain(gain);
                    return ramp->apply(l, r, n);
                }
                if (round == 60) minL = maxL = minR = maxR = 0;
                const bool constant = std::fabs((gain - 1e-19f) - current) < 0.0001f;
                for (int i = 0; i < n; ++i) {
                    if (!constant) current += (gain - current) * 0.005f;
                    l[i] *= constant ? gain : current;
                    r[i] *= constant ? gain : current;
                    minL = std::min(minL, l[i]), maxL = std::max(maxL, l[i]);
                    minR = std::min(minR, r[i]), maxR = std::max(maxR, r[i]);
                }
            }, BlockForm::noise(7000, 9), BlockForm::noise(7000, 10, 0.5f),
            [ramp, bySample] {
                const auto& [current, minL, maxL, minR, maxR] = *bySample;
                return same(ramp->getCurrent(), current) && same(ramp->minL, minL) && same(ramp->maxL, maxL) &&
                       same(ramp->minR, minR) && same(ramp->maxR, maxR);
            }};
}

// The dry/wet crossfade from any start: either restarted at each block, as a settled mix is, or
// carried on. The smoother reuses the amounts of its last block while start and target repeat.
Case mixSmoother() {
    auto smoother = std::make_shared<MixSmoother>();
    auto amounts = std::make_shared<std::array<float, 2>>();
    auto other = std::make_shared<std::vector<float>>(BlockForm::noise(9000, 11));
    auto position = std::make_shared<std::array<size_t, 2>>();
    return {"mix smoother", [=](int round, bool asBlock, float* l, float* r, int n) {
                struct Run {
                    float start, target;
                    bool restart;
                };
                const Run runs[] = {{0.0f, 0.0f, true},   {0.3f, 0.8f, false}, {1.0f, 0.2f, false},
                                    {0.5f, 0.5f, true},   {0.0f, 1.0f, false},
                                    {0.2f, std::numeric_limits<float>::quiet_NaN(), false}};
                const Run& run = runs[std::min(round / 15, 5)];
                float& k = (*amounts)[asBlock ? 0 : 1];
                size_t& at = (*position)[asBlock ? 0 : 1];
                if (run.restart || round % 15 == 0) k = run.start;
                const float* o = other->data() + at;
                at += static_cast<size_t>(n);
                if (asBlock) return smoother->apply(l, r, o, o, k, run.target, n);
                for (int i = 0; i < n; ++i) {
                    k = static_cast<float>(static_cast<double>(k) + 1e-24 + (static_cast<double>(run.target) - k) * 0.005);
                    l[i] += (o[i] - l[i]) * k;
                    r[i] += (o[i] - r[i]) * k;
                }
            }, BlockForm::noise(9000, 12), BlockForm::noise(9000, 13)};
}

std::vector<Case> cases() {
    std::vector<Case> all = {ringModulator(), vibrato(), limiter(1), limiter(80), gainRamp(), mixSmoother()};
    for (int length : {1, 2, 5, 64, 65, 221, 240}) all.push_back(monoDelay(length));
    for (float drive : {0.0f, 0.3f, 0.6f, 1.0f}) all.push_back(distortion(drive));
    for (float bits : {1.0f, 0.95f, 0.5f, 0.0f})
        for (float rate : {1.0f, 0.99f, 0.6f, 0.05f}) all.push_back(rateReduction(bits, rate));
    return all;
}

}  // namespace

TEST(BlockForms, EveryStageGivesItsSampleForm) {
    for (Case& c : cases()) EXPECT_TRUE(BlockForm::sameAsSampleForm(c.step, c.left, c.right, c.sameState)) << c.name;
}

TEST(BlockForms, LfoAccumulateIsTicksInOrder) {
    auto make = [](int shape) {
        CLfoGenerator lfo;
        lfo.setSampleRate(48000);
        lfo.setShape(shape);
        lfo.setRate(7.3);
        lfo.setShift(0.25);
        lfo.restart();
        return lfo;
    };
    for (int shape = -1; shape <= 7; ++shape) {
        CLfoGenerator summed = make(shape), single = make(shape);
        for (int count : {96, 1, 0, 7, 300, 33}) {
            double expected = 0.25;
            for (int i = 0; i < count; ++i) expected += single.tick();
            ASSERT_TRUE(same(summed.accumulate(0.25, count), expected)) << "shape " << shape << " count " << count;
            if (count == 7) {  // a restart and a new shift between blocks
                for (CLfoGenerator* lfo : {&summed, &single}) {
                    lfo->setShift(0.6);
                    lfo->restart();
                }
            }
        }
    }
}

// The peak meters read these scans; the scans of the audio path are checked through their stages above.
TEST(BlockForms, MinMaxScansAreTheirLoopsWithSignedZerosAndNaN) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<std::vector<float>> cases = {{0.5f, -0.0f, 0.0f, 2.0f, -3.0f, nan, 1.0f, 0.25f, -0.0f},
                                                   {-0.0f, 0.0f, -0.0f, 0.0f, 0.0f},
                                                   {0.0f, -0.0f, 0.0f, -0.0f, -0.0f, 0.0f, 0.0f, 0.0f, -0.0f},
                                                   {nan, nan, nan, nan, 3.0f},
                                                   {}};
    for (float start : {0.0f, -0.0f, 1.0f, nan}) {
        for (const std::vector<float>& x : cases) {
            for (float gain : {1.0f, -0.5f, 0.0f}) {
                std::vector<float> scaled = x, expected = x;
                float low = start, high = -start, expectLow = start, expectHigh = -start;
                for (float& v : expected) {
                    v *= gain;
                    expectLow = std::min(expectLow, v);
                    expectHigh = std::max(expectHigh, v);
                }
                Block::scaleMinMax(scaled.data(), static_cast<int>(scaled.size()), gain, low, high);
                EXPECT_TRUE(same(low, expectLow) && same(high, expectHigh));
                for (size_t i = 0; i < x.size(); ++i) EXPECT_TRUE(same(scaled[i], expected[i]));
                if (gain != 1.0f) continue;
                low = start, high = -start;
                Block::minMax(x.data(), static_cast<int>(x.size()), low, high);
                EXPECT_TRUE(same(low, expectLow) && same(high, expectHigh));
            }
        }
    }
}
