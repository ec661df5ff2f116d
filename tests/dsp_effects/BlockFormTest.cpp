// Distortion and rate reduction work on blocks four or two samples at a time; every sample comes
// out as the plain per-sample definition gives it, to the bit, special values included.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "dsp/effects/CDistortion.h"
#include "dsp/effects/CRateReduction.h"

using DSP::FX::CDistortion;
using DSP::FX::CRateReduction;

namespace {
uint32_t bits(float v) {
    uint32_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

// Noise over many magnitudes, with zeros of both signs, subnormals and values far above 1.
std::vector<float> awkward(size_t n, uint32_t seed) {
    std::vector<float> x(n);
    for (size_t i = 0; i < n; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const float unit = static_cast<float>(seed >> 8) / 8388608.0f - 1.0f;
        const float scales[] = {1.0f, 1e-3f, 1e-38f, 1e-42f, 40.0f, 3e7f, 1e30f};
        x[i] = unit * scales[(seed >> 3) % 7];
        if (i % 97 == 0) x[i] = 0.0f;
        if (i % 89 == 0) x[i] = -0.0f;
    }
    return x;
}

struct Block {
    std::vector<float> left, right;
    DSP::StereoBuffer io;
    Block(std::vector<float> l, std::vector<float> r) : left(std::move(l)), right(std::move(r)) {
        io.refer(left.data(), right.data(), static_cast<int>(left.size()));
    }
};

// The distortion's formula, per sample.
float distorted(const CDistortion& d, float sample) {
    const double x = sample;
    const double magnitude = std::sqrt(x * x);
    const double wetGain = static_cast<double>(d.getWet()) * d.getMakeup();
    return static_cast<float>(d.getDry() * x + wetGain * x * (10.0 + magnitude) / (x * x + 1.0 + magnitude * 9.0));
}
}  // namespace

TEST(DistortionBlockForm, MatchesItsFormulaForEveryDriveAndBlock) {
    for (float drive : {0.0f, 0.3f, 0.6f, 1.0f}) {
        CDistortion d;
        d.setDrive(drive);
        for (unsigned count : {0u, 1u, 2u, 3u, 96u, 333u}) {
            const std::vector<float> in = awkward(count, count + 7);
            Block b(in, in);
            if (count > 0) b.right[0] = std::numeric_limits<float>::infinity();  // the whole block takes the plain loop
            const std::vector<float> right = b.right;
            d.process(b.io, count);
            for (unsigned i = 0; i < count; ++i) {
                ASSERT_EQ(bits(b.left[i]), bits(distorted(d, in[i]))) << "drive " << drive << " at " << i;
                if (!std::isnan(distorted(d, right[i])))
                    ASSERT_EQ(bits(b.right[i]), bits(distorted(d, right[i]))) << "drive " << drive << " at " << i;
                else
                    ASSERT_TRUE(std::isnan(b.right[i]));
            }
        }
    }
}

TEST(RateReductionBlockForm, MatchesItsSampleLoop) {
    for (float bitsAmount : {1.0f, 0.95f, 0.5f, 0.0f}) {
        for (float rate : {1.0f, 0.99f, 0.6f, 0.05f}) {
            CRateReduction rr;
            rr.setBits(bitsAmount);
            rr.setRate(rate);
            const float levels = rr.getLevels(), inverse = 1.0f / levels, step = rr.getPhaseStep();
            float phase = 0, heldL = 0, heldR = 0;
            const std::vector<float> left = awkward(3000, 1), right = awkward(3000, 2);
            Block b(left, right);
            size_t at = 0;
            for (unsigned count : {96u, 1u, 7u, 500u, 3u, 1000u, 393u, 1000u}) {
                count = std::min<unsigned>(count, static_cast<unsigned>(left.size() - at));
                DSP::StereoBuffer part;
                part.refer(b.left.data() + at, b.right.data() + at, static_cast<int>(count));
                rr.process(part, count);
                for (unsigned i = 0; i < count; ++i, ++at) {
                    float l = left[at], r = right[at];
                    if (bitsAmount < 1.0f) {
                        l = (l > 0 ? std::floor(l * levels) : std::ceil(l * levels)) * inverse;
                        r = (r > 0 ? std::floor(r * levels) : std::ceil(r * levels)) * inverse;
                    }
                    phase += step;
                    if (phase >= 1.0f) {
                        heldL = l;
                        heldR = r;
                        phase -= std::floor(phase);
                    }
                    ASSERT_EQ(bits(b.left[at]), bits(heldL)) << bitsAmount << " " << rate << " at " << at;
                    ASSERT_EQ(bits(b.right[at]), bits(heldR)) << bitsAmount << " " << rate << " at " << at;
                }
            }
        }
    }
}
