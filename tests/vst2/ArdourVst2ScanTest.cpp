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
    EXPECT_NE(output.find("Found Plugin: 'nozV' MMK Zonfra QT"), std::string::npos) << output;
    EXPECT_NE(output.find("id=\"1450864494\""), std::string::npos) << output;  // "Vzon"
    EXPECT_NE(output.find("name=\"MMK Zonfra QT\""), std::string::npos) << output;
    EXPECT_NE(output.find("creator=\"Morvandel\""), std::string::npos) << output;
    EXPECT_NE(output.find("n_inputs=\"2\" n_outputs=\"2\""), std::string::npos) << output;
    EXPECT_NE(output.find("n_midi_inputs=\"0\""), std::string::npos) << output;
    EXPECT_NE(output.find("is_instrument=\"0\""), std::string::npos) << output;
    EXPECT_NE(output.find("can_process_replace=\"1\""), std::string::npos) << output;
    EXPECT_NE(output.find("has_editor=\"1\""), std::string::npos) << output;
}
