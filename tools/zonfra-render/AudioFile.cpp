#include "AudioFile.h"

#include <sndfile.h>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {
std::string lowerExtension(const std::string& path) {
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos) return "";
    std::string ext = path.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext;
}
}  // namespace

std::string readAudio(const std::string& path, StereoAudio& audio) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) return "cannot read " + path + ": " + sf_strerror(nullptr);
    if (info.channels < 1 || info.channels > 2) {
        sf_close(file);
        return path + " has " + std::to_string(info.channels) + " channels; only mono and stereo are supported";
    }
    std::vector<float> interleaved(static_cast<size_t>(info.frames) * static_cast<size_t>(info.channels));
    const sf_count_t got = sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);
    audio.sampleRate = info.samplerate;
    audio.format = info.format & SF_FORMAT_TYPEMASK;
    audio.left.resize(static_cast<size_t>(got));
    audio.right.resize(static_cast<size_t>(got));
    for (sf_count_t i = 0; i < got; ++i) {
        audio.left[static_cast<size_t>(i)] = interleaved[static_cast<size_t>(i * info.channels)];
        audio.right[static_cast<size_t>(i)] = interleaved[static_cast<size_t>(i * info.channels + info.channels - 1)];
    }
    return "";
}

std::string writeAudio(const std::string& path, const StereoAudio& audio) {
    const std::string ext = lowerExtension(path);
    SF_INFO info{};
    info.samplerate = audio.sampleRate;
    info.channels = 2;
    if (ext == "wav")
        info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    else if (ext == "flac")
        info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    else if (ext == "aif" || ext == "aiff")
        info.format = SF_FORMAT_AIFF | SF_FORMAT_FLOAT;
    else
        return "unknown output format for " + path + " (use .wav, .flac or .aiff)";

    const std::string temporary = path + ".partial";
    SNDFILE* file = sf_open(temporary.c_str(), SFM_WRITE, &info);
    if (!file) return "cannot write " + path + ": " + sf_strerror(nullptr);
    // Integer formats clip what lies beyond full scale instead of wrapping (or refusing) it.
    sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    std::vector<float> interleaved(audio.left.size() * 2);
    for (size_t i = 0; i < audio.left.size(); ++i) {
        interleaved[2 * i] = audio.left[i];
        interleaved[2 * i + 1] = audio.right[i];
    }
    const sf_count_t frames = static_cast<sf_count_t>(audio.left.size());
    const bool complete = sf_writef_float(file, interleaved.data(), frames) == frames;
    sf_close(file);
    if (!complete || std::rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        return "cannot write " + path;
    }
    return "";
}
