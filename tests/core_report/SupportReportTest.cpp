#include <gtest/gtest.h>
#include <fstream>

#include "CORE/report/SupportReport.h"
#include "core_files/TempHome.h"

TEST(SupportReport, WritesProductSystemAndHostSectionsToTheDesktop) {
    TempHome home;
    setenv("XDG_DESKTOP_DIR", (home.root / "Desk top").c_str(), 1);
    const auto outcome = Core::writeSupportReport(Core::buildProductSection("1.3.0", "/presets/", "VST3"),
                                                  Core::buildHostSection(512, 48000.0f, "VST3", "Ardour", "", "8.1"));
    ASSERT_TRUE(outcome.tellUser && outcome.written);
    EXPECT_STREQ(outcome.text, "A support file (zonfraQT Support.txt) has been created on your desktop.\n");
    EXPECT_EQ(outcome.path, (home.root / "Desk top" / "zonfraQT Support.txt").string());
    std::ifstream in(outcome.path);
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    size_t last = 0;  // each line is there, in this order
    for (const char* line : {"-\n- Zonfra Settings\n-\n\nversion: 1.3.0\ncontent root: /presets/\nhosted plugin type: VST3\n",
                             "-\n- System\n-\n\n", "Kernel     : Linux ", "Installed memory (RAM): ", "\nUser       : ",
                             "Admin      : ", "\n-\n- Host\n-\n\nExecutable : /", "VERSIONINFO\nName       : Ardour\n",
                             "Vendor     : unknown\nVersion    : 8.1\n", "MaxBufSize : 512\nSamplerate : 48000\nInterface  : VST3\n",
                             "Plug-in    : /"}) {
        const size_t at = text.find(line, last);
        ASSERT_NE(at, std::string::npos) << line << "\nin\n" << text;
        last = at;
    }
    EXPECT_EQ(text.find("Processor  : ") == std::string::npos, text.find("Vendor     : ") == text.rfind("Vendor     : "));
}

TEST(SupportReport, MissingHostFactsAndMissingDesktop) {
    const std::string host = Core::buildHostSection(0, 44100.0f, nullptr, "", "", "");
    EXPECT_NE(host.find("VERSIONINFO\nnot available!\n\n"), std::string::npos);
    EXPECT_NE(host.find("Interface  : unknown\n"), std::string::npos);
    TempHome home;
    unsetenv("HOME");
    const auto outcome = Core::writeSupportReport("", host);
    EXPECT_FALSE(outcome.tellUser);
    EXPECT_TRUE(std::filesystem::is_empty(home.root / "machine"));
    std::string user;
    EXPECT_EQ(Core::isUserAdministrator(&user), geteuid() == 0 || Core::isUserAdministrator(nullptr));
    EXPECT_FALSE(user.empty());
}
