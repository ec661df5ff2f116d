#pragma once
#include "adapters/vst3/sdk/Vst3Types.h"

namespace Vst3Text {

// UTF-8 into a zero-terminated 16-bit buffer of `capacity` units, cut to fit.
void toUtf16(const char* text, Steinberg::char16* out, int capacity);
// 16-bit text into UTF-8, at most `capacity` bytes with the terminator.
void toUtf8(const Steinberg::char16* text, char* out, int capacity);
// Bounded copy of an 8-bit text into a fixed field, zero-filled.
void copyField(char* field, int capacity, const char* text);

}  // namespace Vst3Text
