#include "AudioFile.h"

#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "DeclaredFrames.h"

namespace {
std::string lowerExtension(const std::string& path) {
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos) return "";
    std::string ext = path.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext;
}
}  // namespace

std::string readAudio(const std::string& path, StereoAudio& audio, std::string* warning) {
    const std::string cannot = "cannot read '" + path + "': ";
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) {
        if (access(path.c_str(), R_OK) != 0) return cannot + std::strerror(errno);
        if (std::filesystem::is_directory(path)) return cannot + "it is a folder";
        return cannot + "not a WAV, FLAC or AIFF file the renderer can read (libsndfile: " + sf_strerror(nullptr) + ")";
    }
    std::string problem;
    if (info.channels < 1 || info.channels > 2)
        problem = "'" + path + "' has " + std::to_string(info.channels) + " channels; only mono and stereo are supported";
    else if (info.samplerate < kLowestSampleRate || info.samplerate > kHighestSampleRate)
        problem = "'" + path + "' has a sample rate of " + std::to_string(info.samplerate) + " Hz; the renderer takes " +
                  std::to_string(kLowestSampleRate) + " to " + std::to_string(kHighestSampleRate) + " Hz";
    if (!problem.empty()) {
        sf_close(file);
        return problem;
    }
    // Read to the end rather than to the count libsndfile gives: a damaged header may promise
    // more than is there, or absurdly much.
    audio.left.clear();
    audio.right.clear();
    constexpr sf_count_t kBlock = 4096;
    std::vector<float> interleaved(static_cast<size_t>(kBlock * info.channels));
    for (sf_count_t got; (got = sf_readf_float(file, interleaved.data(), kBlock)) > 0;) {
        for (sf_count_t i = 0; i < got; ++i) {
            audio.left.push_back(interleaved[static_cast<size_t>(i * info.channels)]);
            audio.right.push_back(interleaved[static_cast<size_t>(i * info.channels + info.channels - 1)]);
        }
    }
    sf_close(file);
    audio.sampleRate = info.samplerate;
    audio.format = info.format & SF_FORMAT_TYPEMASK;

    int64_t declared = declaredFrameCount(path);
    if (declared < 0 && info.frames != SF_COUNT_MAX) declared = info.frames;
    const auto frames = static_cast<int64_t>(audio.left.size());
    if (warning && frames < declared)
        *warning = "'" + path + "' ends after " + std::to_string(frames) + " of the " + std::to_string(declared) +
                   " frames its header states; rendering what is there";
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
        return "unknown output format for '" + path + "' (use .wav, .flac or .aiff)";

    const std::string temporary = partialPathOf(path);
    SNDFILE* file = sf_open(temporary.c_str(), SFM_WRITE, &info);
    if (!file) return "cannot write '" + path + "' (libsndfile: " + sf_strerror(nullptr) + ")";
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
        return "cannot write '" + path + "'";
    }
    return "";
}

std::string partialPathOf(const std::string& path) { return path + ".partial"; }
