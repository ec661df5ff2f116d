#include <gtest/gtest.h>
#include <atomic>
#include <fstream>
#include <thread>

#include "CORE/files/Settings.h"
#include "TempHome.h"

using namespace Core;

static const std::string kKey = makeKeyName("MORVANDEL", "zonfraQT");

class Settings : public ::testing::Test {
protected:
    // A settings file written by hand, in the user's ("config") or the machine's folder.
    void writeFile(const char* folder, const std::string& text) {
        const std::filesystem::path dir = home.root / folder / "MORVANDEL/zonfraQT";
        std::filesystem::create_directories(dir);
        std::ofstream(dir / "settings") << text;
    }
    TempHome home;
    std::string value;
};

TEST_F(Settings, FilesAndTheFirstReadWritingTheDefault) {
    EXPECT_EQ(userSettingsFile(kKey), (home.root / "config/MORVANDEL/zonfraQT/settings").string());
    EXPECT_EQ(machineSettingsFile(kKey), (home.root / "machine/MORVANDEL/zonfraQT/settings").string());
    EXPECT_FALSE(readSetting(kKey, "PresetFolder", value, "/default/"));
    EXPECT_EQ(value, "/default/");
    EXPECT_TRUE(readSetting(kKey, "PresetFolder", value, "/other/"));
    EXPECT_EQ(value, "/default/");
    EXPECT_FALSE(readSetting(kKey, "Missing", value, nullptr));
    EXPECT_EQ(value, "");
}

TEST_F(Settings, MachineValueIsCopiedToTheUser) {
    writeFile("machine", "GuiScale=1.5\n");
    EXPECT_TRUE(readSetting(kKey, "GuiScale", value, "1"));
    EXPECT_EQ(value, "1.5");
    std::filesystem::remove(home.root / "machine/MORVANDEL/zonfraQT/settings");
    EXPECT_TRUE(readSetting(kKey, "GuiScale", value, "1"));
    EXPECT_EQ(value, "1.5");
}

TEST_F(Settings, ValuesWithAwkwardCharactersRoundTrip) {
    const std::string odd = "C:\\Presets\\a=b\nsecond line";
    ASSERT_TRUE(writeSetting(kKey, "Odd=Name", odd));
    ASSERT_TRUE(writeSetting(kKey, "Plain", "x"));
    EXPECT_TRUE(readSetting(kKey, "Odd=Name", value, nullptr));
    EXPECT_EQ(value, odd);
    EXPECT_FALSE(writeSetting(kKey, "", "empty names are refused"));
}

TEST_F(Settings, MalformedFileIsTolerated) {
    writeFile("config", "garbage without equals\n=no name\nGood=yes\n\x01\x02\n");
    EXPECT_TRUE(readSetting(kKey, "Good", value, nullptr));
    EXPECT_EQ(value, "yes");
    EXPECT_TRUE(writeSetting(kKey, "Other", "1"));
    EXPECT_TRUE(readSetting(kKey, "Good", value, nullptr));
}

TEST_F(Settings, ConcurrentWritersNeverLeaveAHalfWrittenFile) {
    const std::string longValue(20000, 'v');
    ASSERT_TRUE(writeSetting(kKey, "Big", longValue));
    std::atomic<bool> stop{false};
    std::thread writers[2];
    for (int w = 0; w < 2; ++w)
        writers[w] = std::thread([&, w] {
            for (int i = 0; i < 150; ++i) writeSetting(kKey, "Counter" + std::to_string(w), std::to_string(i));
        });
    for (int reads = 0; reads < 300; ++reads) {
        ASSERT_TRUE(readSetting(kKey, "Big", value, nullptr));
        ASSERT_EQ(value, longValue);
    }
    for (auto& t : writers) t.join();
    for (const char* counter : {"Counter0", "Counter1"})
        EXPECT_TRUE(readSetting(kKey, counter, value, nullptr) && value == "149") << counter << ": " << value;
}
