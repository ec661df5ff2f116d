#pragma once
#include "adapters/vst3/sdk/Vst3Types.h"

// Text between our UTF-8 strings and the interface's fixed fields: 16-bit String128 and the
// 8-bit fields of the factory records. Every result is terminated and cut to fit.
namespace Steinberg::StringConvert {

// UTF-8 into at most `capacity` 16-bit units, the terminator included.
void toUtf16(const char* utf8, char16* out, int capacity);
inline void toString128(const char* utf8, String128 out) { toUtf16(utf8, out, 128); }

// 16-bit text into at most `capacity` bytes of UTF-8, the terminator included.
void toUtf8(const char16* text, char* out, int capacity);

// An 8-bit text into a fixed field, the rest zero-filled.
void copyField(char* field, int capacity, const char* text);

}  // namespace Steinberg::StringConvert
