#pragma once

namespace Ondra {

// Bends the line from 0 to 1 by a shaping factor c; shape(shape(x, c), -c) == x. A curve of 30
// puts 0.5 at 3.125 % of the range, which frequency parameters use instead of a log scale.
inline float shape(float x, float c) {
    if (c >= 0.0f) return 1.0f - ((c + 1.0f) * (1.0f - x)) / (c * (1.0f - x) + 1.0f);
    return ((1.0f - c) * x) / (1.0f - c * x);
}

inline float plainFromNormalized(float x, float minimum, float maximum, float curve) {
    return minimum + (maximum - minimum) * shape(x, curve);
}

inline float normalizedFromPlain(float v, float minimum, float maximum, float curve) {
    return shape((v - minimum) / (maximum - minimum), -curve);
}

}  // namespace Ondra
