#include <gtest/gtest.h>
#include <chrono>
#include <fstream>
#include <set>
#include <tuple>
#include <thread>
#include <vector>

#include "CORE/files/CFileSearch.h"
#include "CORE/files/CoreFastFile.h"
#include "CORE/files/FileNames.h"
#include "CORE/files/FileOperations.h"
#include "CORE/files/ModuleResources.h"
#include "CORE/files/Paths.h"
#include "CORE/files/ShellCommands.h"
#include "TempHome.h"

namespace fs = std::filesystem;
using namespace Core;

namespace {
void writeText(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }
std::string readText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
}  // namespace

TEST(FileNames, SplitAtTheLastSeparatorAndDotAndIllegalCharacters) {
    // Each answer lives in a buffer of its function until the next call.
    for (auto [split, path, part] : {std::tuple{&fileTitle, "C:/a/b.c.d", "b.c"}, {fileExtension, "C:/a/b.c.d", ".d"},
                                     {fileName, "C:/a/b.c.d", "b.c.d"}, {fileTitle, "x\\y.z.fxp", "y.z"},
                                     {fileTitle, "C:name.txt", "name"}, {fileExtension, "/no/extension", ""}})
        EXPECT_STREQ(split(path), part) << path;
    EXPECT_STREQ(Core::convertSeparators(1, "a/b\\c"), "a\\b\\c");
    EXPECT_STREQ(Core::convertSeparators(2, "a/b\\c"), "a/b/c");

    for (char c : std::string("^:*.\",/\\[];|=<>")) EXPECT_FALSE(Core::isLegalFileNameChar(c)) << c;
    for (char c : std::string("aZ09 -_()!'")) EXPECT_TRUE(Core::isLegalFileNameChar(c)) << c;
}

TEST(CoreFastFile, WritesReadsAndSeeksAFileAndFailsClosed) {
    TempHome home;
    const std::string path = (home.root / "data.bin").string();
    CoreFastFile file;
    ASSERT_TRUE(file.open(CoreFastFile::kWrite, "%s/%s", home.root.c_str(), "data.bin"));
    EXPECT_EQ(file.write("hello world", 11), 11u);
    file.close();
    EXPECT_EQ(file.size(), -1);

    ASSERT_TRUE(file.open(CoreFastFile::kWrite | CoreFastFile::kKeepContents, "%s", path.c_str()));
    file.seek(6);
    file.write("WORLD", 5);
    file.close();
    EXPECT_EQ(readText(path), "hello WORLD");

    ASSERT_TRUE(file.open(CoreFastFile::kRandomAccess, "%s", path.c_str()));
    EXPECT_EQ(file.size(), 11);
    char buffer[16] = {};
    file.seek(6);
    EXPECT_EQ(file.read(buffer, sizeof buffer), 5u);
    EXPECT_STREQ(buffer, "WORLD");

    // Failures leave it closed with an error.
    EXPECT_FALSE(file.open(0, "%s/missing", home.root.c_str()));
    EXPECT_EQ(file.getLastError(), 1);
    EXPECT_FALSE(file.open(0, "%s", home.root.c_str())) << "a folder is not a file";
    const std::string longName(300, 'a');
    EXPECT_FALSE(file.open(CoreFastFile::kWrite, "%s/%s", home.root.c_str(), longName.c_str()));
    EXPECT_FALSE(file.isOpen());
}

TEST(CoreFastFile, MemoryStreamsStayInsideTheirBlock) {
    char block[8] = "abcdefg";
    CoreFastFile file;
    file.openMemory(block, 8);
    EXPECT_EQ(file.size(), 8);
    file.seek(100);
    EXPECT_EQ(file.tell(), 7u) << "seeking clamps to the last byte";
    EXPECT_EQ(file.write("XYZ", 3), 1u);
    file.seek(0);
    char out[20] = {};
    EXPECT_EQ(file.read(out, 20), 8u);
    EXPECT_EQ(std::string(out, 8), "abcdefgX");
}

TEST(CoreFastFile, ReadAllAddsAClosingZeroAndResourcesOpenByName) {
    TempHome home;
    writeText(home.root / "t.txt", "abc");
    size_t size = 99;
    EXPECT_EQ(CoreFastFile::readAll((home.root / "missing").c_str(), &size), nullptr);
    EXPECT_EQ(size, 0u);
    char* text = CoreFastFile::readAll((home.root / "t.txt").c_str(), &size);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::string(text, size + 1), std::string("abc", 4));
    free(text);

    static const unsigned char image[] = {1, 2, 3, 4};
    Core::addModuleResource("test-image", image, sizeof image);
    CoreFastFile file;
    ASSERT_TRUE(file.openResource(nullptr, "test-%s", "image"));
    EXPECT_EQ(file.size(), 4);
    unsigned char byte = 0;
    file.seek(2);
    file.read(&byte, 1);
    EXPECT_EQ(byte, 3);
    EXPECT_EQ(file.write(&byte, 1), 0u) << "linked images are read-only";
    EXPECT_FALSE(file.openResource(nullptr, "no-such-image"));
}

TEST(CFileSearch, ListsFilesAndMarksFolders) {
    TempHome home;
    const fs::path dir = home.root / "search";
    fs::create_directories(dir / "sub");
    writeText(dir / "a.fxp", "x");
    writeText(dir / ".hidden", "x");
    auto list = [&](int flags) {
        std::set<std::string> names;
        Core::CFileSearch search(dir.string() + "/", flags);
        for (std::string name; search.next(name);)
            if (!name.empty()) names.insert(name);
        return names;
    };
    EXPECT_EQ(list(0), (std::set<std::string>{"a.fxp", "/sub"}));
    EXPECT_EQ(list(CFileSearch::kHidden), (std::set<std::string>{"a.fxp", "/sub", ".hidden"}));
}

namespace {
struct RecordingProgress : Core::ICopyProgress {
    std::vector<float> fractions;
    void setProgress(float f) override { fractions.push_back(f); }
};
struct CancelAtOnce : Core::ICopyCancel {
    bool shouldContinue() override { return false; }
};
}  // namespace

TEST(FileOperations, CopyReportsProgressPerBlockAndCancelRemovesTheCopy) {
    TempHome home;
    const fs::path source = home.root / "big.bin";
    std::string content(0x400000 * 2 + 1000, 0);
    for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
    ASSERT_EQ(Core::writeFile(source.string(), content.data(), content.size()), 0);

    RecordingProgress progress;
    ASSERT_TRUE(Core::copyFile(source.string(), (home.root / "copy.bin").string(), &progress, nullptr));
    EXPECT_EQ(readText(home.root / "copy.bin"), content);
    ASSERT_EQ(progress.fractions.size(), 3u);
    EXPECT_NEAR(progress.fractions[0], 0.5f, 1e-3);
    EXPECT_FLOAT_EQ(progress.fractions[2], 1.0f);

    CancelAtOnce cancel;
    EXPECT_FALSE(Core::copyFile(source.string(), (home.root / "cancelled.bin").string(), nullptr, &cancel));
    EXPECT_FALSE(fs::exists(home.root / "cancelled.bin"));
    EXPECT_EQ(Core::writeFile((home.root / "no/such/folder/f").string(), "x", 1), -1);
}

TEST(ShellCommands, RunCommandLineStartsProgramsAndReportsMissingOnes) {
    TempHome home;
    const fs::path marker = home.root / "with space" / "marker";
    fs::create_directories(marker.parent_path());
    ASSERT_TRUE(Core::runCommandLine("touch \"" + marker.string() + "\""));
    for (int i = 0; i < 200 && !fs::exists(marker); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(fs::exists(marker));
    EXPECT_FALSE(Core::runCommandLine("zonfra-no-such-program --flag"));
    EXPECT_FALSE(Core::runCommandLine(""));
}

TEST(Paths, SpecialFoldersFollowTheXdgFolders) {
    TempHome home;
    EXPECT_EQ(getSpecialFolder(0), (home.root / "Desktop").string() + "/");
    EXPECT_EQ(getSpecialFolder(2, "Morvandel"), (home.root / "data").string() + "/Morvandel");
    EXPECT_EQ(getSpecialFolder(3), getSpecialFolder(2));
    EXPECT_EQ(getSpecialFolder(9), "");
    EXPECT_FALSE(getSpecialFolder(1).empty());
    // A desktop that xdg-user-dirs moved.
    fs::create_directories(home.root / "config");
    writeText(home.root / "config" / "user-dirs.dirs",
              "# written by xdg-user-dirs-update\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n");
    EXPECT_EQ(getSpecialFolder(0), (home.root / "Schreibtisch").string() + "/");
}

TEST(Paths, NormaliseAndCreateDirectoryPaths) {
    for (auto [given, normal] :
         {std::pair{"a\\b//c/./d/../e", "a/b/c/e"}, {"../x/./y", "../x/y"}, {"/a/b/../../c", "/c"}})
        EXPECT_EQ(normalisePath(given), normal) << given;
    for (auto [given, ended] : {std::pair{"", "/"}, {"a\\", "a\\"}, {"a", "a/"}})
        EXPECT_EQ(addTrailingSlash(given), ended) << given;
    TempHome home;
    const std::string deep = (home.root / "one\\two//three").string();
    EXPECT_TRUE(createDirectoryPath(deep));
    EXPECT_TRUE(fs::is_directory(home.root / "one/two/three"));
    EXPECT_TRUE(createDirectoryPath(deep));  // already there
    writeText(home.root / "file", "x");
    EXPECT_FALSE(createDirectoryPath((home.root / "file/sub").string()));
}
