#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "support/ArdourHost.h"

// Ardour 7 as a real host: it scans the installed bundle, runs a headless session with the
// plug-in on a track, sets a parameter through its own parameter API and exports the result.
namespace fs = std::filesystem;
namespace Ardour = TestSupport::Ardour;

TEST(ArdourSession, ExportsTheProcessedSignal) {
    if (!Ardour::installed()) GTEST_SKIP() << "Ardour is not installed";
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
    const Ardour::Session session{"HOME='" + home.string() + "' LD_LIBRARY_PATH=/usr/lib/ardour7", "VST3", home};
    std::string output;
    ASSERT_EQ(Ardour::run(session.environment + " timeout 120 /usr/lib/ardour7/ardour-vst3-scanner -f -q '" +
                              (home / ".vst3/MMK Zonfra QT.vst3").string() + "'",
                          output),
              0)
        << output;

    // VST 3 parameters take plain values through Ardour's Lua API.
    StereoAudio open, lowPassed;
    ASSERT_EQ(Ardour::render(session, "open", "22050", open), "");
    ASSERT_EQ(Ardour::render(session, "lowpass", "500", lowPassed), "");
    Ardour::expectLowPassedNoise(open, lowPassed);
    fs::remove_all(home);
}
