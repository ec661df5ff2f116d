// The preset folder on real files: listing with categories, the step order, the file operations,
// refused names, an unwritable folder and files that are not our presets.
#include <sys/stat.h>
#include <unistd.h>

#include <set>

#include "editor_presets/PresetFolderFixture.h"

namespace {

TEST_F(PresetFolder, ListsOneLevelOfCategoriesAndStepsWithWrapAround) {
    for (const char* name : {"Top A", "Bass/B1", "Top B", "Lead/L1", "Bass/B2"})
        saveWithCutoff((folder / name).string(), 0.5f);
    writeAll(folder / "notes.txt", "x");
    writeAll(folder / "Bass/Deep/D.fxp", readAll(folder / "Top A.fxp"));
    presets.scan();
    std::set<std::string> listed;
    for (int i = 0; i < presets.count(); ++i) listed.insert(presets.entry(i)->category + ":" + presets.entry(i)->name);
    EXPECT_EQ(listed, (std::set<std::string>{":Top A", ":Top B", "Bass:B1", "Bass:B2", "Lead:L1"}));

    const std::vector<int> order = presets.stepOrder();
    ASSERT_EQ(order.size(), 5u);
    for (size_t i = 0; i < order.size(); ++i) EXPECT_EQ(presets.entry(order[i])->category.empty(), i >= 3);
    presets.setCurrentByName("");
    for (int round = 0; round < 6; ++round) {  // right from nothing starts at the first, then wraps
        ASSERT_TRUE(presets.step(+1));
        EXPECT_EQ(currentName(), presets.entryName(order[static_cast<size_t>(round) % 5]));
        EXPECT_STREQ(effect.getPresetName(), currentName().c_str());
    }
    ASSERT_TRUE(presets.step(-1));  // left from the first (where the wrap ended) goes to the last
    EXPECT_EQ(currentName(), presets.entryName(order[4]));
}

TEST_F(PresetFolder, SaveLoadRenameDeleteOnRealFiles) {
    saveWithCutoff("One", 0.2f);
    saveWithCutoff("Two", 0.8f);
    presets.setCurrentByName((folder / "One.fxp").string());
    ASSERT_TRUE(presets.load(presets.getCurrentIndex()));
    EXPECT_NEAR(cutoff()->getNormalized(), 0.2f, 1e-4);

    // Save with the name unchanged asks, then replaces the current file; "no" leaves it.
    const std::string before = readAll(folder / "One.fxp");
    cutoff()->setNormalized(0.6f);
    answers = {false};
    EXPECT_FALSE(presets.saveCurrent());
    EXPECT_EQ(readAll(folder / "One.fxp"), before);
    ASSERT_TRUE(presets.saveCurrent());
    EXPECT_EQ(titles, (std::vector<std::string>{"Preset Exists", "Preset Exists"}));
    EXPECT_NE(readAll(folder / "One.fxp"), before);

    ASSERT_TRUE(presets.rename("Three")) << presets.lastError();
    EXPECT_FALSE(fs::exists(folder / "One.fxp"));
    EXPECT_EQ(currentName(), "Three");
    cutoff()->setNormalized(0.1f);
    ASSERT_TRUE(presets.load(presets.getCurrentIndex()));
    EXPECT_NEAR(cutoff()->getNormalized(), 0.6f, 1e-4);

    answers = {false};
    EXPECT_FALSE(presets.remove(presets.getCurrentIndex()));
    ASSERT_TRUE(presets.remove(presets.getCurrentIndex()));
    EXPECT_TRUE(!fs::exists(folder / "Three.fxp") && presets.getCurrentIndex() == -1 && presets.count() == 1);
}

TEST_F(PresetFolder, IllegalNamesAreRefusedWithoutTouchingTheDisk) {
    saveWithCutoff("Keep", 0.3f);
    for (const char* name : {"", "a*b", "a:b", "a.b", "a\"b", "a<b", "a|b", "a;b", "a=b", "a^b", "a,b", "a[b]"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(presets.saveAs(name));
        EXPECT_FALSE(presets.rename(name));
        EXPECT_FALSE(presets.lastError().empty());
        EXPECT_EQ(currentName(), "Keep");
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(PresetFolder, AnUnwritableFolderGivesAMessageAndLosesNothing) {
    saveWithCutoff("Kept", 0.3f);
    const std::string kept = readAll(folder / "Kept.fxp");
    // Root writes through permissions; a target that is a non-empty folder still refuses the rename.
    writeAll(folder / "Busy.fxp" / "inside", "user data");
    EXPECT_FALSE(presets.saveAs("Busy"));
    EXPECT_NE(presets.lastError().find("Nothing on disk was changed"), std::string::npos) << presets.lastError();
    EXPECT_EQ(readAll(folder / "Busy.fxp" / "inside"), "user data");

    if (geteuid() == 0) {
        writeAll(home.root / "plain-file", "x");
        presets.setFolder((home.root / "plain-file" / "Presets").string());
    } else {
        chmod(folder.c_str(), 0555);
    }
    cutoff()->setNormalized(0.9f);
    EXPECT_FALSE(presets.saveAs("Kept") || presets.saveAs("Fresh"));
    EXPECT_NE(presets.lastError().find("cannot be written"), std::string::npos) << presets.lastError();
    chmod(folder.c_str(), 0755);
    EXPECT_EQ(readAll(folder / "Kept.fxp"), kept);
    EXPECT_FALSE(fs::exists(folder / "Fresh.fxp"));
}

TEST_F(PresetFolder, CorruptOrForeignFilesAreListedButLoadNothing) {
    saveWithCutoff("Good", 0.25f);
    std::string foreign = readAll(folder / "Good.fxp"), badChunk = foreign;
    foreign.replace(16, 4, "Xxxx");
    std::fill(badChunk.begin() + 60, badChunk.end(), '\x5a');
    for (auto [name, bytes] : {std::pair<const char*, std::string>{"Foreign", foreign}, {"Junk", "CcnK not a preset"},
                               {"BadChunk", badChunk}, {"Empty", ""}})
        writeAll(folder / (std::string(name) + ".fxp"), bytes);
    presets.setCurrentByName((folder / "Good.fxp").string());
    ASSERT_EQ(presets.count(), 5);
    cutoff()->setNormalized(0.7f);
    for (int i = 0; i < presets.count(); ++i) {
        if (presets.entry(i)->name == "Good") continue;
        SCOPED_TRACE(presets.entry(i)->name);
        EXPECT_FALSE(presets.load(i));
        EXPECT_NE(presets.lastError().find(presets.entry(i)->name), std::string::npos);
        EXPECT_NEAR(cutoff()->getNormalized(), 0.7f, 1e-6);
        EXPECT_EQ(currentName(), "Good");
        EXPECT_STREQ(effect.getPresetName(), "Good");
    }
}

TEST_F(PresetFolder, FactoryRestoreAsksOverwritesSameNamesAndKeepsTheRest) {
    writeAll(folder / "Init Preset.fxp", "user copy");
    writeAll(folder / "Mine.fxp", "mine");
    answers = {false};
    EXPECT_EQ(presets.restoreFactoryPresets(), -1);
    EXPECT_EQ(readAll(folder / "Init Preset.fxp"), "user copy");
    const int written = presets.restoreFactoryPresets();
    ASSERT_GT(written, 1) << presets.lastError();
    EXPECT_EQ(titles, (std::vector<std::string>{"Warning", "Warning"}));
    EXPECT_EQ(readAll(folder / "Mine.fxp"), "mine");
    presets.setCurrentByName((folder / "Init Preset.fxp").string());
    EXPECT_TRUE(presets.load(presets.getCurrentIndex())) << presets.lastError();
    EXPECT_TRUE(presets.count() == written + 1 && !presets.entry(presets.stepOrder()[0])->category.empty());
}

TEST_F(PresetFolder, ChoosingAnotherFolderIsRememberedAndRead) {
    saveWithCutoff((home.root / "Other" / "Elsewhere").string(), 0.4f);
    presets.chooseFolder((home.root / "Other").string());
    EXPECT_EQ(effect.getPresetFolder(), (home.root / "Other").string() + "/");
    EXPECT_TRUE(presets.count() == 1 && presets.getCurrentIndex() == -1);
}

}  // namespace
