#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

#include "framework/parameters/ParameterCurve.h"
#include "support/ArdourHost.h"
#include "support/PluginLibrary.h"

// Ardour 7 as a real VST 2 host: it finds the library in its Linux VST folder, runs a headless
// session with the plug-in on a track, sets the low-pass through its own parameter API and
// exports the result.
namespace fs = std::filesystem;
namespace Ardour = TestSupport::Ardour;

TEST(ArdourVst2Session, ExportsTheProcessedSignal) {
    ZONFRA_SKIP_WITHOUT_ARDOUR(Ardour::installed());
    const fs::path home = fs::temp_directory_path() / ("zonfra-ardour-vst2-" + std::to_string(getpid()));
    const fs::path folder = home / "lxvst";
    const fs::path library = folder / "MMK Zonfra QT.so";
    fs::remove_all(home);
    fs::create_directories(folder);
    fs::copy_file(TestSupport::PluginLibrary::defaultPath(), library);
    // Ardour trusts its scan cache only when the cache is newer than the library.
    fs::last_write_time(library, fs::file_time_type::clock::now() - std::chrono::hours(1));
    const Ardour::Session session{
        "HOME='" + home.string() + "' LXVST_PATH='" + folder.string() + "' LD_LIBRARY_PATH=/usr/lib/ardour7", "LXVST",
        home};
    std::string output;
    ASSERT_EQ(Ardour::run(session.environment + " timeout 120 /usr/lib/ardour7/ardour-vst-scanner -f -q '" +
                              library.string() + "'",
                          output),
              0)
        << output;

    // VST 2 hosts speak normalised values only.
    auto normalised = [](float hertz) { return std::to_string(Ondra::normalizedFromPlain(hertz, 40.0f, 22050.0f, 30.0f)); };
    StereoAudio open, lowPassed;
    ASSERT_EQ(Ardour::render(session, "open", normalised(22050.0f), open), "");
    ASSERT_EQ(Ardour::render(session, "lowpass", normalised(500.0f), lowPassed), "");
    Ardour::expectLowPassedNoise(open, lowPassed);
    fs::remove_all(home);
}

// Ardour's own VST 2 scanner, as the real host runs it before it lists a Linux VST 2 plug-in.
TEST(ArdourVst2Scan, ListsThePluginWithItsNameMakerAndChannels) {
    const char* const kScanner = "/usr/lib/ardour7/ardour-vst-scanner";
    ZONFRA_SKIP_WITHOUT_ARDOUR(fs::exists(kScanner));
    int status = -1;
    const std::string output = Ardour::scan(kScanner, TestSupport::PluginLibrary::defaultPath(), status);
    EXPECT_EQ(status, 0) << output;
    for (const char* fragment : {"Found Plugin: 'nozV' MMK Zonfra QT", "id=\"1450864494\"" /* "Vzon" */,
                                 "name=\"MMK Zonfra QT\"", "creator=\"Morvandel\"", "n_inputs=\"2\" n_outputs=\"2\"",
                                 "n_midi_inputs=\"0\"", "is_instrument=\"0\"", "can_process_replace=\"1\"",
                                 "has_editor=\"1\""})
        EXPECT_NE(output.find(fragment), std::string::npos) << fragment << "\n" << output;
}
