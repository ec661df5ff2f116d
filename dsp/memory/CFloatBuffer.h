#pragma once
#include <cstdlib>
#include <cstring>

#include "dsp/memory/CReferencedObject.h"

namespace DSP::MEMORY {

// A shared float array aligned to 16 bytes.
class CFloatBuffer : public CReferencedObject {
public:
    ~CFloatBuffer() override { std::free(data); }
    void allocate(int entries) {
        if (entries < 1) return;
        std::free(data);
        const size_t bytes = (static_cast<size_t>(entries) * sizeof(float) + 15) / 16 * 16;
        data = static_cast<float*>(std::aligned_alloc(16, bytes));
        if (data) std::memset(data, 0, bytes);
        length = data ? entries : 0;
    }
    void clear() {
        if (data) std::memset(data, 0, static_cast<size_t>(length) * sizeof(float));
    }
    float* get() const { return data; }
    int size() const { return length; }

private:
    float* data = nullptr;
    int length = 0;
};

}  // namespace DSP::MEMORY
