#pragma once
#include <cstdint>
#include <string>

// The frame count that a WAV or AIFF file's header states. libsndfile trims its own count to what
// a cut file holds, so a short file shows only against this. -1 when the file states none that
// can be read (other formats, streamed WAV).
int64_t declaredFrameCount(const std::string& path);
