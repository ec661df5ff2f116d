// The effect's block forms of its per-sample smoothers give what the sample loops give, to the bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "effect/CGainRamp.h"
#include "effect/MixSmoother.h"

namespace {
template <typename T>
bool same(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

std::vector<float> wave(size_t n, double step, float scale = 0.9f) {
    std::vector<float> x(n);
    for (size_t i = 0; i < n; ++i) x[i] = scale * static_cast<float>(std::sin(step * static_cast<double>(i)));
    return x;
}

// The dry/wet crossfade as one loop over the samples.
void mixBySample(float* wetL, float* wetR, const float* otherL, const float* otherR, float& k, float target, int n) {
    for (int i = 0; i < n; ++i) {
        k = static_cast<float>(static_cast<double>(k) + 1e-24 + (static_cast<double>(target) - k) * 0.005);
        wetL[i] += (otherL[i] - wetL[i]) * k;
        wetR[i] += (otherR[i] - wetR[i]) * k;
    }
}
}  // namespace

TEST(EffectBlockForms, MixSmootherIsTheSampleLoopFromAnyStart) {
    struct Run {
        float start, target;
        int count;
    };
    const Run runs[] = {{0.0f, 0.0f, 96},  {0.0f, 0.0f, 96},    {0.0f, 0.0f, 40},   {0.0f, 0.0f, 3000},
                        {0.3f, 0.8f, 96},  {0.3f, 0.8f, 5000},  {1.0f, 0.2f, 1500}, {0.5f, 0.5f, 7},
                        {0.0f, 1.0f, 700}, {0.2f, std::numeric_limits<float>::quiet_NaN(), 20}};
    MixSmoother smoother;
    for (const Run& run : runs) {
        std::vector<float> wetL = wave(static_cast<size_t>(run.count), 0.01), wetR = wave(static_cast<size_t>(run.count), 0.02);
        const std::vector<float> otherL = wave(static_cast<size_t>(run.count), 0.03), otherR = wave(static_cast<size_t>(run.count), 0.05);
        std::vector<float> expectL = wetL, expectR = wetR;
        float k = run.start, expectK = run.start;
        smoother.apply(wetL.data(), wetR.data(), otherL.data(), otherR.data(), k, run.target, run.count);
        mixBySample(expectL.data(), expectR.data(), otherL.data(), otherR.data(), expectK, run.target, run.count);
        EXPECT_TRUE(same(k, expectK)) << run.start << " to " << run.target;
        for (size_t i = 0; i < wetL.size(); ++i) {
            ASSERT_TRUE(same(wetL[i], expectL[i])) << run.start << " to " << run.target << " at " << i;
            ASSERT_TRUE(same(wetR[i], expectR[i])) << run.start << " to " << run.target << " at " << i;
        }
    }
}

TEST(EffectBlockForms, GainRampIsTheSampleLoopWithItsPeaks) {
    CGainRamp ramp;
    float current = 1.0f, minL = 0, maxL = 0, minR = 0, maxR = 0;
    for (float gain : {1.0f, 0.5f, 0.50004f, 1.7f, 0.0f, -0.0f}) {
        ramp.setGain(gain);
        for (int block = 0; block < 12; ++block) {
            const int n = block % 3 == 0 ? 96 : 37;
            std::vector<float> l = wave(static_cast<size_t>(n), 0.1 + block), r = wave(static_cast<size_t>(n), 0.3, -0.5f);
            if (block == 5) std::fill(l.begin(), l.end(), -0.0f);
            std::vector<float> expectL = l, expectR = r;
            ramp.apply(l.data(), r.data(), n);
            const bool constant = std::fabs((gain - 1e-19f) - current) < 0.0001f;
            for (size_t i = 0; i < expectL.size(); ++i) {
                if (!constant) current += (gain - current) * 0.005f;
                const float g = constant ? gain : current;
                expectL[i] *= g;
                expectR[i] *= g;
                minL = std::min(minL, expectL[i]);
                maxL = std::max(maxL, expectL[i]);
                minR = std::min(minR, expectR[i]);
                maxR = std::max(maxR, expectR[i]);
            }
            for (size_t i = 0; i < l.size(); ++i) ASSERT_TRUE(same(l[i], expectL[i]) && same(r[i], expectR[i])) << i;
            EXPECT_TRUE(same(ramp.getCurrent(), current));
            EXPECT_TRUE(same(ramp.minL, minL) && same(ramp.maxL, maxL) && same(ramp.minR, minR) && same(ramp.maxR, maxR));
        }
        if (gain == 0.0f) {
            ramp.clearPeaks();
            minL = maxL = minR = maxR = 0;
        }
    }
}
