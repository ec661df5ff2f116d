#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

#include "support/ArdourHost.h"

// Ardour 7 as a real host: it scans the installed bundle, runs a headless session with the
// plug-in on a track, sets a parameter through its own parameter API and exports the result.
namespace fs = std::filesystem;
namespace Ardour = TestSupport::Ardour;

TEST(ArdourSession, ExportsTheProcessedSignal) {
    ZONFRA_SKIP_WITHOUT_ARDOUR(Ardour::installed());
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

// Ardour's own VST 3 scanner, as the real host runs it before it lists a plug-in.
TEST(ArdourScan, ListsThePluginWithItsNameVendorAndCategory) {
    const char* const kScanner = "/usr/lib/ardour7/ardour-vst3-scanner";
    ZONFRA_SKIP_WITHOUT_ARDOUR(fs::exists(kScanner));
    int status = -1;
    const std::string output = Ardour::scan(kScanner, ZONFRA_VST3_BUNDLE, status);
    EXPECT_EQ(status, 0) << output;
    for (const char* fragment : {"Found Plugin: MMK Zonfra QT", "name=\"MMK Zonfra QT\"",
                                 "vendor=\"Morvandel Mixing Kit\"", "category=\"Fx|Morvandel\"", "version=\"1.3.0\"",
                                 "uid=\"647541644E56434757525052567A6F6E\"", "n_inputs=\"2\" n_outputs=\"2\""})
        EXPECT_NE(output.find(fragment), std::string::npos) << fragment << "\n" << output;
}
