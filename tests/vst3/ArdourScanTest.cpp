#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/ArdourHost.h"

// Ardour's own VST 3 scanner, as the real host runs it before it lists a plug-in.
namespace {
const char* const kScanner = "/usr/lib/ardour7/ardour-vst3-scanner";
}  // namespace

TEST(ArdourScan, ListsThePluginWithItsNameVendorAndCategory) {
    if (!std::filesystem::exists(kScanner)) GTEST_SKIP() << "Ardour is not installed";
#ifdef ZONFRA_SANITIZED
    GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour";
#endif
    int status = -1;
    const std::string output = TestSupport::Ardour::scan(kScanner, ZONFRA_VST3_BUNDLE, status);
    EXPECT_EQ(status, 0) << output;
    for (const char* fragment : {"Found Plugin: MMK Zonfra QT", "name=\"MMK Zonfra QT\"",
                                 "vendor=\"Morvandel Mixing Kit\"", "category=\"Fx|Morvandel\"", "version=\"1.3.0\"",
                                 "uid=\"647541644E56434757525052567A6F6E\"", "n_inputs=\"2\" n_outputs=\"2\""})
        EXPECT_NE(output.find(fragment), std::string::npos) << fragment << "\n" << output;
}
