#include "framework/state/PayloadShuffle.h"

#include <algorithm>

namespace Ondra {

namespace {
void reverseFour(uint8_t* at) {
    std::swap(at[0], at[3]);
    std::swap(at[1], at[2]);
}
}  // namespace

void shufflePayload(uint8_t* data, size_t size) {
    if (size < 4) return;
    const size_t even = size & ~static_cast<size_t>(1);
    for (size_t q = 0; q + 4 <= even; q += 2) reverseFour(data + q);
}

void unshufflePayload(uint8_t* data, size_t size) {
    if (size < 4) return;
    const size_t even = size & ~static_cast<size_t>(1);
    for (size_t q = even - 4;; q -= 2) {
        reverseFour(data + q);
        if (q == 0) break;
    }
}

}  // namespace Ondra
