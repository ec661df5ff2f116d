#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

// Ardour's own VST 3 scanner, as the real host runs it before it lists a plug-in.
namespace {
const char* const kScanner = "/usr/lib/ardour7/ardour-vst3-scanner";

std::string scan(const std::string& bundle, int& status) {
    const std::string home = "/tmp/zonfra-ardour-scan-" + std::to_string(getpid());
    const std::string command = "HOME='" + home + "' LD_LIBRARY_PATH=/usr/lib/ardour7 timeout 120 " + kScanner +
                                " -f -v '" + bundle + "' 2>&1";
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return output;
    char buffer[4096];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    status = pclose(pipe);
    std::filesystem::remove_all(home);
    return output;
}
}  // namespace

TEST(ArdourScan, ListsThePluginWithItsNameVendorAndCategory) {
    if (!std::filesystem::exists(kScanner)) GTEST_SKIP() << "Ardour is not installed";
#ifdef ZONFRA_SANITIZED
    GTEST_SKIP() << "a sanitized plug-in cannot load into Ardour";
#endif
    int status = -1;
    const std::string output = scan(ZONFRA_VST3_BUNDLE, status);
    EXPECT_EQ(status, 0) << output;
    EXPECT_NE(output.find("Found Plugin: MMK Zonfra QT"), std::string::npos) << output;
    EXPECT_NE(output.find("name=\"MMK Zonfra QT\""), std::string::npos) << output;
    EXPECT_NE(output.find("vendor=\"Morvandel Mixing Kit\""), std::string::npos) << output;
    EXPECT_NE(output.find("category=\"Fx|Morvandel\""), std::string::npos) << output;
    EXPECT_NE(output.find("version=\"1.3.0\""), std::string::npos) << output;
    EXPECT_NE(output.find("uid=\"647541644E56434757525052567A6F6E\""), std::string::npos) << output;
    EXPECT_NE(output.find("n_inputs=\"2\" n_outputs=\"2\""), std::string::npos) << output;
}
