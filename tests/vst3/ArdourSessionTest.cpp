#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

#include "framework/parameters/ParameterCurve.h"
#include "support/ArdourHost.h"
#include "support/PluginLibrary.h"

// Ardour 7 as a real host of each door: its own scanner lists the plug-in it finds in its folder, then
// a headless session with the plug-in on a track sets the low-pass through Ardour's parameter API and
// exports the result.
namespace fs = std::filesystem;
namespace Ardour = TestSupport::Ardour;

struct ArdourDoor {
    const char* type;  // as Ardour names the plug-in type
    const char* scanner;
    std::string built, placedAs;  // the door's file or bundle, and where in the home folder Ardour finds it
    std::string (*hostValue)(float hertz);
    std::vector<const char*> listed;
};
void PrintTo(const ArdourDoor& door, std::ostream* out) { *out << door.type; }

const ArdourDoor kDoors[] = {
    {"VST3", "/usr/lib/ardour7/ardour-vst3-scanner", ZONFRA_VST3_BUNDLE, ".vst3/MMK Zonfra QT.vst3",
     // VST 3 parameters take plain values through Ardour's Lua API.
     [](float hertz) { return std::to_string(hertz); },
     {"Found Plugin: MMK Zonfra QT", "name=\"MMK Zonfra QT\"", "vendor=\"Morvandel Mixing Kit\"",
      "category=\"Fx|Morvandel\"", "version=\"1.3.0\"", "uid=\"647541644E56434757525052567A6F6E\"",
      "n_inputs=\"2\" n_outputs=\"2\""}},
    {"LXVST", "/usr/lib/ardour7/ardour-vst-scanner", TestSupport::PluginLibrary::defaultPath(),
     "lxvst/MMK Zonfra QT.so",
     // VST 2 hosts speak normalised values only.
     [](float hertz) { return std::to_string(Ondra::normalizedFromPlain(hertz, 40.0f, 22050.0f, 30.0f)); },
     {"Found Plugin: 'nozV' MMK Zonfra QT", "id=\"1450864494\"" /* "Vzon" */, "name=\"MMK Zonfra QT\"",
      "creator=\"Morvandel\"", "n_inputs=\"2\" n_outputs=\"2\"", "n_midi_inputs=\"0\"", "is_instrument=\"0\"",
      "can_process_replace=\"1\"", "has_editor=\"1\""}},
};

class ArdourSession : public ::testing::TestWithParam<ArdourDoor> {};

TEST_P(ArdourSession, ListsThePluginAndExportsTheProcessedSignal) {
    ZONFRA_SKIP_WITHOUT_ARDOUR(Ardour::installed());
    const ArdourDoor& door = GetParam();
    const fs::path home = fs::temp_directory_path() / ("zonfra-ardour-" + std::to_string(getpid()) + door.type);
    const fs::path placed = home / door.placedAs;
    fs::remove_all(home);
    fs::create_directories(placed.parent_path());
    fs::copy(door.built, placed, fs::copy_options::recursive);
    // Ardour trusts its scan cache only when the cache is newer than the plug-in.
    const auto anHourAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& item : fs::recursive_directory_iterator(home)) fs::last_write_time(item.path(), anHourAgo);
    const Ardour::Session session{"HOME='" + home.string() + "' LXVST_PATH='" + (home / "lxvst").string() +
                                      "' LD_LIBRARY_PATH=/usr/lib/ardour7",
                                  door.type, home};
    std::string listing;
    ASSERT_EQ(Ardour::run(session.environment + " timeout 120 " + door.scanner + " -f -v '" + placed.string() + "'",
                          listing),
              0)
        << listing;
    for (const char* fragment : door.listed)
        EXPECT_NE(listing.find(fragment), std::string::npos) << fragment << "\n" << listing;

    StereoAudio open, lowPassed;
    ASSERT_EQ(Ardour::render(session, "open", door.hostValue(22050.0f), open), "");
    ASSERT_EQ(Ardour::render(session, "lowpass", door.hostValue(500.0f), lowPassed), "");
    Ardour::expectLowPassedNoise(open, lowPassed);
    fs::remove_all(home);
}

INSTANTIATE_TEST_SUITE_P(Doors, ArdourSession, ::testing::ValuesIn(kDoors),
                         [](const auto& door) { return std::string(door.param.type); });
