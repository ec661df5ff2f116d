#pragma once
// Test signals, measures on sample buffers and whole-file bytes that many tests share.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

namespace TestSupport {

// A sine from sample `start` on.
inline std::vector<float> sine(size_t n, double hertz, double rate, float amplitude = 0.5f, size_t start = 0) {
    std::vector<float> out(n);
    for (size_t i = 0; i < n; ++i)
        out[i] = amplitude * static_cast<float>(std::sin(2.0 * M_PI * hertz * static_cast<double>(i + start) / rate));
    return out;
}

// Index of the sample of largest magnitude, the first of equals.
inline size_t peakIndex(const std::vector<float>& x) {
    const auto quieter = [](float a, float b) { return std::fabs(a) < std::fabs(b); };
    return static_cast<size_t>(std::max_element(x.begin(), x.end(), quieter) - x.begin());
}

inline bool allFinite(const std::vector<float>& x) {
    return std::all_of(x.begin(), x.end(), [](float v) { return std::isfinite(v); });
}

inline double energy(const std::vector<float>& x, size_t from = 0) {
    return std::inner_product(x.begin() + static_cast<long>(from), x.end(), x.begin() + static_cast<long>(from), 0.0,
                              std::plus<>(), [](float a, float b) { return static_cast<double>(a) * b; });
}

// The first `size` bytes (all when not given) into a file made anew.
inline void writeFile(const std::string& path, const std::vector<uint8_t>& bytes, size_t size = SIZE_MAX) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(std::min(size, bytes.size())));
}

inline std::vector<uint8_t> fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

}  // namespace TestSupport
