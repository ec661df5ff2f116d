#pragma once
#include <cstdint>

namespace DSP {

// Two float channels with a capacity. Either owns aligned heap memory (ownership 1), refers to
// somebody else's memory (0), or is empty (-1).
struct StereoBuffer {
    float* left = nullptr;
    float* right = nullptr;
    int32_t capacity = 0;
    int32_t capacityBytes = 0;
    int32_t ownership = -1;

    StereoBuffer() = default;
    ~StereoBuffer();
    StereoBuffer(const StereoBuffer&) = delete;
    StereoBuffer& operator=(const StereoBuffer&) = delete;

    // Owned, zeroed storage for `samples` per channel; previous contents go.
    void allocate(int samples);
    // Refers to outside memory; frees owned memory first.
    void refer(float* l, float* r, int samples);
    void release();
    // Copies `samples` from a pair of pointers. An owning buffer grows; a referring one that is
    // too small drops the copy.
    void copyFrom(const float* l, const float* r, int samples);
    void copyFrom(const StereoBuffer& other, int samples) { copyFrom(other.left, other.right, samples); }
    void copyTo(float* l, float* r, int samples) const;
    void clear();
    void clear(int samples);
    // Moves both pointers on; only for buffers that refer to host memory.
    void advance(int samples);
    float* channel(int index) const { return index == 0 ? left : right; }
    bool owns() const { return ownership == 1; }
};

}  // namespace DSP
