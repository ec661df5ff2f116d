#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/ArdourHost.h"
#include "support/PluginLibrary.h"

// Ardour's own VST 2 scanner, as the real host runs it before it lists a Linux VST 2 plug-in.
namespace {
const char* const kScanner = "/usr/lib/ardour7/ardour-vst-scanner";
}  // namespace

TEST(ArdourVst2Scan, ListsThePluginWithItsNameMakerAndChannels) {
    if (!std::filesystem::exists(kScanner)) GTEST_SKIP() << "Ardour is not installed";
#ifdef ZONFRA_SANITIZED
    GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour";
#endif
    int status = -1;
    const std::string output = TestSupport::Ardour::scan(kScanner, TestSupport::PluginLibrary::defaultPath(), status);
    EXPECT_EQ(status, 0) << output;
    for (const char* fragment : {"Found Plugin: 'nozV' MMK Zonfra QT", "id=\"1450864494\"" /* "Vzon" */,
                                 "name=\"MMK Zonfra QT\"", "creator=\"Morvandel\"", "n_inputs=\"2\" n_outputs=\"2\"",
                                 "n_midi_inputs=\"0\"", "is_instrument=\"0\"", "can_process_replace=\"1\"",
                                 "has_editor=\"1\""})
        EXPECT_NE(output.find(fragment), std::string::npos) << fragment << "\n" << output;
}
