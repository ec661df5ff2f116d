#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>

#include "AudioFile.h"
#include "framework/parameters/ParameterCurve.h"
#include "support/PluginLibrary.h"

// Ardour 7 as a real VST 2 host: it finds the library in its Linux VST folder, runs a headless
// session with the plug-in on a track, sets the low-pass through its own parameter API and
// exports the result.
namespace fs = std::filesystem;

namespace {
int run(const std::string& command, std::string& output) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) return -1;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    return pclose(pipe);
}

// Share of the signal's energy above `hertz`, from a four-pole split: white noise keeps most of
// its energy high, low-passed noise hardly any.
double highShare(const std::vector<float>& x, double hertz, double rate) {
    const double a = std::exp(-2.0 * M_PI * hertz / rate);
    double total = 0, high = 0;
    double l1 = 0, l2 = 0, l3 = 0, l4 = 0;
    for (float v : x) {
        l1 = (1 - a) * v + a * l1;
        l2 = (1 - a) * l1 + a * l2;
        l3 = (1 - a) * l2 + a * l3;
        l4 = (1 - a) * l3 + a * l4;
        const double h = v - l4;
        high += h * h;
        total += static_cast<double>(v) * v;
    }
    return total > 0 ? high / total : 0;
}
}  // namespace

TEST(ArdourVst2Session, ExportsTheProcessedSignal) {
    if (!fs::exists("/usr/bin/ardour7-lua")) GTEST_SKIP() << "Ardour is not installed";
#ifdef ZONFRA_SANITIZED
    GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour";
#endif
    const fs::path home = fs::temp_directory_path() / ("zonfra-ardour-vst2-" + std::to_string(getpid()));
    const fs::path folder = home / "lxvst";
    const fs::path library = folder / "MMK Zonfra QT.so";
    fs::remove_all(home);
    fs::create_directories(folder);
    fs::copy_file(TestSupport::PluginLibrary::defaultPath(), library);
    // Ardour trusts its scan cache only when the cache is newer than the library.
    fs::last_write_time(library, fs::file_time_type::clock::now() - std::chrono::hours(1));
    const std::string environment =
        "HOME='" + home.string() + "' LXVST_PATH='" + folder.string() + "' LD_LIBRARY_PATH=/usr/lib/ardour7 ";
    std::string output;
    ASSERT_EQ(run(environment + "timeout 120 /usr/lib/ardour7/ardour-vst-scanner -f -q '" + library.string() + "'",
                  output),
              0)
        << output;

    // VST 2 hosts speak normalised values only.
    auto render = [&](const char* name, float hertz, StereoAudio& exported) {
        const float value = Ondra::normalizedFromPlain(hertz, 40.0f, 22050.0f, 30.0f);
        const fs::path session = home / name;
        std::string log;
        int status = -1;
        // Ardour 7's headless tool now and then dies of a signal on its own, with its own plug-ins
        // as well; a crash of ours would repeat, so another try tells the two apart.
        for (int attempt = 0; attempt < 3; ++attempt) {
            fs::remove_all(session);
            log.clear();
            status = run(environment + "ZONFRA_SESSION_DIR='" + session.string() +
                             "' ZONFRA_PLUGIN_TYPE=LXVST ZONFRA_PARAMETER_INDEX=1 ZONFRA_PARAMETER_VALUE=" +
                             std::to_string(value) + " timeout 300 ardour7-lua '" + ZONFRA_ARDOUR_SCRIPT + "'",
                         log);
            const bool killedBySignal = WIFEXITED(status) && WEXITSTATUS(status) > 128 && WEXITSTATUS(status) != 137;
            if (!killedBySignal) break;
        }
        EXPECT_EQ(status, 0) << log;
        EXPECT_EQ(readAudio((session / "export/out.wav").string(), exported), "") << log;
    };
    StereoAudio open, lowPassed;
    render("open", 22050.0f, open);
    render("lowpass", 500.0f, lowPassed);
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
