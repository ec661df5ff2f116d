#include "support/ArdourHost.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>

namespace TestSupport::Ardour {

namespace fs = std::filesystem;

bool installed() { return fs::exists("/usr/bin/ardour7-lua"); }

int run(const std::string& command, std::string& output) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return -1;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    return pclose(pipe);
}

std::string render(const Session& session, const std::string& name, const std::string& value, StereoAudio& exported) {
    const fs::path folder = session.folder / name;
    std::string log;
    int status = -1;
    for (int attempt = 0; attempt < 3; ++attempt) {
        fs::remove_all(folder);
        log.clear();
        status = run(session.environment + " ZONFRA_SESSION_DIR='" + folder.string() + "' ZONFRA_PLUGIN_TYPE=" +
                         session.pluginType + " ZONFRA_PARAMETER_INDEX=1 ZONFRA_PARAMETER_VALUE=" + value +
                         " timeout 300 ardour7-lua '" + ZONFRA_ARDOUR_SCRIPT + "'",
                     log);
        const bool killedBySignal = WIFEXITED(status) && WEXITSTATUS(status) > 128 && WEXITSTATUS(status) != 137;
        if (!killedBySignal) break;
    }
    if (status != 0) return "ardour7-lua ended with " + std::to_string(status) + ":\n" + log;
    const std::string readError = readAudio((folder / "export/out.wav").string(), exported);
    return readError.empty() ? "" : readError + "\n" + log;
}

// Share of the signal's energy above `hertz`, from a four-pole split: white noise keeps most of
// its energy high, low-passed noise hardly any.
static double highShare(const std::vector<float>& x, double hertz, double rate) {
    const double a = std::exp(-2.0 * M_PI * hertz / rate);
    double total = 0, high = 0, poles[4] = {};
    for (float v : x) {
        double low = v;
        for (double& pole : poles) low = pole = (1 - a) * low + a * pole;
        const double h = v - low;
        high += h * h;
        total += static_cast<double>(v) * v;
    }
    return total > 0 ? high / total : 0;
}

void expectLowPassedNoise(const StereoAudio& open, const StereoAudio& lowPassed) {
    ASSERT_GT(open.left.size(), 44100u);
    ASSERT_GT(lowPassed.left.size(), 44100u);
    const double openShare = highShare(open.left, 4000, open.sampleRate);
    EXPECT_GT(openShare, 0.5);
    EXPECT_LT(highShare(lowPassed.left, 4000, lowPassed.sampleRate), openShare * 0.1);
    EXPECT_LT(highShare(lowPassed.right, 4000, lowPassed.sampleRate), openShare * 0.1);
    double energy = 0;
    for (float v : lowPassed.left) energy += static_cast<double>(v) * v;
    EXPECT_GT(energy, 1.0);  // and it is not silence
}

}  // namespace TestSupport::Ardour
