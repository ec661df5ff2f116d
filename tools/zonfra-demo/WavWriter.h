#pragma once
#include <string>
#include <vector>

// Writes a stereo 32-bit float WAV file; false when the file cannot be written.
bool writeStereoWav(const std::string& path, const std::vector<float>& left, const std::vector<float>& right,
                    int sampleRate);
