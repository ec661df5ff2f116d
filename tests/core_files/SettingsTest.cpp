#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "CORE/files/Paths.h"
#include "CORE/files/Settings.h"
#include "TempHome.h"

using namespace Core;

namespace {
const std::string kKey = makeKeyName("MORVANDEL", "zonfraQT");
}

TEST(Settings, KeyNamesAndFiles) {
    TempHome home;
    EXPECT_EQ(kKey, "MORVANDEL/zonfraQT");
    EXPECT_EQ(userSettingsFile(kKey), (home.root / "config/MORVANDEL/zonfraQT/settings").string());
    EXPECT_EQ(machineSettingsFile(kKey), (home.root / "machine/MORVANDEL/zonfraQT/settings").string());
}

TEST(Settings, FirstReadWritesTheDefault) {
    TempHome home;
    std::string value;
    EXPECT_FALSE(readSetting(kKey, "PresetFolder", value, "/default/"));
    EXPECT_EQ(value, "/default/");
    EXPECT_TRUE(readSetting(kKey, "PresetFolder", value, "/other/"));
    EXPECT_EQ(value, "/default/");
    EXPECT_FALSE(readSetting(kKey, "Missing", value, nullptr));
    EXPECT_EQ(value, "");
}

TEST(Settings, MachineValueIsCopiedToTheUser) {
    TempHome home;
    std::filesystem::create_directories(home.root / "machine/MORVANDEL/zonfraQT");
    std::ofstream(home.root / "machine/MORVANDEL/zonfraQT/settings") << "GuiScale=1.5\n";
    std::string value;
    EXPECT_TRUE(readSetting(kKey, "GuiScale", value, "1"));
    EXPECT_EQ(value, "1.5");
    std::filesystem::remove(home.root / "machine/MORVANDEL/zonfraQT/settings");
    EXPECT_TRUE(readSetting(kKey, "GuiScale", value, "1"));
    EXPECT_EQ(value, "1.5");
}

TEST(Settings, ValuesWithAwkwardCharactersRoundTrip) {
    TempHome home;
    const std::string odd = "C:\\Presets\\a=b\nsecond line";
    ASSERT_TRUE(writeSetting(kKey, "Odd=Name", odd));
    ASSERT_TRUE(writeSetting(kKey, "Plain", "x"));
    std::string value;
    EXPECT_TRUE(readSetting(kKey, "Odd=Name", value, nullptr));
    EXPECT_EQ(value, odd);
    EXPECT_FALSE(writeSetting(kKey, "", "empty names are refused"));
}

TEST(Settings, MalformedFileIsTolerated) {
    TempHome home;
    std::filesystem::create_directories(home.root / "config/MORVANDEL/zonfraQT");
    std::ofstream(home.root / "config/MORVANDEL/zonfraQT/settings") << "garbage without equals\n=no name\nGood=yes\n\x01\x02\n";
    std::string value;
    EXPECT_TRUE(readSetting(kKey, "Good", value, nullptr));
    EXPECT_EQ(value, "yes");
    EXPECT_TRUE(writeSetting(kKey, "Other", "1"));
    EXPECT_TRUE(readSetting(kKey, "Good", value, nullptr));
}

TEST(Settings, ConcurrentWritersNeverLeaveAHalfWrittenFile) {
    TempHome home;
    const std::string longValue(20000, 'v');
    ASSERT_TRUE(writeSetting(kKey, "Big", longValue));
    std::atomic<bool> stop{false};
    std::thread writers[2];
    for (int w = 0; w < 2; ++w)
        writers[w] = std::thread([&, w] {
            for (int i = 0; i < 150; ++i) writeSetting(kKey, "Counter" + std::to_string(w), std::to_string(i));
        });
    int reads = 0;
    std::string value;
    while (reads < 300) {
        ASSERT_TRUE(readSetting(kKey, "Big", value, nullptr));
        ASSERT_EQ(value, longValue);
        ++reads;
    }
    for (auto& t : writers) t.join();
    EXPECT_TRUE(readSetting(kKey, "Counter0", value, nullptr));
    EXPECT_EQ(value, "149");
    EXPECT_TRUE(readSetting(kKey, "Counter1", value, nullptr));
    EXPECT_EQ(value, "149");
}
