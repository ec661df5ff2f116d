#pragma once
// The millisecond clock of the toolkit's animations and timers. Tests may put their own in.
#include <cstdint>

namespace Vinta {

using TickSource = uint32_t (*)();

uint32_t getVintaTicks();
// Null restores the system clock.
void setTickSource(TickSource source);

} // namespace Vinta
