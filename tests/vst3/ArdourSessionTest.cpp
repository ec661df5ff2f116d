#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "AudioFile.h"

// Ardour 7 as a real host: it scans the installed bundle, runs a headless session with the
// plug-in on a track, sets a parameter through its own parameter API and exports the result.
namespace fs = std::filesystem;

namespace {
int run(const std::string& command, std::string& output) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return -1;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    return pclose(pipe);
}

// Share of the signal's energy above `hertz`, from a one-pole split, good enough to tell white
// noise (most energy high) from low-passed noise.
double highShare(const std::vector<float>& x, double hertz, double rate) {
    const double a = std::exp(-2.0 * M_PI * hertz / rate);
    double low = 0, total = 0, high = 0;
    double l1 = 0, l2 = 0, l3 = 0, l4 = 0;
    for (float v : x) {
        l1 = (1 - a) * v + a * l1;
        l2 = (1 - a) * l1 + a * l2;
        l3 = (1 - a) * l2 + a * l3;
        l4 = (1 - a) * l3 + a * l4;
        const double h = v - l4;
        high += h * h;
        total += static_cast<double>(v) * v;
        low += l4 * l4;
    }
    return total > 0 ? high / total : 0;
}
}  // namespace

TEST(ArdourSession, ExportsTheProcessedSignal) {
    if (!fs::exists("/usr/bin/ardour7-lua")) GTEST_SKIP() << "Ardour is not installed";
#ifdef ZONFRA_SANITIZED
    GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour";
#endif
    const fs::path home = fs::temp_directory_path() / ("zonfra-ardour-" + std::to_string(getpid()));
    fs::remove_all(home);
    fs::create_directories(home / ".vst3");
    fs::copy(ZONFRA_VST3_BUNDLE, home / ".vst3/MMK Zonfra QT.vst3", fs::copy_options::recursive);
    // Ardour trusts its scan cache only when the cache is newer than the module.
    const auto anHourAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& item : fs::recursive_directory_iterator(home / ".vst3")) fs::last_write_time(item.path(), anHourAgo);
    const std::string environment = "HOME='" + home.string() + "' LD_LIBRARY_PATH=/usr/lib/ardour7 ";
    std::string output;
    ASSERT_EQ(run(environment + "timeout 120 /usr/lib/ardour7/ardour-vst3-scanner -f -q '" +
                      (home / ".vst3/MMK Zonfra QT.vst3").string() + "'",
                  output),
              0)
        << output;
    auto render = [&](const char* name, const char* value, StereoAudio& exported) {
        const fs::path session = home / name;
        std::string log;
        int status = -1;
        // Ardour 7's headless tool now and then dies of a signal on its own, with its own plug-ins
        // as well; a crash of ours would repeat, so a second try tells the two apart.
        for (int attempt = 0; attempt < 3; ++attempt) {
            fs::remove_all(session);
            log.clear();
            status = run(environment + "ZONFRA_SESSION_DIR='" + session.string() +
                             "' ZONFRA_PARAMETER_INDEX=1 ZONFRA_PARAMETER_VALUE=" + value + " timeout 300 ardour7-lua '" +
                             ZONFRA_ARDOUR_SCRIPT + "'",
                         log);
            const bool killedBySignal = WIFEXITED(status) && WEXITSTATUS(status) > 128 && WEXITSTATUS(status) != 137;
            if (!killedBySignal) break;
        }
        EXPECT_EQ(status, 0) << log;
        EXPECT_EQ(readAudio((session / "export/out.wav").string(), exported), "") << log;
    };
    StereoAudio open, lowPassed;
    render("open", "22050", open);
    render("lowpass", "500", lowPassed);
    ASSERT_GT(open.left.size(), 44100u);
    ASSERT_GT(lowPassed.left.size(), 44100u);
    // With the low-pass wide open the noise keeps most of its energy above 4 kHz; at 500 Hz, set
    // through the host, hardly any is left.
    const double openShare = highShare(open.left, 4000, open.sampleRate);
    EXPECT_GT(openShare, 0.5);
    EXPECT_LT(highShare(lowPassed.left, 4000, lowPassed.sampleRate), openShare * 0.1);
    EXPECT_LT(highShare(lowPassed.right, 4000, lowPassed.sampleRate), openShare * 0.1);
    double energy = 0;
    for (float v : lowPassed.left) energy += static_cast<double>(v) * v;
    EXPECT_GT(energy, 1.0);  // and it is not silence
    fs::remove_all(home);
}
