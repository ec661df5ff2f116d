#include "dsp/StereoBuffer.h"

#include <cstdlib>
#include <cstring>

namespace DSP {
namespace {
constexpr size_t kAlignment = 32;

float* alignedFloats(int samples) {
    const size_t bytes = (static_cast<size_t>(samples) * sizeof(float) + kAlignment - 1) / kAlignment * kAlignment;
    void* memory = std::aligned_alloc(kAlignment, bytes == 0 ? kAlignment : bytes);
    if (memory) std::memset(memory, 0, bytes == 0 ? kAlignment : bytes);
    return static_cast<float*>(memory);
}
}  // namespace

StereoBuffer::~StereoBuffer() { release(); }

void StereoBuffer::release() {
    if (ownership == 1) {
        std::free(left);
        std::free(right);
    }
    left = right = nullptr;
    capacity = capacityBytes = 0;
    ownership = -1;
}

void StereoBuffer::allocate(int samples) {
    release();
    if (samples < 0) samples = 0;
    left = alignedFloats(samples);
    right = alignedFloats(samples);
    if (!left || !right) {
        std::free(left);
        std::free(right);
        left = right = nullptr;
        return;
    }
    capacity = samples;
    capacityBytes = samples * static_cast<int32_t>(sizeof(float));
    ownership = 1;
}

void StereoBuffer::refer(float* l, float* r, int samples) {
    release();
    left = l;
    right = r;
    capacity = samples;
    capacityBytes = samples * static_cast<int32_t>(sizeof(float));
    ownership = 0;
}

void StereoBuffer::copyFrom(const float* l, const float* r, int samples) {
    if (samples <= 0) return;
    if (samples > capacity) {
        if (ownership == 0) return;
        allocate(samples);
        if (capacity < samples) return;
    }
    if (left != l) std::memmove(left, l, static_cast<size_t>(samples) * sizeof(float));
    if (right != r) std::memmove(right, r, static_cast<size_t>(samples) * sizeof(float));
}

void StereoBuffer::copyTo(float* l, float* r, int samples) const {
    if (samples <= 0 || samples > capacity) return;
    if (l != left) std::memmove(l, left, static_cast<size_t>(samples) * sizeof(float));
    if (r != right) std::memmove(r, right, static_cast<size_t>(samples) * sizeof(float));
}

void StereoBuffer::clear() { clear(capacity); }

void StereoBuffer::clear(int samples) {
    if (samples > capacity) samples = capacity;
    if (samples <= 0) return;
    std::memset(left, 0, static_cast<size_t>(samples) * sizeof(float));
    std::memset(right, 0, static_cast<size_t>(samples) * sizeof(float));
}

void StereoBuffer::advance(int samples) {
    if (ownership != 0) return;
    left += samples;
    right += samples;
    capacity -= samples;
    capacityBytes = capacity * static_cast<int32_t>(sizeof(float));
}

}  // namespace DSP
