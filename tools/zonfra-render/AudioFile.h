#pragma once
#include <string>
#include <vector>

// Stereo audio in memory, read and written through libsndfile at the file's own rate.
struct StereoAudio {
    std::vector<float> left, right;
    int sampleRate = 44100;
    int format = 0;  // libsndfile major format of the source, reused for the output
};

// Sample rates the effect is made for, inclusive; files outside are refused.
constexpr int kLowestSampleRate = 8000;
constexpr int kHighestSampleRate = 768000;

// Mono files feed both channels; more than two channels is an error. Returns an empty string on
// success, else one line that says what is wrong. A file that ends before its header says keeps
// what it holds, and `warning` tells so.
std::string readAudio(const std::string& path, StereoAudio& audio, std::string* warning = nullptr);
// The output format follows the file name's extension (.wav, .flac, .aif/.aiff); the file appears
// whole or not at all.
std::string writeAudio(const std::string& path, const StereoAudio& audio);
// The name the output has until it is whole.
std::string partialPathOf(const std::string& path);
