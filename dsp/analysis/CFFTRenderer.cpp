#include "dsp/analysis/CFFTRenderer.h"

#include "dsp/memory/BlockScan.h"

#include <kissfft/kiss_fft.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace DSP {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr float kDbPerNeper = 8.685889638065037f;  // 20 / ln 10
constexpr float kLevelOffsetDb = 40.0f;
constexpr float kLn102 = 0.01980261f;  // the axis steps by powers of 1.02
// Larger samples are clamped before the transform so no sum can overflow to infinity.
constexpr float kSampleLimit = 1.0e6f;
}  // namespace

const float* CFFTRenderer::interpolationTable() {
    static const std::vector<float> table = [] {
        std::vector<float> values(kInterpolationSize);
        for (int k = 0; k < kInterpolationSize; ++k)
            values[k] = static_cast<float>((1.0 - std::cos(kPi * k / kInterpolationSize)) * 0.5);
        return values;
    }();
    return table.data();
}

CFFTRenderer::CFFTRenderer(int low, int high)
    : lowHz(static_cast<float>(std::max(1, low))),
      highHz(static_cast<float>(std::max(std::max(1, low) + 1, high))),
      window(kFftSize),
      workIn(2 * kFftSize),
      workOut(2 * kFftSize),
      spectrum(kFftSize, -kRangeDb),
      smoothed(kFftSize, kSmoothedStartDb),
      table(interpolationTable()) {
    for (std::vector<float>& slot : slots) slot.assign(kFftSize, 0.0f);
    fft = kiss_fft_alloc(kFftSize, 0, nullptr, nullptr);
    // Blackman, 0.42 - 0.5 cos t + 0.08 cos 2t, written with one cosine.
    for (int i = 0; i < kFftSize; ++i) {
        const double c = std::cos(2.0 * kPi * i / (kFftSize - 1));
        window[i] = static_cast<float>(c * (0.16 * c - 0.5) + 0.34);
    }
}

CFFTRenderer::~CFFTRenderer() { kiss_fft_free(fft); }

void CFFTRenderer::push(const float* left, const float* right, int count) {
    if (left == nullptr || count <= 0)
        return;
    if (dropPartialFrame.load(std::memory_order_relaxed) && dropPartialFrame.exchange(false, std::memory_order_acquire))
        fillPos = 0;
    while (count > 0) {
        const int chunk = std::min(count, kFftSize - fillPos);
        float* to = slots[writeSlot].data() + fillPos;
        if (right != nullptr) {
            DSP::Block::midpoint(to, left, right, chunk);
            right += chunk;
        } else {
            std::memcpy(to, left, sizeof(float) * static_cast<size_t>(chunk));
        }
        left += chunk;
        count -= chunk;
        fillPos += chunk;
        if (fillPos == kFftSize) {
            // Frames do not overlap: the next one starts empty. An unread frame is replaced.
            writeSlot = middle.exchange(writeSlot | kFresh, std::memory_order_acq_rel) & kIndexMask;
            fillPos = 0;
        }
    }
}

void CFFTRenderer::setSampleRate(float hertz) {
    if (std::isfinite(hertz) && hertz >= 1000.0f && hertz <= 1.0e6f)
        sampleRate.store(hertz, std::memory_order_relaxed);
}

void CFFTRenderer::clear() {
    std::fill(spectrum.begin(), spectrum.end(), -kRangeDb);
    std::fill(smoothed.begin(), smoothed.end(), kSmoothedStartDb);
    if (middle.load(std::memory_order_acquire) & kFresh)  // a frame from before the clear
        readSlot = middle.exchange(readSlot, std::memory_order_acq_rel) & kIndexMask;
    dropPartialFrame.store(true, std::memory_order_release);
}

bool CFFTRenderer::updateSpectrum() {
    if (fft == nullptr || !(middle.load(std::memory_order_acquire) & kFresh))
        return false;
    readSlot = middle.exchange(readSlot, std::memory_order_acq_rel) & kIndexMask;
    const float* frame = slots[readSlot].data();
    for (int i = 0; i < kFftSize; ++i) {
        float x = frame[i];
        x = std::isfinite(x) ? std::clamp(x, -kSampleLimit, kSampleLimit) : 0.0f;
        workIn[2 * i] = x * window[i];
        workIn[2 * i + 1] = 0.0f;
    }
    kiss_fft(fft, reinterpret_cast<const kiss_fft_cpx*>(workIn.data()), reinterpret_cast<kiss_fft_cpx*>(workOut.data()));
    constexpr float scale = 1.0f / kFftSize;  // the transform is unscaled; levels assume 1 / N
    for (int i = 0; i < kFftSize; ++i) {
        const float magnitude = std::sqrt(workOut[2 * i] * workOut[2 * i] + workOut[2 * i + 1] * workOut[2 * i + 1]) * scale;
        const float db = kDbPerNeper * std::log(magnitude) + kLevelOffsetDb;  // -inf for silence
        spectrum[i] = std::isnan(db) ? -kRangeDb : std::clamp(db, -kRangeDb, kTopDb);
    }
    return true;
}

void CFFTRenderer::smooth() {
    for (int i = 0; i < kFftSize; ++i) {
        const float v = std::max(spectrum[i], -kRangeDb);
        float& s = smoothed[i];
        s = v > s ? v : s + (v - s) * 0.1f + 1e-24f;
    }
}

void CFFTRenderer::curve(float* outDb, int width) const {
    if (outDb == nullptr || width <= 0)
        return;
    const double step = (std::log(0.1 * highHz) - std::log(0.1 * lowHz)) / kLn102 / width;
    const double binWidth = getSampleRate() / kFftSize;
    for (int x = 0; x < width; ++x) {
        const double b = lowHz * std::pow(1.02, x * step) / binWidth;
        const int i = static_cast<int>(b);
        const bool inside = i >= 0 && i < kBinCount;
        const float a = inside ? smoothed[i] : -kRangeDb;
        const float c = inside && i + 1 < kBinCount ? smoothed[i + 1] : a;
        const float t = table[static_cast<int>((b - i) * kInterpolationSize) % kInterpolationSize];
        outDb[x] = std::clamp(a + (c - a) * t, -kRangeDb, kTopDb);
    }
}

float CFFTRenderer::frequencyAt(float x, float width) const {
    if (!(width > 0.0f))
        return lowHz;
    const double step = (std::log(0.1 * highHz) - std::log(0.1 * lowHz)) / kLn102 / width;
    return static_cast<float>(lowHz * std::pow(1.02, x * step));
}

}  // namespace DSP
